#!/usr/bin/env python3
"""Lets each allocation of runs of both programs fail in turn, alone and with all later ones, and checks how the runs end.

Usage: programs.py BUILD_FOLDER [SAMPLE [PROGRAM]]    with SAMPLE only every SAMPLE-th allocation fails, with PROGRAM only
in runs of that one

A run is broken when a signal ends it, when it hangs, when it fails without a message, when a sanitizer reports, or when it
succeeds with another answer than with whole memory and without a message (a set that loses an element shows a box, and
the run goes on)."""
import collections
import os
import re
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True
import sample

build = os.path.abspath(sys.argv[1])
step = int(sys.argv[2]) if len(sys.argv) > 2 else 1
memory = build + "/torture/libtorture_preload.so"
COMMANDS = [["--help"], ["--generate", "man"], ["--nonsense"], ["show"], ["show", "--format", "json", "--all"], ["lint"], ["lint", "--format", "json"],
            ["explain", "spool"], ["names", "old.txt"], ["set", "spool", "new.lst"], ["freeze"], ["files"], ["errors", "run.log"]]
RUNS = [("veltrane", [])] + [("veltrane-config", command + ["--"]) for command in COMMANDS]
RUNS = [row for row in RUNS if row[0] in sys.argv[3:4] or not sys.argv[3:] and os.path.exists(os.path.join(build, row[0]))]


def run(program, words, folder, **settings):
    sample.prepare(folder)
    return subprocess.run([os.path.join(build, program), *words, *sample.words(folder)], cwd=folder, capture_output=True, timeout=20,
                          stdin=subprocess.DEVNULL, env={**sample.environment(folder), "LD_PRELOAD": memory, **settings})


def answer(result, folder):
    """The output of a run, without its folder and its time."""
    return re.sub(rb"\w+day, \w+ \d\d, \d{4} ; [0-9:]{8}", b"TIME", result.stdout.replace(folder.encode(), b"@"))


def fault_of(result, whole, program, folder):
    if result.returncode == 0 and program == "veltrane" and not sample.has_whole_log(folder):
        return "succeeded without the end of its log"
    if result.returncode == 0 and answer(result, folder) != whole and not result.stderr:
        return "succeeded with another answer and without a message"
    changed = open(folder + "/Team.ini").read()
    if "set" in result.args and changed not in (sample.FILES["Team.ini"], "[USER]\nspool=new.lst\n"):
        return f"left a broken file: {changed}"
    if [name for name in os.listdir(folder) if name.startswith(".")]:
        return "left a file beside the one that it changes"
    return sample.fault_of(result)


runs = 0
faults = collections.Counter()
with tempfile.TemporaryDirectory() as top:
    for program, words in RUNS:
        runs += 1
        folder = f"{top}/{runs:06}"
        whole = answer(run(program, words, folder, TORTURE_COUNT_FILE=folder + "/count"), folder)
        count = int(open(folder + "/count").read())
        title = " ".join([program, *words[:-1]])
        for number in range(1, count + 1, step):
            for mode in [{}, {"TORTURE_FROM_THERE_ON": "1"}]:
                runs += 1
                settings = {"TORTURE_FAIL_AT": str(number), **mode}
                fault = sample.fault_in(f"{top}/{runs:06}", lambda folder: fault_of(
                    run(program, words, folder, **settings), whole, program, folder))
                if fault:
                    how = "from there on" if mode else "alone"
                    faults[title, how, fault] += 1
                    if faults[title, how, fault] <= 3:
                        print(f"{title}, allocation {number} {how}: {fault}")
        print(f"{title}: {count} allocations", flush=True)
for (title, how, fault), times in faults.items():
    print(f"{times:6} of {title}, {how}: {fault}")
print(f"{runs} runs with failing memory, {sum(faults.values())} broken")
sys.exit(1 if faults else 0)
