#!/usr/bin/env python3
"""Runs `veltrane-config set` on files that it cannot replace, with each system call failing in turn, with the file
changed meanwhile, and twice at once. The file must then be the old or the new one, whole, with the same owner and rights,
and nothing may be left beside it.

Usage: changes.py PROGRAM [SAMPLE]    with SAMPLE only every SAMPLE-th call of a kind fails
Needs strace; ends with 77 where that cannot be used."""
import fcntl
import os
import pathlib
import re
import resource
import shutil
import stat
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True
import sample

program = os.path.abspath(sys.argv[1])
step = int(sys.argv[2]) if len(sys.argv) > 2 else 1
OLD, NEW = b"[USER]\r\nspool=%name%.lst\n; end", b"[USER]\r\nspool=new.lst\n; end"
CALLS = ["openat", "read", "pread64", "write", "newfstatat", "fstat", "ioctl", "flock", "close", "getcwd", "readlink", "fchmod",
         "fchown", "getdents64", "fgetxattr", "fsync", "rename", "faccessat", "faccessat2", "unlink", "umask", "rt_sigprocmask"]
IS_ROOT = os.geteuid() == 0
held = []
# What the file is, how it is made so, how set is run, and what set reports.
REFUSED = [
    ("a hard link", lambda file: os.link(file, file + ".other"), {}, "another name"),
    ("a pipe", lambda file: (os.unlink(file), os.mkfifo(file)), {}, "not a regular file"),
    ("over 256 MiB", lambda file: os.truncate(file, 257 << 20), {}, "larger than 256 MiB"),
    ("a link to nowhere", lambda file: (os.unlink(file), os.symlink("nowhere", file)), {}, "cannot be found"),
    ("not writable", lambda file: os.chmod(file, 0o444), {"user": 65534} if IS_ROOT else {}, "not writable"),
    ("in a folder of others", lambda file: (os.chmod(file, 0o666), os.chmod(os.path.dirname(file), 0o555)),
     {"user": 65534} if IS_ROOT else {}, "no new file can be created beside it"),
    ("beyond a limit", lambda file: None,
     {"preexec_fn": lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (8, 8))}, "cannot be written (File too large)"),
    ("changed by another", lambda file: (held.append(open(file)), fcntl.flock(held[-1], fcntl.LOCK_EX)), {}, "another process"),
]


def prepare(folder):
    sample.prepare(folder)
    file = pathlib.Path(folder, "Team.ini")
    file.write_bytes(OLD)
    if IS_ROOT:
        os.chown(file, 1, 2)
    file.chmod(0o640)
    shutil.copy(folder + "/meta/veltrane.ini", f"{folder}/meta/{os.path.basename(program)}.ini")
    return set(os.listdir(folder)) | {"trace"}


def command(folder, words):
    return [program, *words, "--tool", program, "--", "-m", folder + "/meta", "base", "--data", folder + "/data", "-i", "team.ini"]


def run(folder, tracing, how={}):
    strace = ["strace", "-o", folder + "/trace", *tracing] if tracing else []
    return subprocess.run([*strace, *command(folder, ["set", "spool", "new.lst"])], cwd=folder,
                          env=sample.environment(folder), capture_output=True, timeout=30, **how)


def fault_of(result, folder, names, owner=(1, 2) if IS_ROOT else (os.geteuid(), os.getegid())):
    bytes_now = pathlib.Path(folder, "Team.ini").read_bytes()
    status = os.stat(folder + "/Team.ini")
    if bytes_now not in (OLD, NEW):
        return f"the file is {bytes_now!r}"
    if result.returncode == 0 and bytes_now != NEW:
        return "succeeded without the change"
    if set(os.listdir(folder)) - names or stat.S_IMODE(status.st_mode) != 0o640 or (status.st_uid, status.st_gid) != owner:
        return f"left {sorted(os.listdir(folder))}, {status}"
    return sample.fault_of(result)


def state_of(folder):
    """Names, kinds, lengths and times: enough to see that a file was written."""
    return {name: (status.st_mode, status.st_size, status.st_mtime_ns, status.st_ino)
            for name in os.listdir(folder) for status in [os.lstat(os.path.join(folder, name))]}


def run_refused(folder, spoil, how, message):
    prepare(folder)
    spoil(folder + "/Team.ini")
    before = state_of(folder)
    result = run(folder, [], how)
    return None if result.returncode == 2 and message.encode() in result.stderr and state_of(folder) == before else result


def run_overtaken(folder, is_there):
    """Another process writes or creates the file while set waits for the disk."""
    prepare(folder)
    file = pathlib.Path(folder, "Team.ini" if is_there else "data/configuration/team.ini")
    if not is_there:
        os.unlink(folder + "/Team.ini")
        file.parent.mkdir(parents=True, exist_ok=True)
    before = len(os.listdir(file.parent))
    words = ["strace", "-o", "/dev/null", "-e", "inject=fsync:delay_enter=1000000:when=1", *command(folder, ["set", "spool", "x"])]
    job = subprocess.Popen(words, cwd=folder, env=sample.environment(folder), stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
    while job.poll() is None and not any(name.startswith(f".{file.name}.") for name in os.listdir(file.parent)):
        pass
    file.write_bytes(b"of another")
    errors = job.communicate()[1]
    is_kept = file.read_bytes() == b"of another" and len(os.listdir(file.parent)) == before + (not is_there)
    return None if job.returncode == 2 and b"changed in the meantime" in errors and is_kept else f"ended with {job.returncode}: {errors}"


def run_failing(folder, failing):
    names = prepare(folder)
    return fault_of(run(folder, failing), folder, names)


def run_two(folder):
    """Both changes are made, or one is refused."""
    jobs = [subprocess.Popen(command(folder, ["set", "--in", "user", *words]), cwd=folder, env=sample.environment(folder),
                             stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            for words in (["spool", "one"], ["dictionary-root", "two"])]
    codes = [job.wait() for job in jobs]
    text = pathlib.Path(folder, "Team.ini").read_bytes()
    return [name for name, code in zip((b"spool=one", b"dictionary-root = two"), codes) if (code != 2) != (name in text)]


runs = broken = 0


def count(what, fault):
    global runs, broken
    runs += 1
    broken += bool(fault)
    if fault:
        print(f"{what}: {fault}")


with tempfile.TemporaryDirectory() as top:
    os.chmod(top, 0o755)
    for what, *row in REFUSED:
        count(what, run_refused(f"{top}/refused{runs}", *row))
    prepare(top + "/count")
    whole = run(top + "/count", ["-e", "trace=" + ",".join(CALLS)])
    if broken and whole.returncode != 0:
        sys.exit(1)
    calls = sample.traced_calls(whole, top + "/count/trace", step)
    order = re.findall(r"^(fsync|rename)", pathlib.Path(top, "count/trace").read_text(), re.MULTILINE)
    count("order of writing to the disk", None if order == ["fsync", "rename", "fsync"] else order)
    for call, number in calls:
        for error in sample.ERRORS:
            failing = ["-e", f"inject={call}:error={error}:when={number}"]
            count(f"{call} {number} {error}", sample.fault_in(f"{top}/{runs:06}", lambda folder: run_failing(folder, failing)))
    count("overtaken", run_overtaken(top + "/overtaken", is_there=True))
    count("created meanwhile", run_overtaken(top + "/made", is_there=False))
    for number in range(20 // step + 1):
        folder = f"{top}/two{number}"
        prepare(folder)
        count("two at once, a change lost without a message", run_two(folder))
print(f"{runs} runs of set, {broken} broken")
sys.exit(1 if broken else 0)
