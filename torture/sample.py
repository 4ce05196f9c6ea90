"""The sample run of the host that the scripts of this folder disturb, and the checks of how a run ended."""
import os
import re
import shutil
import subprocess
import sys

ERRORS = ["EIO", "ENOMEM", "EMFILE", "ENOSPC", "EACCES", "EINTR"]  # of system calls
WORDS = ["-m", "{folder}/meta", "base", "--data", "{folder}/data", "-i", "team.ini", "--summary", "-l", "old.txt", "-l",
         "new.txt", "-d", "-c", "change.txt", "--logfile", "run.log"]
FILES = {"meta/veltrane.ini": "[ROOT]\nlogfile=x.log\n[base]\ndictionary-name=d\nrole=r\nregistry=g\n"
                              "[base\\TABLENAME RULES\\1]\ntmp_=WRK_\n",
         "Team.ini": "[USER]\nspool=%name%.lst\n", "registry.reg": "REGEDIT4\n[HKLM\\SOFTWARE\\VORNAK\\veltrane\\ROOT]\n",
         "old.txt": "version 1\ntable tmp_a\n", "new.txt": "version 1\ntable b\n"}


def prepare(folder):
    os.makedirs(folder + "/meta")
    os.makedirs(folder + "/data")
    for name, text in FILES.items():
        with open(os.path.join(folder, name), "w") as file:
            file.write(text)


def words(folder):
    return [word.format(folder=folder) for word in WORDS]


def environment(folder):
    return {"VORNAK_REGISTRY": folder + "/registry.reg", "ASAN_OPTIONS": "detect_leaks=0", "TZ": "UTC"}


def fault_of(result):
    """What is wrong with how any run ended; None if nothing is."""
    text = result.stdout + result.stderr
    if result.returncode < 0 or result.returncode > 128:
        return f"ended by a signal ({result.returncode})"
    if b"Sanitizer" in text or b"runtime error:" in text:
        return "a sanitizer reports"
    if result.returncode != 0 and not text.strip():
        return "failed without a message"
    return None


def fault_in(folder, run):
    """What run(folder) finds wrong, in a folder that is removed afterwards."""
    try:
        return run(folder)
    except subprocess.TimeoutExpired:
        return "hangs"
    finally:
        shutil.rmtree(folder)


def traced_calls(result, trace, step):
    """Call and number of every step-th call that a run under strace made after the loader had made its own."""
    if result.returncode != 0:
        print("strace cannot be used here:", result.stderr.decode()[:200])
        sys.exit(77)
    calls, begin = [], {}
    for line in open(trace):
        name = re.match(r"(\w+)\(", line)
        if name:
            calls.append(name[1])
        if "libm.so" in line or "libc.so" in line or "libgcc" in line:
            begin = {call: calls.count(call) for call in calls}
    return [(call, number) for call in dict.fromkeys(calls)
            for number in range(begin.get(call, 0) + 1, calls.count(call) + 1, step)]


def has_whole_log(folder):
    log = folder + "/data/log/run.log"
    return os.path.exists(log) and b"finish: " in open(log, "rb").read()
