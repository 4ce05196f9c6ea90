#!/usr/bin/env python3
"""Times the start of a host compared with an empty program, in pairs, and counts instructions, memory and libraries.

Usage: run.py BUILD_FOLDER [PAIRS [STATIC_BUILD_FOLDER]]
Exit code 1 when a bar is not held."""
import os
import re
import statistics
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))
sys.dont_write_bytecode = True
from bars import judge

build = os.path.abspath(sys.argv[1])
pairs = int(sys.argv[2]) if len(sys.argv) > 2 else 400
static_build = os.path.abspath(sys.argv[3]) if len(sys.argv) > 3 else None
empty = [os.path.join(build, "bench", "startup_empty")]


def basic_file():
    """10 KiB, 80 keys in 6 sections."""
    names = subprocess.run([os.path.join(build, "bench", "startup_store"), "--help"], capture_output=True).stdout
    assert b"Synopsis" in names
    autodoc = re.findall(r'L"(autodoc-[a-z-]+)"', open(os.path.join(os.path.dirname(__file__), "..", "..", "veltrane",
                         "options", "optiontable.h")).read())
    sections = {
        "ROOT": ["dictionary-root=/srv/%name%/dictionaries", "logfile=%name%-run.log"],
        "USER": ["create-views=auto", "create-schema=false", "gather-index-statistics=true", "exit=false",
                 "load-oracle=false"],
        "AUTODOC": [f"{name}={name}.html" for name in dict.fromkeys(autodoc) if name != "autodoc-document-root"],
        "base": ["dictionary-name=BASE", "role=OWNER", "registry=REG", "obsolete-classes-1=1,2,3"],
        "base\\FILES\\1": ["map-file=a.map", "index-file=a.idx"],
        "base\\TABLENAME RULES\\1": ["ORDERS_OLD=ORDERS", "TMP_=WRK_"],
    }
    keys = sum(map(len, sections.values()))
    sections["USER"] += [f"team-setting-{i}=value of the setting number {i}" for i in range(80 - keys)]
    text = "".join(f"[{name}]\n" + "\n".join(lines) + "\n" for name, lines in sections.items())
    return "; " + "the basic configuration " * ((10240 - len(text)) // 24) + "\n" + text


with tempfile.TemporaryDirectory() as folder:
    for name in ("meta", "config", "data", "data/changefile", "data/log"):
        os.makedirs(os.path.join(folder, name), exist_ok=True)
    text = basic_file()
    # The comment is spread so that no line is unusual.
    text = re.sub(r"((?:the basic configuration ){4})", r"\1\n; ", text)
    open(os.path.join(folder, "meta", "startup_store.ini"), "w").write(text)
    user = "[USER]\nspool=%name%.lst\n[AUTODOC]\nautodoc-title=Title\n"
    user += "".join(f"; remark {i:03} of the team about its configuration\n" for i in range(60))
    open(os.path.join(folder, "user.ini"), "w").write(user[:3072])
    store = [os.path.join(build, "bench", "startup_store"), "-m", folder + "/meta", "-cfg", folder + "/config", "-dat",
             folder + "/data", "-i", folder + "/user.ini", "-n", "base", "-q", "true", "-cv", "auto", "-cs", "false",
             "-e", "true", "-l", "a.dic", "-l", "b.dic", "-c", "change.sql"]
    environment = {"PATH": "/usr/bin", "HOME": "/root", "LANG": "C.UTF-8", "TEMP": "/tmp", "TZ": "UTC",
                   "dictionary-path": "/srv", "LC_ALL": "C"}
    assert len(environment) == 7

    def wall(command):
        begin = time.perf_counter()
        process = os.posix_spawn(command[0], command, environment)
        _, status = os.waitpid(process, 0)
        assert status == 0, f"{command[0]} failed"
        return time.perf_counter() - begin

    def instructions(command):
        output = subprocess.run(["valgrind", "--tool=callgrind", "--callgrind-out-file=" + folder + "/callgrind"] + command,
                                capture_output=True, text=True, env=environment)
        return int(re.search(r"refs:\s+([0-9,]+)", output.stderr).group(1).replace(",", ""))

    held = True

    def row(work, floor, figure, bar, digits=2):
        global held
        is_held, verdict = judge(work, figure, bar)
        held = held and is_held
        print(f"{work:44} {floor:28} {figure:7.{digits}f} {bar:6.2f}  {verdict}")

    def compare(what, command, bar, beside=empty, name="an empty program"):
        subprocess.run(command, env=environment, check=True)
        times = [(wall(beside), wall(command)) for _ in range(pairs)]
        floor, work = (statistics.median(column) * 1e6 for column in zip(*times))
        row(what, name + ", by the clock", statistics.median(b / a for a, b in times), bar)
        return f"{what}: {work:.0f} us, {name} {floor:.0f} us; "

    print(f"\nstart with a basic file of {len(text)} bytes and a user file of {len(user[:3072])} bytes, {pairs} pairs")
    figures = compare("start, shared library", store, 1.4)
    if static_build:
        static = [os.path.join(static_build, "bench", "startup_store"), *store[1:]]
        figures += compare("start, linked statically", static, 0.68)
    origins = [os.path.join(build, "bench", "startup_origins"), *store[1:]]
    figures += compare("start, all origins kept", origins, 1.15, store, "the start")
    count = instructions(store)
    row("start, shared library", "millions of instructions", count / 1e6, 2.85)
    figures += f"instructions {count:,}, origins kept {instructions(origins):,}, empty {instructions(empty):,}"
    if static_build:
        figures += f", static {instructions(static):,}"
    memory = subprocess.run(["/usr/bin/time", "-f", "%M", *store], capture_output=True, text=True, env=environment, check=True)
    row("start, shared library", "MiB of memory at the peak", int(memory.stderr) / 1024, 4)
    print(figures)
    libraries = subprocess.run(["ldd", store[0]], capture_output=True, text=True).stdout.split()
    print("libraries:", " ".join(word for word in libraries if word.startswith(("lib", "linux"))), "\n")
sys.exit(0 if held else 1)
