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

sys.dont_write_bytecode = True
import sample

host = os.path.abspath(sys.argv[1])
step = int(sys.argv[2]) if len(sys.argv) > 2 else 1
CALLS = ["openat", "read", "pread64", "write", "newfstatat", "fstat", "ioctl", "getdents64", "mkdir", "flock", "ftruncate",
         "close", "getcwd", "readlink", "fcntl", "poll", "lseek"]
ERRORS = ["EIO", "ENOMEM", "EMFILE", "ENOSPC", "EACCES", "EINTR"]
SHORT = {"read": "retval=1", "pread64": "retval=1", "write": "retval=1"}  # short reads and writes


def run(folder, tracing):
    command = ["strace", "-o", folder + "/trace", *tracing, host, *sample.words(folder)]
    return subprocess.run(command, cwd=folder, env=sample.environment(folder), capture_output=True, timeout=20)


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
    if result.returncode == 0 and not sample.has_whole_log(folder):
        return "succeeded without the end of its log"
    return sample.fault_of(result)


broken = runs = 0
with tempfile.TemporaryDirectory() as top:
    sample.prepare(top + "/count")
    counts, loader = count_calls(top + "/count")
    for call, count in counts.items():
        for number in range(loader.get(call, 0) + 1, count + 1, step):
            for how in [f"error={error}" for error in ERRORS] + ([SHORT[call]] if call in SHORT else []):
                runs += 1
                folder = f"{top}/{runs}"
                sample.prepare(folder)
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
