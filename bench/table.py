#!/usr/bin/env python3
"""Runs veltrane_bench and prints a table of work, floor, ratio and bar; exit code 1 when a bar is not held.

Usage: table.py BUILD_FOLDER"""
import json
import os
import subprocess
import sys

sys.dont_write_bytecode = True
from bars import judge

# Benchmarks that time their floor in turns with the work: name up to the first slash, or whole, and the bar of the ratio.
BARS = {
    "LastKey/SmallFile": 1.3,
    "LastKey/SmallFileOfOneSection": 1.3,
    "LastKey/LargeFileOf200Sections": 3,
    "LastKey/LargeFileOfOneSection": 9,
    "LogEntryToFile": 1.15,
    "DurationAsText": 0.75,
    "NamingRules": 0.4,
    "GetOptionString": 2,
    "TypedText": 1,
    "TypedTextOfTool": 1,
    "TypedUtf8": 1,
    "TypedIndexedText": 1,
    "TypedFlag": 1,
    "FindPresentOption": 1.5,
    "FindUnknownOption": 1.5,
    "RegistryQuestions/20000": 3,
    "CandidatesOfAllItems": 1.3,
    "OriginOfReferences/100000": 1.3,
    "OriginOfReferences": 1.15,
    "ChangeBesideLint": 3,
    "ChangeBesideReading": 10,
}
# Benchmarks whose floor is another one: work, floor, bar; no bar where the ratio is only for information.
PAIRS = [
    ("Union<int>/100000", "Union<int>/50000", 2.4),
    ("Union<CString>/100000", "Union<CString>/50000", 2.4),
    ("FillAndSort<int>", "FillAndSortVector<int>", None),
    ("FillAndSort<CString>", "FillAndSortVector<CString>", None),
    ("LookUp<int>", "LookUpVector<int>", None),
    ("LookUp<CString>", "LookUpVector<CString>", None),
    ("Union<int>/100000", "UnionVector<int>/100000", None),
    ("Union<CString>/100000", "UnionVector<CString>/100000", None),
    ("Arithmetic<&XSetString::Sub>", "ArithmeticVector<true>", None),
    ("Arithmetic<&XSetString::Intersection>", "ArithmeticVector<false>", None),
]
UNITS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}


def bar_of(name):
    for prefix, bar in BARS.items():
        if name == prefix or name.startswith(prefix + "/"):
            return bar
    return None


def row(work, floor, ratio, bar):
    held, verdict = judge(work, ratio, bar)
    print(f"{work:44} {floor:28} {ratio:7.2f} {'' if bar is None else format(bar, '.2f'):>6}  {verdict}")
    return held


program = os.path.join(sys.argv[1], "bench", "veltrane_bench")
output = subprocess.run([program, "--benchmark_format=json"], capture_output=True, text=True, check=True).stdout
results = {result["name"]: result for result in json.loads(output)["benchmarks"]}
print(f"{'work':44} {'floor':28} {'ratio':>7} {'bar':>6}")
held = True
for name, result in results.items():
    if "ratio" in result:
        held &= row(name, "in its own source", result["ratio"], bar_of(name))
for work, floor, bar in PAIRS:
    times = [results[name]["cpu_time"] * UNITS[results[name]["time_unit"]] for name in (work, floor)]
    held &= row(work, floor, times[0] / times[1], bar)
for name, result in results.items():  # how linear the time is in the size: root mean square error
    if name.endswith("_RMS"):
        held &= row(name.removesuffix("_RMS"), "a line over the size", result["rms"], 0.2)
sys.exit(0 if held else 1)
