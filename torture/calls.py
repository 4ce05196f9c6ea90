#!/usr/bin/env python3
"""Lets each system call of a run of the host fail in turn, and checks how the run ends.

Usage: calls.py HOST [SAMPLE]    with SAMPLE only every SAMPLE-th call of a kind fails

A run is broken when a signal ends it, when it hangs, when it fails without a message, when a sanitizer reports, or when
it succeeds without the end of its log. Needs strace; ends with 77 where that cannot be used."""
import os
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True
import sample

host = os.path.abspath(sys.argv[1])
step = int(sys.argv[2]) if len(sys.argv) > 2 else 1
CALLS = ["openat", "read", "pread64", "write", "newfstatat", "fstat", "ioctl", "getdents64", "mkdir", "flock", "ftruncate",
         "close", "getcwd", "readlink", "fcntl", "poll", "lseek"]
SHORT = {"read": "retval=1", "pread64": "retval=1", "write": "retval=1"}  # short reads and writes


def run(folder, tracing):
    sample.prepare(folder)
    command = ["strace", "-o", folder + "/trace", *tracing, host, *sample.words(folder)]
    return subprocess.run(command, cwd=folder, env=sample.environment(folder), capture_output=True, timeout=20)


def fault_of(result, folder):
    if result.returncode == 0 and not sample.has_whole_log(folder):
        return "succeeded without the end of its log"
    return sample.fault_of(result)


broken = runs = 0
with tempfile.TemporaryDirectory() as top:
    whole = run(top + "/count", ["-e", "trace=" + ",".join(CALLS)])
    for call, number in sample.traced_calls(whole, top + "/count/trace", step):
        for how in [f"error={error}" for error in sample.ERRORS] + ([SHORT[call]] if call in SHORT else []):
            runs += 1
            tracing = ["-e", "trace=" + call, "-e", f"inject={call}:{how}:when={number}"]
            fault = sample.fault_in(f"{top}/{runs}", lambda folder: fault_of(run(folder, tracing), folder))
            if fault:
                broken += 1
                print(f"{call} number {number}, {how}: {fault}")
print(f"{runs} runs with a failing call, {broken} broken")
sys.exit(1 if broken else 0)
