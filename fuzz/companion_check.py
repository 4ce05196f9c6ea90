#!/usr/bin/env python3
"""Compares what veltrane-config tells with the model of origins_check.py, over random configurations.

Usage: companion_check.py PROGRAM COUNT [SEED]

`show --all` has to tell each value with its candidates, the winner first; `explain` has to end at the same values;
`files` has to name the files that were read; and the file that `freeze` writes has to give, alone, the values that it
says it carries. Exit code 1 when something differs; the configuration is then left in a folder that is named."""
import json
import os
import random
import shutil
import subprocess
import sys
import tempfile

from origins_check import Fault, Generator, Origin, agree, trim_registry, write

KNOWN_BY_HOST = {"version-info", "compile-time", "datetime", "exe-path"}


def ask(program, world, question, words, environment):
    """The document of one question."""
    result = subprocess.run([program, *question, "--format=json", "--tool", world.folder + "/tool/veltrane", "--", *words],
                            cwd=world.folder + "/cwd", env=environment, capture_output=True, timeout=60, check=False)
    if result.returncode not in (0, 1) or result.stderr:
        raise AssertionError("%s: exit code %d: %s%s" % (question, result.returncode, result.stdout, result.stderr))
    return json.loads(result.stdout)


def key_of(option):
    return option["name"], option.get("index", -1)


def origin_of(told):
    return Origin(told["layer"], told["raw"], told.get("file"), told.get("line"), told.get("section"), told.get("key"),
                  told.get("word"))


def compare_shown(world, shown):
    told = {key_of(option): option for option in shown["options"] if option["value"] is not None}
    if set(told) != set(world.items):
        return "show: items %s" % sorted(set(told) ^ set(world.items), key=str)
    for (name, index), option in told.items():
        value = world.items[name, index][0]
        if value is not None and option["value"] != value:
            return "show %s[%d]: value %r instead of %r" % (name, index, option["value"], value)
        expected = [trim_registry(origin.told(world.real)) for origin in world.candidates(name, index)]
        actual = [trim_registry(origin_of(one).told(world.real)) for one in option["candidates"]]
        if not agree(actual, expected):
            return "show %s[%d]: %s\n instead of %s" % (name, index, actual, expected)
        if [one["wins"] for one in option["candidates"]] != [True] + [False] * (len(expected) - 1):
            return "show %s[%d]: winner" % (name, index)
    return None


def compare_explained(shown, explained):
    values = {key_of(option): option["value"] for option in shown["options"] if option["value"] is not None}
    told = {key_of(option): option for option in explained["options"]}
    if set(told) != set(values):
        return "explain: items %s" % sorted(set(told) ^ set(values), key=str)
    for key, option in told.items():
        last = option["steps"][-1]
        expected = values[key]
        if key[0] == "datetime" or (key[0] == "spool" and option["value"] == "true" and expected == ""):
            continue  # of another second; given bare
        if option["value"] != expected or (last["kind"], last["text"]) != ("value", expected):
            return "explain %s: %s instead of %r" % (key, option, expected)
    return None


def compare_files(world, files):
    read = {one["kind"] for one in files["files"] if one.get("reading") == "read"}
    expected = {"registry", "basic file"} | ({"user file"} if world.user_open else set())
    if read != expected:
        return "files: read %s instead of %s" % (read, expected)
    named = {(one["kind"], world.real(one["path"])) for one in files["files"] if one.get("reading") == "read"}
    paths = {"registry": world.registry.path, "basic file": world.basic.path, "user file": world.user.path}
    wrong = {one for one in named if one[1] != paths[one[0]]}
    return "files: %s" % wrong if wrong else None


def compare_frozen(program, world, shown, frozen):
    """Shows the values that the frozen file gives alone."""
    folder = tempfile.mkdtemp(dir=world.folder)
    with open(folder + "/veltrane.ini", "w", encoding="utf-8", newline="") as file:
        file.write(frozen["file"])
    left = {one["name"]: one["value"] for one in frozen["not_carried"]}
    name = [left["name"]] if "name" in left else []
    alone = ask(program, world, ["show", "--all"], ["--metadata", folder, *name],
                {"VORNAK_REGISTRY": folder + "/none", "VORNAK_DRIVES": world.environment["VORNAK_DRIVES"]})
    shutil.rmtree(folder)
    found = {key_of(option): option["value"] for option in alone["options"] if option["value"] is not None}
    for option in shown["options"]:
        name, index = key_of(option)
        label = name if index < 0 else "%s[%d]" % (name, index)
        if option["value"] is None or label in left or name in KNOWN_BY_HOST | {"exe-name", "metadata"}:
            continue
        if found.get((name, index)) != option["value"]:
            return "freeze %s: %r instead of %r\n%s" % (label, found.get((name, index)), option["value"], frozen["file"])
    return None


def check(program, world, figures):
    environment = world.environment
    words = [word for _, typed, _ in world.words for word in typed]
    try:
        world.run()
        fault = None
    except Fault as error:
        fault = str(error)
    shown = ask(program, world, ["show", "--all"], words, environment)
    if (fault is None) != (shown["startup"] == "ok"):
        return "start-up %s, the model says: %s\n%s" % (shown["startup"], fault, shown["errors"])
    if fault is not None:
        figures["ended by an error"] += 1
        for question in (["freeze"], ["files"], ["explain", "logfile", "map-file"]):
            ask(program, world, question, words, environment)
        return None
    figures["values"] += len(world.items)
    figures["candidates"] += sum(len(option["candidates"]) for option in shown["options"])
    names = sorted({name for name, _ in world.items})
    difference = (compare_shown(world, shown) or
                  compare_explained(shown, ask(program, world, ["explain", *names], words, environment)) or
                  compare_files(world, ask(program, world, ["files"], words, environment)))
    if difference:
        return difference
    frozen = ask(program, world, ["freeze"], words, environment)
    figures["not carried"] += len(frozen["not_carried"])
    return compare_frozen(program, world, shown, frozen)


def main():
    program, count = os.path.abspath(sys.argv[1]), int(sys.argv[2])
    seed = int(sys.argv[3]) if len(sys.argv) > 3 else random.randrange(1 << 30)
    folder = "%s/companion%d" % (tempfile.gettempdir(), os.getpid())  # in lower case, like the path of the basic file
    os.makedirs(folder + "/tool")
    open(folder + "/tool/veltrane", "w").close()
    figures = {"configurations": 0, "ended by an error": 0, "values": 0, "candidates": 0, "not carried": 0}
    for number in range(count):
        world = Generator(random.Random("%d %d" % (seed, number)), folder).make()
        write(world)
        world.environment.update(VORNAK_REGISTRY=world.registry.path,
                                 VORNAK_DRIVES=";".join("%s=%s" % pair for pair in world.drives.items()))
        figures["configurations"] += 1
        try:
            difference = check(program, world, figures)
        except AssertionError as error:
            difference = str(error)
        if difference:
            print("seed %d, configuration %d, in %s:\n%s\nwords: %s\nenvironment: %s" % (
                seed, number, folder, difference, world.words, world.environment))
            sys.exit(1)
    shutil.rmtree(folder)
    print("seed %d: %s" % (seed, ", ".join("%d %s" % (figure, what) for what, figure in figures.items())))


if __name__ == "__main__":
    main()
