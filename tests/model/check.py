#!/usr/bin/env python3
"""Compares the values and origins that a program reports with the model, for random configurations.

Usage: check.py {host|companion} PROGRAM COUNT [SEED]

The host is started; on a third of the configurations one answer is then deleted from its source, and the next candidate
has to take its place. The companion shows each value with its candidates, the winner first; `explain` has to end at the
same values, `files` has to name the files that were read, and the file that `freeze` writes has to give, alone, the values
that it says it carries. Exit code 1 when something differs; the configuration is then left in a folder that is named."""
import collections
import json
import os
import random
import shutil
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True
from configuration import Configuration
from precedence import Origin, Start

MOVING = {"ini", "name", "data", "metadata", "config", "exe-name", "exe-path"}  # these move the sources themselves
NOT_FROZEN = {"version-info", "compile-time", "datetime", "exe-path", "exe-name", "metadata"}  # the tool knows them itself
figures = collections.Counter()


class Difference(Exception):
    pass


def expect(what, actual, expected):
    if actual != expected:
        raise Difference(f"{what}: {actual}\n instead of {expected}")


def run(command, configuration, variables):
    return subprocess.run(command, cwd=configuration.folder + "/cwd", env={**configuration.places(), **variables},
                          capture_output=True, encoding="utf-8", errors="replace", timeout=60, check=False)


def origin_of(reported, configuration):
    """As host and companion report it."""
    file, section, key = reported.get("file"), reported.get("section"), reported.get("key")
    return Origin(reported.get("source") or reported["layer"], reported.get("text", reported.get("raw")), file and configuration.real(file),
                  reported.get("line"), section and section.lower(), key and key.lower(), reported.get("word"))


def place_of(reported):
    return [reported.get(field) for field in ("source", "file", "line", "section")]


def compare(start, reported):
    """reported: (name, index) -> (value, candidates)"""
    expect("items", set(reported) ^ set(start.items), set())
    for key, (value, candidates) in reported.items():
        expected, actual = start.candidates(*key), [origin_of(one, start.given) for one in candidates]
        expect(key, value, value if start.items[key][0] is None else start.items[key][0])
        for one, like in zip(actual, expected):
            expect(key, one, like if like.text is not None else like._replace(text=one.text))
        expect(key, actual[len(expected):], expected[len(actual):])
        figures.update(values=1, candidates=len(actual))


def expect_fault(values, message, fault):
    missing = [text for text in fault if text.lower() not in message.lower()]
    if values or missing:
        raise Difference(f"{len(values)} values, {message}\n instead of an error with {missing or fault}")
    figures["ended by an error"] += 1


def check_host(configuration):
    start = Start(configuration)
    result = run([configuration.folder + "/tool/veltrane", *configuration.arguments()], configuration,
                 {**configuration.environment, "VELTRANE_SUMMARY": "json"})
    lines = [json.loads(line) for line in result.stdout.splitlines() if line.startswith('{"option"')]
    if start.fault or not lines:
        expect_fault(lines, result.stderr, start.fault or ["Failed to open the log file!"])  # its name is not judged here
        return start
    compare(start, {(line["option"], line["index"]): (line["value"], line["candidates"]) for line in lines})
    for line in lines:
        expect(line["option"], place_of(line), place_of(line["candidates"][0]))
    return start


def check_deletion(configuration, start):
    """The next candidate takes the place of one that is deleted from its source."""
    found = {key: start.candidates(*key) for key in sorted(start.items) if not start.fault
             and key[0] not in MOVING | {"summary"} | start.renumbered}
    found = {key: origins for key, origins in found.items()
             if origins[0].source not in ("host", "start-up") and origins[0].line != 0}  # 0: the list of the sections
    if not found:
        return
    key = random.choice([key for key in found if len(found[key]) > 1] or list(found))
    configuration.delete(key[0], found[key][0])
    configuration.write()
    start = check_host(configuration)
    origins = start.candidates(*key) if key in start.items and not start.fault else []
    if origins and origins[0].source != "start-up":
        expect(key, [one._replace(word=None) for one in origins], [one._replace(word=None) for one in found[key][1:]])
    figures["deletions"] += 1


