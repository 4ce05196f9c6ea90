#!/usr/bin/env python3
"""Fails each call of the system that `veltrane-config set` makes, once in turn, then runs two of them at once, and looks
at the file: it is the old or the new one, whole, and nothing is left beside it.

Usage: changes.py PROGRAM [SAMPLE]    with SAMPLE only every SAMPLE-th call of a kind fails
Needs strace; ends with 77 where that cannot be used."""
import os
import pathlib
import re
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
         "fgetxattr", "fsync", "rename", "faccessat", "faccessat2", "unlink", "umask", "rt_sigprocmask"]
ERRORS = ["EIO", "ENOMEM", "EMFILE", "ENOSPC", "EACCES", "EINTR"]


def prepare(folder):
    sample.prepare(folder)
    file = pathlib.Path(folder, "Team.ini")
    file.write_bytes(OLD)
    file.chmod(0o640)
    return set(os.listdir(folder)) | {"trace"}


def command(folder, words):
    return [program, *words, "--tool", program, "--", "-m", folder + "/meta", "base", "--data", folder + "/data", "-i", "team.ini"]


def run(folder, tracing):
    pathlib.Path(folder, "meta", os.path.basename(program) + ".ini").write_bytes(pathlib.Path(folder, "meta/veltrane.ini").read_bytes())
    return subprocess.run(["strace", "-o", folder + "/trace", *tracing, *command(folder, ["set", "spool", "new.lst"])], cwd=folder,
                          env=sample.environment(folder), capture_output=True, timeout=30)


def fault_of(result, folder, names):
    bytes_now = pathlib.Path(folder, "Team.ini").read_bytes()
    mode = stat.S_IMODE(os.stat(folder + "/Team.ini").st_mode)
    if bytes_now not in (OLD, NEW):
        return f"the file is {bytes_now!r}"
    if result.returncode == 0 and bytes_now != NEW:
        return "succeeded without the change"
    if set(os.listdir(folder)) - names or mode != 0o640:
        return f"left {sorted(os.listdir(folder))}, mode {mode:o}"
    return sample.fault_of(result)


def run_two(folder):
    """Both changes are there, or one says so."""
    jobs = [subprocess.Popen(command(folder, ["set", "--in", "user", *words]), cwd=folder, env=sample.environment(folder),
                             stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            for words in (["spool", "one"], ["dictionary-root", "two"])]
    codes = [job.wait() for job in jobs]
    text = pathlib.Path(folder, "Team.ini").read_bytes()
    return [name for name, code in zip((b"spool=one", b"dictionary-root = two"), codes) if (code != 2) != (name in text)]


broken = runs = 0
with tempfile.TemporaryDirectory() as top:
    names = prepare(top + "/count")
    whole = run(top + "/count", ["-e", "trace=" + ",".join(CALLS)])
    if whole.returncode != 0 or pathlib.Path(top, "count/Team.ini").read_bytes() != NEW:
        print("strace cannot be used here:", whole.stderr.decode()[:200])
        sys.exit(77)
    counts, loader = {}, {}
    for line in open(top + "/count/trace"):
        name = re.match(r"(\w+)\(", line)
        counts[name[1] if name else ""] = counts.get(name[1] if name else "", 0) + 1
        if "libm.so" in line or "libc.so" in line or "libgcc" in line:
            loader = dict(counts)
    for call, count in counts.items():
        for number in range(loader.get(call, 0) + 1, count + 1, step) if call else ():
            for error in ERRORS:
                runs += 1
                folder = f"{top}/{runs:06}"
                names = prepare(folder)
                try:
                    result = run(folder, ["-e", f"inject={call}:error={error}:when={number}"])
                    fault = fault_of(result, folder, names)
                except subprocess.TimeoutExpired:
                    fault = "hangs"
                broken += bool(fault)
                if fault:
                    print(f"{call} {number} {error}: {fault}")
                subprocess.run(["rm", "-rf", folder])
    for number in range(20 // step + 1):
        runs += 1
        folder = f"{top}/two{number}"
        prepare(folder)
        run(folder, ["-e", "trace=none"])
        pathlib.Path(folder, "Team.ini").write_bytes(OLD)
        fault = run_two(folder)
        broken += bool(fault)
        if fault:
            print(f"two at once: {fault} is lost without a word")
print(f"{runs} runs of set, {broken} broken")
sys.exit(1 if broken else 0)
