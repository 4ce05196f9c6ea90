#!/usr/bin/env python3
"""Times the start of a host on configurations that grow, compared with the same start written by hand over inih and maps.

Usage: scale.py BUILD_FOLDER [PAIRS]
Prints a table of work, floor, ratio and bar; exit code 1 when a bar is not held."""
import os
import re
import statistics
import subprocess
import sys
import tempfile

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))
sys.dont_write_bytecode = True
from bars import judge

build = os.path.abspath(sys.argv[1])
pairs = int(sys.argv[2]) if len(sys.argv) > 2 else 100
by_hand, by_store = (os.path.join(build, "bench", "startup_" + name) for name in ("inih", "store"))
if not os.path.exists(by_hand):
    sys.exit("startup_inih was not built: install libinih-dev and configure again")
table = os.path.join(os.path.dirname(__file__), "..", "..", "veltrane", "options", "optiontable.h")
names = re.findall(r'^ *(?:Option)?Row\(\w+, *\w+, *L"[^"]*", *L"([a-z-]+)"', open(table).read(), re.M)
assert len(names) > 50
environment = {"PATH": "/usr/bin", "HOME": "/root", "LANG": "C.UTF-8", "TEMP": "/tmp", "TZ": "UTC", "LC_ALL": "C",
               "dictionary-path": "/srv"}


def configuration(size, values, sections=60):
    """An INI file of that size whose values are naming rules in so many sections."""
    text = ("[ROOT]\ndictionary-root=/srv/%name%/dictionaries\nlogfile=%name%-run.log\n[USER]\nexit=false\n"
            "[base]\ndictionary-name=BASE\nrole=OWNER\nregistry=REG\n")
    each = values // sections
    room = (size - len(text)) // sections
    for section in range(sections):
        kind = "TABLENAME" if section % 2 == 0 else "COLUMNNAME"
        lines = [f"[base\\{kind} RULES\\{section // 2 + 1}]"]
        width = (room - len(lines[0]) - 1) // each - 1
        lines += [f"OLD_{number:04}=".ljust(width, "N") for number in range(each)]
        text += "\n".join(lines) + "\n"
    return text


def cost(command):
    """Processor time of a run in milliseconds; unlike elapsed time it hardly depends on other load."""
    process = os.posix_spawn(command[0], command, environment)
    _, status, usage = os.wait4(process, 0)
    assert status == 0, f"{command[0]} failed"
    return (usage.ru_utime + usage.ru_stime) * 1e3


def median(command, runs=pairs):
    return statistics.median(cost(command) for _ in range(runs))


def compare(floor, work):
    """Medians of two commands that take turns."""
    times = [(cost(floor), cost(work)) for _ in range(pairs)]
    return [statistics.median(column) for column in zip(*times)]


held = True


def row(what, floor, work, bar):
    global held
    ratio = work / floor
    is_held, verdict = judge(what, ratio, bar)
    held = held and is_held
    print(f"{what:46} {work:8.2f} ms {floor:8.2f} ms {ratio:6.2f} {bar:6.2f}  {verdict}")


with tempfile.TemporaryDirectory() as folder:
    for name in ("meta", "config", "data", "data/changefile", "data/log"):
        os.makedirs(os.path.join(folder, name), exist_ok=True)
    basic = os.path.join(folder, "meta", "startup_store.ini")
    user = os.path.join(folder, "user.ini")
    open(user, "w").write("[USER]\nspool=%name%.lst\n[AUTODOC]\nautodoc-title=Title\n")
    store = [by_store, "-m", folder + "/meta", "-cfg", folder + "/config", "-dat", folder + "/data", "-i", user, "-n",
             "base", "-q", "true"]
    origins = [os.path.join(build, "bench", "startup_origins"), "--exe-name", "startup_store", *store[1:]]
    hand = [by_hand, basic, user, "base", *names]

    def with_basic(size, values, sections=60):
        open(basic, "w").write(configuration(size, values, sections))

    print(f"{'start':46} {'store':>11} {'floor':>11} {'ratio':>6} {'bar':>6}")
    with_basic(1 << 20, 6400)
    row("1 MiB, 6,400 values; floor: inih and maps", *compare(hand, store), 1.5)
    row("1 MiB, all origins kept; floor: the store", *compare(store, origins), 1.3)
    with_basic(100_000, 640)
    row("100 KB, 640 values; floor: inih and maps", *compare(hand, store), 1.3)

    with_basic(4096, 60)
    small = median(store)
    per_byte = []
    for kibibytes in (256, 1024, 4096, 16384):
        with_basic(kibibytes << 10, kibibytes * 6400 // 1024)
        per_byte.append((median(store, max(5, pairs // 10)) - small) / kibibytes)
    row("16 MiB, by the MiB; floor: 256 KiB", per_byte[0] * 1024, per_byte[-1] * 1024, 1.2)
sys.exit(0 if held else 1)