def check_companion(program, configuration):
    def ask(*question, words=configuration.arguments(), variables=configuration.environment):
        command = [program, *question, "--format=json", "--tool", configuration.folder + "/tool/veltrane", "--", *words]
        result = run(command, configuration, variables)
        if result.returncode not in (0, 1) or result.stderr:
            raise Difference(f"{question}: exit code {result.returncode}: {result.stdout}{result.stderr}")
        return json.loads(result.stdout)

    start, document = Start(configuration), ask("show", "--all")
    texts = [text for error in document["errors"] for text in (error["message"], *error["reasons"], *error["remarks"])]
    expect(f"start-up, {texts}", document["startup"], "failed" if start.fault else "ok")
    if start.fault:
        expect_fault([], "\n".join(texts), start.fault)
        for question in (["freeze"], ["files"], ["explain", "logfile", "map-file"]):
            ask(*question)
        return
    shown = values_of(document)
    compare(start, {key: (option["value"], option["candidates"]) for key, option in shown.items()})
    for key, option in shown.items():
        expect(key, [number for number, one in enumerate(option["candidates"]) if one["wins"]], [0])
    check_explained(shown, values_of(ask("explain", *sorted({name for name, _ in shown}))))
    read = {(one["kind"], configuration.real(one["path"])) for one in ask("files")["files"] if one.get("reading") == "read"}
    files = {"registry": configuration.registry, "basic file": start.basic, "user file": start.user}
    expect("files", read, {(kind, file.path) for kind, file in files.items() if file})
    check_frozen(shown, ask("freeze"), configuration.folder + "/frozen", ask)


def values_of(document):
    return {(option["name"], option.get("index", -1)): option
            for option in document["options"] if option["value"] is not None}


def check_explained(shown, explained):
    expect("explained", set(explained) ^ set(shown), set())
    for key, option in explained.items():
        expected, last = shown[key]["value"], option["steps"][-1]
        expected = "true" if (key[0], expected) == ("spool", "") else expected  # given bare
        if key[0] != "datetime":  # of another second
            expect(key, (option["value"], last["kind"], last["text"]), (expected, "value", expected))


def check_frozen(shown, frozen, folder, ask):
    """The values that the frozen file gives alone."""
    os.makedirs(folder)
    with open(folder + "/veltrane.ini", "w", encoding="utf-8", newline="") as file:
        file.write(frozen["file"])
    left = {one["name"]: one["value"] for one in frozen["not_carried"]}
    figures["not carried"] += len(left)
    alone = values_of(ask("show", "--all", words=["--metadata", folder, *(left[name] for name in left if name == "name")],
                          variables={"VORNAK_REGISTRY": folder + "/none"}))
    shutil.rmtree(folder)
    for (name, index), option in shown.items():
        label = name if index < 0 else f"{name}[{index}]"
        if label not in left and name not in NOT_FROZEN:
            expect(f"{label} frozen in\n{frozen['file']}", alone.get((name, index), {}).get("value"), option["value"])


def main():
    kind, program, count = sys.argv[1], os.path.abspath(sys.argv[2]), int(sys.argv[3])
    seed = int(sys.argv[4]) if len(sys.argv) > 4 else random.randrange(1 << 30)
    folder = f"{tempfile.gettempdir()}/origins{os.getpid()}"  # in lower case, like the path of the basic file
    os.makedirs(folder + "/tool")
    shutil.copy(program, folder + "/tool/veltrane")
    for number in range(count):
        random.seed(f"{seed} {number}")
        configuration = Configuration(folder)
        configuration.write()
        try:
            if kind == "companion":
                check_companion(program, configuration)
            else:
                start = check_host(configuration)
                if number % 3 == 0:
                    check_deletion(configuration, start)
        except Difference as difference:
            sys.exit(f"seed {seed}, configuration {number}, in {folder}:\n{difference}\nwords: {configuration.words}\n"
                     f"environment: {configuration.environment}")
    shutil.rmtree(folder)
    print(f"seed {seed}: {count} configurations, {', '.join(f'{figure} {what}' for what, figure in figures.items())}")


if __name__ == "__main__":
    main()
