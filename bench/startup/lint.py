#!/usr/bin/env python3
"""Times lint, set and diff of veltrane-config beside the start of the host, or show, on the same files, and on files
that grow. Processor time; by the clock, set also waits until its file and its folder are on the disk.

Usage: lint.py BUILD_FOLDER [PAIRS]
Prints a table of work, floor, ratio and bar; exit code 1 when a bar is not held."""
import os
import statistics
import sys
import tempfile

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))
sys.dont_write_bytecode = True
from bars import judge

build = os.path.abspath(sys.argv[1])
pairs = int(sys.argv[2]) if len(sys.argv) > 2 else 100
host, companion = (os.path.join(build, name) for name in ("veltrane", "veltrane-config"))
if not os.path.exists(companion):
    sys.exit("veltrane-config was not built: install libcli11-dev and nlohmann-json3-dev and configure again")
environment = {"PATH": "/usr/bin", "LANG": "C.UTF-8", "VORNAK_REGISTRY": "/dev/null"}
HEAD = "[base]\ndictionary-name=BASE\nrole=OWNER\nregistry=REG\n"
# The lines of each kind are those that take lint the longest, to find what is wrong or to make sure that nothing is.
KINDS = {
    "unknown keys": ("[USER]\n", "team-setting-{0:06}=a value of some length that nobody asks for, whatever it is\n"),
    "repeated keys": ("[USER]\n", "quiet=true ; a comment after the value, which counts, in line {0:06}\n"),
    "a family": ("[USER]\n", "load-dictionary-{0}=%exe-path%/lists/of/all/names/in/the/schema/of/the/base/v{0}.txt\n"),
    "databases": ("", "[base-{0:06}]\nrole=OWNER_OF_THE_TABLES_{0:06}\n[base-{0:06}\\FILES\\1]\nmap-file={0:06}.map\n"),
    "naming rules": ("[base\\TABLENAME RULES\\1]\n",
                     "NAME_{0:06}=A_RATHER_LONG_NAME_FOR_A_TABLE_OF_THE_SCHEMA_{0:06}\n"),
}


def seconds(command):
    """Processor time of a run; unlike elapsed time it hardly depends on other load."""
    silence = [(os.POSIX_SPAWN_OPEN, 1, "/dev/null", os.O_WRONLY, 0)]
    process = os.posix_spawn(command[0], command, environment, file_actions=silence)
    _, status, usage = os.wait4(process, 0)
    assert status == 0, f"{command} failed"
    return usage.ru_utime + usage.ru_stime


held = True


def row(what, floor, work, ratio, bar):
    global held
    is_held, verdict = judge(what, ratio, bar)
    held = held and is_held
    print(f"{what:46} {work * 1e3:8.2f} ms {floor * 1e3:8.2f} ms {ratio:6.2f} {bar:6.2f}  {verdict}")


with tempfile.TemporaryDirectory() as folder:
    basic, user = (os.path.join(folder, name) for name in ("veltrane.ini", "user.ini"))
    tool = ["-m", folder, "base", "-i", user]
    lint, show = ([companion, *words, "--", *tool] for words in (["lint"], ["show", "--all"]))
    diff = [companion, "diff", "--", *tool, "--", *tool]
    change = [companion, "set", "spool", "%name%.lst", "--in", "basic", "--", *tool]

    def write(head, lines, size):
        text = HEAD + head
        number = 0
        while len(text) < size:
            text += "".join(lines.format(number + i) for i in range(100 if size > 100_000 else 1))
            number += 100 if size > 100_000 else 1
        open(basic, "w").write(text)

    def compare(what, floor, work):
        times = []
        for _ in range(pairs):
            times.append((seconds(floor), seconds(work)))
            write(*KINDS["naming rules"], 10 << 10)
        medians = (statistics.median(column) for column in zip(*times))
        row(what, *medians, statistics.median(b / a for a, b in times), 3)

    def grow(what, command, head, lines):
        best = []
        for size in (1 << 18, 1 << 20):
            best.append(9.0)
            for _ in range(5):
                write(head, lines, size)
                best[-1] = min(best[-1], seconds(command))
        row(what, 4 * best[0], best[1], best[1] / (4 * best[0]), 1.3)

    print(f"{'work':46} {'work':>11} {'floor':>11} {'ratio':>6} {'bar':>6}")
    open(user, "w").write("[AUTODOC]\nautodoc-title=Title\n" + "; a remark of the team about its configuration\n" * 62)
    write(*KINDS["naming rules"], 10 << 10)
    compare("lint of 10 KiB and 3 KiB; floor: host's start", [host, *tool], lint)
    compare("set in 10 KiB; floor: host's start", [host, *tool], change)
    compare("diff of 10 KiB and 3 KiB; floor: show --all", show, diff)
    for kind, (head, lines) in KINDS.items():
        grow(f"lint of 1 MiB of {kind}; 4 times 256 KiB", lint, head, lines)
    grow("set in 1 MiB of naming rules; 4 times 256 KiB", change, *KINDS["naming rules"])
sys.exit(0 if held else 1)
