#!/usr/bin/env python3
"""Every answer in JSON, errors included, fits the schema in docs/, and every field of the schema occurs in an answer.
The findings in SARIF are those in JSON and fit the parts of its published schema that sarif.schema.json has. The exit
codes in the documentation are those of the help.
Usage: schema.py SOURCE_FOLDER PROGRAM"""
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile

source, program = sys.argv[1:]
schema = json.load(open(f"{source}/docs/veltrane-config.schema.json"))
sarif = json.load(open(f"{source}/tests/companion/sarif.schema.json"))
definitions = {**schema["$defs"], **sarif["$defs"]}
types = {"object": dict, "array": list, "string": str, "integer": int, "boolean": bool, "null": type(None)}
seen = set()


def walk(value, rule, path):
    name = rule.get("$ref", "")
    rule = definitions[name.rsplit("/")[-1]] if name else rule
    wanted = rule.get("type", [])
    wanted = [wanted] if isinstance(wanted, str) else wanted
    assert not wanted or any(type(value) is types[kind] for kind in wanted), f"{path}: {value!r} is no {wanted}"
    assert "const" not in rule or value == rule["const"], f"{path}: {value!r}"
    assert "pattern" not in rule or re.search(rule["pattern"], value), f"{path}: {value!r}"
    assert "minimum" not in rule or value >= rule["minimum"], f"{path}: {value!r}"
    assert "enum" not in rule or value in rule["enum"], f"{path}: {value!r}"
    if isinstance(value, dict):
        known = rule["properties"]
        assert set(rule.get("required", [])) <= set(value) <= set(known), f"{path}: {sorted(value)}"
        for key, inner in value.items():
            seen.add((id(known), key))
            walk(inner, known[key], f"{path}.{key}")
    if isinstance(value, list):
        for item in value:
            walk(item, rule["items"], path + "[]")


def unseen(rule, path):
    known = rule.get("properties", {})
    yield from (f"{path}.{key}" for key in known if (id(known), key) not in seen)
    for key, inner in known.items():
        yield from unseen(inner, f"{path}.{key}")
    yield from unseen(rule["items"], path + "[]") if "items" in rule else ()


with tempfile.TemporaryDirectory() as work:
    os.mkdir(f"{work}/data")
    for name, text in {
        "veltrane.ini": "[ROOT]\nlogfile=%data%/%name%.log\nname=x\ndictionary-root=%loop%\nloop=%loop%\n[USER]\nquiet=yes\n"
                        "lodd-oracle=true\n[db]\nrole=r\ndictionary-name=d\nregistry=g\nobsolete-classes-1=3\n"
                        "[db\\FILES\\1]\nmap-file=m\n[db\\TABLENAME RULES\\3]\nA=\nB=C\n",
        "team.ini": "[ROOT]\nlogfile=b.log\n",
        "twice.ini": "[db\\FILES\\01]\nmap-file=m\n",
        "list": "table a\ncolumn b\n",
        "run.log": "## Error info start ##\nLocation:\t<A> in [a], line [1]\n\tnowhere\nMessage:\tx reason:\nreason: \ty\n\tz\n",
    }.items():
        pathlib.Path(work, name).write_text(text)
    os.mkdir(f"{work}/folder")
    names = ["logfile", "logging", "map-file", "index-file", "dictionary-root", "tablename-rules"]
    arguments = ["-m", work, "db", "-i", "team.ini", "--data", f"{work}/data", "-l", "a b"]
    questions = (["show", "--all"], ["show", *names], ["explain", *names], ["lint"], ["lint", "--explain", "C05"], ["lint", "--fix", "--dry-run"], ["names", "list"],
                 ["names", "--version", "4", "list"], ["names", "--rules"], ["freeze"], ["files"],
                 ["set", "map-file[3]", "m", "--dry-run"], ["set", "spool", "s"], ["set", "ini", "i", "--dry-run"], ["unset", "logfile"], ["set", "x"],
                 ["diff", "other.json"], ["diff", "--", "-m", work, "db"], ["diff", "list"],
                 ["errors", "run.log", "run.log"], ["nothing"], ["show", "nothing"], ["explain"], ["errors", "folder"],
                 ["show", "--tool", "none"], ["lint", "none"], ["lint", "--code", "X"], ["names", "none"], ["freeze", "now"])
    worlds = (arguments, ["-m", work, "db", "-i", "folder"], ["-m", work, "dbx"], ["-m", f"{work}/none"], ["--nothing"],
              ["-m", work, "db", "-i", "twice.ini"], ["--help"], [])

    other = subprocess.run([program, "show", "--all", "--format=json", "--", "-m", work, "db"], cwd=work, capture_output=True)
    pathlib.Path(work, "other.json").write_bytes(other.stdout)

    def ask(question, form, words):
        done = subprocess.run([program, "--format", form, *question, "--", *words], cwd=work, text=True,
                              capture_output=True, env={"VORNAK_REGISTRY": f"{work}/none", "VORNAK_DRIVES": ""})
        is_plain = done.returncode == 2 and form != "json"
        assert done.returncode in (0, 1, 2) and (done.stderr != "") == is_plain, f"{question}: {done}"
        return {} if is_plain else json.loads(done.stdout)

    for words in worlds:
        for question in questions:
            walk(ask(question, "json", words), schema, " ".join(question))
        findings = ask(["lint"], "json", words).get("findings", [])
        wanted = [(each["code"], each["severity"], each["line"], each["text"]) for each in findings]
        for root in (".", "folder"):
            log = ask(["lint", "--root", root], "sarif", words)
            walk(log, sarif, "sarif") if log else None
            told = []
            for each in log["runs"][0]["results"] if log else ():
                region = each["locations"][0].get("physicalLocation", {}).get("region", {"startLine": 0})
                told.append((each["ruleId"], each["level"], region["startLine"], each["message"]["text"].split("; did you")[0]))
                assert log["runs"][0]["tool"]["driver"]["rules"][each["ruleIndex"]]["id"] == each["ruleId"], each
            assert told == wanted, f"{words}: {told} {wanted}"
missing = [path for name, rule in {"": schema, " ": sarif, **definitions}.items() for path in unseen(rule, name)]
assert not missing, f"never answered: {missing}"
told = " ".join(subprocess.run([program, "--help"], capture_output=True, text=True).stdout.split())
codes = re.findall(r"^\| (\d) \| (.*) \|$", open(f"{source}/docs/veltrane-config.md").read(), re.MULTILINE)
assert told.endswith("Exit codes: " + " ".join(" ".join(code) for code in codes)), codes
