#!/usr/bin/env python3
"""Fails each call of the system that a run of the host makes, once in turn, and looks at how the host ends.

Usage: calls.py HOST [SAMPLE]    with SAMPLE only every SAMPLE-th call of a kind fails

A run is broken when a signal ends it, when it hangs, when it leaves without a word, when a sanitizer reports, or when it
succeeds without a line of its log. Needs strace; ends with 77 where that cannot be used."""
import os
import re
import subprocess
import sys
import tempfile

host = os.path.abspath(sys.argv[1])
step = int(sys.argv[2]) if len(sys.argv) > 2 else 1
CALLS = ["openat", "read", "pread64", "write", "newfstatat", "fstat", "ioctl", "getdents64", "mkdir", "flock", "ftruncate",
         "close", "getcwd", "readlink", "fcntl", "poll", "lseek"]
ERRORS = ["EIO", "ENOMEM", "EMFILE", "ENOSPC", "EACCES", "EINTR"]
SHORT = {"read": "retval=1", "pread64": "retval=1", "write": "retval=1"}  # short reads and writes
WORDS = ["-m", "meta", "base", "--data", "data", "-i", "team.ini", "--summary", "-l", "old.txt", "-l", "new.txt", "-d", "-c",
         "change.txt", "--logfile", "run.log"]


def prepare(folder):
    os.makedirs(folder + "/meta")
    os.makedirs(folder + "/data")
    files = {"meta/veltrane.ini": "[ROOT]\nlogfile=x.log\n[base]\ndictionary-name=d\nrole=r\nregistry=g\n"
                                  "[base\\TABLENAME RULES\\1]\ntmp_=WRK_\n",
             "Team.ini": "[USER]\nspool=%name%.lst\n", "registry.reg": "REGEDIT4\n[HKLM\\SOFTWARE\\VORNAK\\veltrane\\ROOT]\n",
             "old.txt": "version 1\ntable tmp_a\n", "new.txt": "version 1\ntable b\n"}
    for name, text in files.items():
        open(os.path.join(folder, name), "w").write(text)


def run(folder, tracing):
    environment = {"VORNAK_REGISTRY": folder + "/registry.reg", "ASAN_OPTIONS": "detect_leaks=0", "TZ": "UTC"}
    command = ["strace", "-o", folder + "/trace", *tracing, host, *WORDS]
    command[command.index("meta")] = folder + "/meta"
    command[command.index("data")] = folder + "/data"
    return subprocess.run(command, cwd=folder, env=environment, capture_output=True, timeout=20)


def count_calls(folder):
    """Number of calls of each kind, and how many of them the loader has made when the program begins."""
    result = run(folder, ["-e", "trace=" + ",".join(CALLS)])
    if result.returncode != 0:
        print("strace cannot be used here:", result.stderr.decode()[:200])
        sys.exit(77)
    counts, loader = {}, {}
    for line in open(folder + "/trace"):
        name = re.match(r"(\w+)\(", line)
        if not name:
            continue
        counts[name[1]] = counts.get(name[1], 0) + 1
        if "libm.so" in line or "libc.so" in line or "libgcc" in line:
            loader = dict(counts)
    return counts, loader


def fault_of(result, folder):
    text = result.stdout + result.stderr
    if result.returncode < 0 or result.returncode > 128:
        return f"ended by a signal ({result.returncode})"
    if b"Sanitizer" in text or b"runtime error:" in text:
        return "a sanitizer reports"
    if result.returncode != 0 and not text.strip():
        return "failed without a word"
    log = folder + "/data/log/run.log"
    if result.returncode == 0 and (not os.path.exists(log) or b"finish: " not in open(log, "rb").read()):
        return "succeeded without the end of its log"
    return None


broken = runs = 0
with tempfile.TemporaryDirectory() as top:
    prepare(top + "/count")
    counts, loader = count_calls(top + "/count")
    for call, count in counts.items():
        for number in range(loader.get(call, 0) + 1, count + 1, step):
            for how in [f"error={error}" for error in ERRORS] + ([SHORT[call]] if call in SHORT else []):
                runs += 1
                folder = f"{top}/{runs}"
                prepare(folder)
                try:
                    fault = fault_of(run(folder, ["-e", "trace=" + call, "-e", f"inject={call}:{how}:when={number}"]), folder)
                except subprocess.TimeoutExpired:
                    fault = "hangs"
                if fault:
                    broken += 1
                    print(f"{call} number {number}, {how}: {fault}")
                subprocess.run(["rm", "-rf", folder])
print(f"{runs} runs with a failing call, {broken} broken")
sys.exit(1 if broken else 0)
