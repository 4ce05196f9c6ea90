#!/usr/bin/env python3
"""Compares what the sample host tells of the origins of its values with a model of its own, over random configurations.

Usage: origins_check.py HOST COUNT [SEED]

Each configuration is written by a generator that knows where every line stands. On a third of them one winner is
deleted from its source: its next candidate has to take its place. Exit code 1 when something differs; the
configuration is then left in a folder that is named."""
import json
import os
import random
import shutil
import subprocess
import sys
import tempfile

ROOT, USER, DATABASE, FILES, AUTODOC = "ROOT", "USER", "database", "files", "AUTODOC"
STRING, MANDATORY, FLAG, FAMILY, BARE = "string", "mandatory", "flag", "family", "bare"
AUTODOC_NAMES = ("script empty-page stylesheet index generated title class-title persistent-class-tree-file "
                 "persistent-class-list-file nonpersistent-class-list-file container-class-list-file "
                 "persistent-class-property-file nonpersistent-class-property-file container-class-property-file "
                 "class-list-line-template class-href-template attribute-list-line-template ref-list-line-template "
                 "presentation-repository").split()
# In the order of the option table: name, section, kinds, what is typed.
OPTIONS = [(name, section, set(kinds.split()), typed) for name, section, kinds, typed in [
    ("create-views", USER, "tri", "-cv"), ("create-schema", USER, "flag", "-cs"),
    ("gather-index-statistics", USER, "flag", "-gis"), ("quiet", USER, "flag", "-q"),
    ("load-oracle", USER, "flag", "-o"), ("exit", USER, "flag", "-e"), ("spool", USER, "string bare", "-sp"),
    ("summary", USER, "flag", "--summary"), ("name", ROOT, "string mandatory", "-n"),
    ("dictionary-root", ROOT, "string", "-dr"), ("data", ROOT, "string", "-dat"),
    ("changefile-root", ROOT, "string", "-cr"), ("logfile", ROOT, "string", "-log"),
    ("logging", ROOT, "string", "--logging"), ("ini", USER, "string", "-i"), ("metadata", ROOT, "string", "-m"),
    ("config", USER, "string", "-cfg"), ("autodoc-document-root", USER, "string", "-doc"),
    ("exe-path", None, "string mandatory", "--exe-path"), ("exe-name", None, "string mandatory", "--exe-name"),
    ("version-info", None, "string mandatory", "--version-info"),
    ("compile-time", None, "string mandatory", "--compile-time"), ("datetime", None, "string mandatory", "--datetime"),
    ("load-dictionary", USER, "string family", "-l"), ("diff-dictionary", USER, "family bare", "-d"),
    ("create-changefile", USER, "string family", "-c"), ("check-database", USER, "flag", "--check-database"),
    ("fix-database", USER, "flag", "--fix-database"), ("load-active-environment", USER, "flag", "-la"),
    ("create-autodoc", USER, "flag", "-ca"),
    ("dictionary-name", DATABASE, "string mandatory", "--dictionary-name"),
    ("role", DATABASE, "string mandatory", "--role"), ("registry", DATABASE, "string mandatory", "--registry"),
    *[("autodoc-" + name, AUTODOC, "string", "--autodoc-" + name) for name in AUTODOC_NAMES],
    ("obsolete-classes", DATABASE, "family bare", "--obsolete-classes"),
    ("map-file", FILES, "string family", "--map-file"), ("index-file", FILES, "string family", "--index-file"),
]]
TABLE = {row[0]: row for row in OPTIONS}
FACTS = ["exe-path", "exe-name", "version-info", "compile-time", "datetime"]
USER_FOLDERS = {"config": "configuration", "changefile-root": "changefile", "logging": "log"}
MOVING = {"ini", "name", "data", "metadata", "config", "exe-name", "exe-path"}  # these move the sources themselves
DATABASES = ["base", "base", "Base", "db", "root", "ROOT", "user", "x\\ROOT", "p/e\\", "50%_a", "a%d", "%k1%"]


class Fault(Exception):
    """The start-up ends with an error."""


# What the files hold. A line knows its number, so it is the answer where it answers.

class Ini:
    """Sections with entries, written with remarks, blanks, quotes and text that answers nothing."""

    def __init__(self, rng):
        self.rng, self.path, self.lines, self.sections = rng, None, [], []
        self.encoding = rng.choice(["utf-8"] * 4 + ["utf-8-sig", "utf-16"])
        self.end = rng.choice(["\n", "\n", "\r\n", "\r"])
        if rng.random() < 0.3:
            self.lines.append(rng.choice(["logfile=lost", "; remark", "", "name=lost"]))

    def section(self, name):
        self.lines.append(self.rng.choice(["[%s]", "[%s]", " [ %s ] ; x", "[%s"]) % self.spell(name))
        self.sections.append((self.lines[-1].strip()[1:].split("]")[0].strip(), []))

    def entry(self, key, text):
        if self.rng.random() < 0.1:
            self.lines.append(self.rng.choice(["", ";%s=remark" % key, "%s" % key, "=x"]))
        form = self.rng.choice(["%s", "%s", ' "%s"', "'%s'", "  %s \t"])
        if form == "%s" and text != text.strip() or text[:1] in ('"', "'"):
            form = '"%s"'
        key = self.spell(key)
        self.lines.append(self.rng.choice(["%s=", "%s=", " %s ="]) % key + form % text)
        raw = text if "%s" in form.strip("%s") or form[:1] in " '\"" and form.strip()[0] in "'\"" else text.strip()
        self.sections[-1][1].append((key, raw[:2047], len(self.lines)))

    def spell(self, name):
        chance = self.rng.random()
        return name.upper() if chance < 0.1 else name.lower() if chance < 0.2 else name

    def find(self, section):
        wanted = section.strip(" ").lower()
        return next((entries for name, entries in self.sections if name.lower() == wanted), [])

    def get(self, section, key):
        """(text, line), or None for a key that is missing or empty."""
        if not section:
            names = listed([name for name, _ in self.sections])
            return (names, 0) if names else None
        wanted = key.strip(" ").lower()
        found = next(((text, line) for name, text, line in self.find(section) if name.lower() == wanted), None)
        return found if found and found[0] else None

    def delete(self, section, key):
        if not section:
            raise KeyError("the list of the sections cannot be deleted")
        for name, entries in self.sections:
            if name.lower() != section.lower():
                continue
            for entry in [entry for entry in entries if entry[0].lower() == key.lower()]:
                entries.remove(entry)
                self.lines[entry[2] - 1] = "; deleted"

    def write(self):
        with open(self.path, "w", encoding=self.encoding, newline="") as file:
            file.write("".join(line + self.end for line in self.lines))


def listed(names):
    """Names as one text with commas, as far as a list reaches."""
    text = "".join(name + "\0" for name in names)
    if len(text) + 1 > 2048:
        text = text[:2046]
    return text[:-1].replace("\0", ",") + text[-1:].replace("\0", "")


class Registry:
    TOOL = "SOFTWARE\\VORNAK\\%s"

    def __init__(self, rng, path):
        self.rng, self.path = rng, path
        self.lines = ["Windows Registry Editor Version 5.00", ""]
        self.values = {}  # (key path, name) folded -> (text or None, line)
        self.owners = {}  # line -> the value it belongs to

    def section(self, tool, section):
        self.key = self.TOOL % tool + "\\" + section
        root = self.rng.choice(["HKEY_LOCAL_MACHINE", "HKLM", "hklm"])
        self.lines.append("[%s\\%s]" % (root, self.key))
        self.key = self.key[:-1] if self.key.endswith("\\") else self.key
        self.usable = "\\\\" not in self.key

    def entry(self, name, text):
        if self.rng.random() < 0.05:  # set and taken away again
            self.add(name, '"%s"="gone"' % name)
            self.add(name, '"%s"=-' % name)
        self.note(name, text)
        chance = self.rng.random()
        escaped = text.replace("\\", "\\\\").replace('"', '\\"')
        if chance < 0.7 or not text:
            self.add(name, '"%s"="%s"' % (name, escaped))
            return
        data = [("%02x" % byte) for byte in text.encode("utf-16-le") + b"\0\0"]
        middle = len(data) // 2
        self.add(name, '"%s"=hex(%d):%s,\\' % (name, self.rng.choice([1, 2]), ",".join(data[:middle])))
        self.add(name, "  " + ",".join(data[middle:]))

    def note(self, name, text):
        if self.usable:
            self.values[self.key.lower(), name.lower()] = (text, len(self.lines) + 1)

    def add(self, name, line):
        self.lines.append(line)
        self.owners[len(self.lines)] = (self.key.lower(), name.lower())

    def get(self, tool, section, name):
        path = (self.TOOL % tool + ("\\" + section if section else "")).lower()
        path = path[:-1] if path.endswith("\\") else path
        return self.values.get((path, name.lower()))

    def delete(self, tool, section, name):
        path = (self.TOOL % tool + ("\\" + section if section else "")).lower()
        path = path[:-1] if path.endswith("\\") else path
        del self.values[path, name.lower()]
        for line, owner in self.owners.items():
            if owner == (path, name.lower()):
                self.lines[line - 1] = ""

    def write(self):
        with open(self.path, "w", encoding="utf-8", newline="") as file:
            file.write("\r\n".join(self.lines) + "\r\n")


# The model.

class Origin:
    def __init__(self, source, text, file=None, line=0, section=None, key=None, word=None):
        self.source, self.text, self.file, self.line = source, text, file, line
        self.section, self.key, self.word = section, key, word

    def place(self, real):
        if self.file is None:
            return (self.source,)
        return (self.source, real(self.file), self.line, self.section.lower())

    def told(self, real):
        place = self.place(real) + (self.text,)
        if self.file is not None:
            place += (self.key.lower(),)
        return place + ((self.word,) if self.word is not None else ())


def is_absolute(path):
    return path[:1] in ("/", "\\") or path[1:2] == ":"


def join(folder, name):
    """With the separator that the folder uses last."""
    if name[1:2] == ":" or not folder:
        return name
    used = [character for character in folder if character in "\\/"]
    bare = folder[-1] in "\\/" or name[:1] in ("\\", "/")
    return folder + ("" if bare else used[-1] if used else "\\") + name


def match(item, form):
    """The number of an item that has a form with one "%d", or None."""
    i = j = 0
    while j < len(form):
        if form[j].isspace():
            while j < len(form) and form[j].isspace():
                j += 1
            while i < len(item) and item[i].isspace():
                i += 1
        elif form[j:j + 2] == "%d":
            while i < len(item) and item[i].isspace():
                i += 1
            begin = i
            if item[i:i + 1] in ("+", "-"):
                i += 1
            digits = i
            while i < len(item) and item[i] in "0123456789":
                i += 1
            return int(item[begin:i]) if i > digits else None
        else:
            if item[i:i + 1] != form[j]:
                return None
            i += 1
            j += 2 if form[j:j + 2] == "%%" else 1
    return None


class World:
    """One configuration and what has to come of it."""

    def __init__(self, folder):
        self.folder = folder
        self.drives, self.environment, self.words = {}, {}, []  # words: (option or None, typed words, text)
        self.registry = self.user = self.basic = None

    def real(self, path):
        path = path.replace("\\", "/")
        if path[1:2] == ":":
            if path[0].upper() not in self.drives:
                return ""
            path = self.drives[path[0].upper()] + "/" + path[2:]
        return os.path.normpath(os.path.join(self.folder, "cwd", path)).lower()

    def exists(self, path):
        return bool(path) and bool(self.real(path)) and os.path.exists(self.real(path))

    # Retrieval.

    def section(self, kind):
        if kind not in (DATABASE, FILES):
            return kind
        name = self.value("name")
        if kind == DATABASE:
            return name
        return name + "\\FILES\\%d" if name else "FILES\\%d"

    def value(self, name):
        """What a string getter answers for one option of the store."""
        if name not in TABLE or STRING not in TABLE[name][2] or FAMILY in TABLE[name][2]:
            raise Fault(name)
        item = self.items.get((name, -1))
        if item is None and MANDATORY in TABLE[name][2]:
            raise Fault(name)
        if BARE in TABLE[name][2]:
            return "false" if item is None else item[0] or "true"
        return item[0] if item else ""

    def answers(self, section, key):
        """The answer of each source that is open, the strongest first."""
        found = []
        tool = self.tool_key
        if tool is not None:
            answer = self.registry.get(tool, section, key)
            if answer:
                path = Registry.TOOL % tool + ("\\" + section if section else "")
                found.append(Origin("registry", answer[0], self.registry.path, answer[1], path, key))
        for source, file in (("user file", self.user_open), ("basic file", self.basic_open)):
            answer = file and file.get(section, key)
            if answer:
                found.append(Origin(source, answer[0], file.path, answer[1], section, key))
        if section == ROOT and self.environment.get(key):
            found.append(Origin("environment", self.environment[key]))
        return found

    def source_value(self, section, key):
        answers = self.answers(section, key)
        winner = answers[0] if answers and answers[0].source != "environment" else None
        if winner and winner.text:
            return winner.text, winner
        if section == ROOT:
            if answers and answers[-1].source == "environment":
                return answers[-1].text, answers[-1]
            return self.value(key), winner
        return "", winner

    def retrieve_internal(self, section, key, chain):
        if (section, key) in chain:
            raise Fault("cycle")
        value, winner = self.source_value(section, key)
        return self.expand(value, section, chain + ((section, key),)), winner

    def expand(self, value, section, chain=()):
        for _ in range(1000):
            begin = value.find("%")
            end = value.find("%", begin + 1) if begin >= 0 else -1
            if end < 0:
                return value
            key = value[begin + 1:end]
            text, _ = self.retrieve_internal(section, key, chain)
            if not text and section != ROOT:
                text, _ = self.retrieve_internal(ROOT, key, chain)
            if not text and section:
                text, _ = self.retrieve_internal("", key, chain)
            value = value[:begin] + text + value[end + 1:]
        raise Fault("endless")

    def family(self, section, key):
        """index -> (text, origin), and whether a key without index is among them."""
        found, bare = {}, False
        for source, file in (("basic file", self.basic_open), ("user file", self.user_open)):
            if not file:
                continue
            by_sections = "%d" in section or not section
            names = [name for name, _ in file.sections] if by_sections else [e[0] for e in file.find(section)]
            form = (section if by_sections else key + "-%d").lower()
            for item in listed(names).lower().split(","):
                if not item:
                    break
                index = match(item, form)
                if index is None and not by_sections and form.startswith(item):
                    index, bare = max(found, default=-1) + 1, True
                if index is None:
                    continue
                if index in found:
                    raise Fault("twice")
                place = (item, key) if by_sections else (section, item)
                answer = file.get(*place)
                if answer:
                    found[index] = (answer[0], Origin(source, answer[0], file.path, answer[1], *place))
        return found, bare

    def retrieve(self, name):
        if any(key[0] == name for key in self.items) or TABLE[name][1] is None:
            return
        section = self.section(TABLE[name][1])
        if FAMILY in TABLE[name][2]:
            family = self.family(section, name)[0]
            for index in sorted(family):
                if index == -1:
                    break
                self.items[name, index] = (self.expand(family[index][0], section), family[index][1])
            return
        value, winner = self.retrieve_internal(section, name, ())
        if value:
            self.items[name, -1] = (value, winner)
        elif MANDATORY in TABLE[name][2]:
            raise Fault(name)

    # Start-up.

    def run(self):
        """Fills items: (name, index) -> (value, origin of a source or None)."""
        self.items, self.completed, self.tool_key = {}, set(), None
        self.user_open = self.basic_open = None
        self.data_asked = False
        for fact, value in (("exe-path", self.folder + "/tool"), ("exe-name", "veltrane"), ("version-info", None),
                            ("compile-time", None), ("datetime", None)):
            self.items[fact, -1] = (value, None)
        self.typed = {}  # name -> [origin of a word]
        number = 1
        for name, words, text in self.words:
            value = self.expand(text, "")
            index = -1 if FAMILY not in TABLE[name][2] else len(self.typed.get(name, []))
            self.items[name, index] = (value, None)
            self.typed.setdefault(name, []).append(Origin("command line", text, word=number))
            number += len(words)
        tool = self.value("exe-name")
        self.tool_key = tool[:-4] if tool.endswith(".exe") else tool
        self.retrieve("metadata")
        folder = self.value("metadata")
        if not is_absolute(folder):
            self.complete("metadata", self.value("exe-path"), folder or ".metadata")
        if not self.exists(self.value("metadata")):
            raise Fault("metadata")
        for name, default in USER_FOLDERS.items():
            self.resolve(name, default)
        self.data_known = bool(self.early_data())
        asked = ["metadata", *USER_FOLDERS] + ["data"] * self.data_asked
        self.early = [name for name in asked if self.environment.get(name) and self.gives_early(name)]
        self.open_files()
        for name in TABLE:
            self.retrieve(name)

    def early_data(self):
        if ("data", -1) in self.items:
            return self.value("data")
        try:
            return self.retrieve_internal(ROOT, "data", ())[0]
        except Fault:
            return ""

    def gives_early(self, name):
        """Whether the environment has a value for an option while no file is open."""
        try:
            return self.expand(self.environment[name], ROOT) != ""
        except Fault:
            return True

    def complete(self, name, base, folder):
        given = self.items.get((name, -1), (None, None))[1]
        self.items[name, -1] = (join(base, folder), given)
        self.completed.add(name)

    def resolve(self, name, default):
        self.retrieve(name)
        path = self.value(name)
        if is_absolute(path):
            if not self.exists(path):
                raise Fault(name)
            return
        self.data_asked = True
        self.retrieve("data")
        data = self.value("data")
        if not data:
            return
        if not self.exists(data):
            raise Fault("data")
        self.complete(name, data, path or default)
        if path and not self.exists(self.value(name)):
            raise Fault(name)

    def open_files(self):
        self.retrieve("ini")
        ini = self.value("ini")
        if ini:
            if not self.exists(ini) and not is_absolute(ini):
                if not self.exists(self.value("config")):
                    raise Fault("config")
                ini = join(self.value("config"), ini)
            if not self.exists(ini) or self.real(ini) != self.user.path:
                raise Fault("ini")
            self.user_open = self.user
        name = self.value("exe-name").replace(".exe", "") + ".ini"
        if self.real(join(self.value("metadata"), name)) != self.basic.path:
            raise Fault("basic file")
        self.basic_open = self.basic

    # Candidates.

    def candidates(self, name, index):
        value, given = self.items[name, index]
        _, kind, kinds, _ = TABLE[name]
        words = self.typed.get(name, [])
        if FAMILY in kinds:
            found = [words[index]] if words else []
            try:
                family = self.family(self.section(kind), name)[0]
            except Fault:
                family = {}
            return found + ([family[index][1]] if index in family else [])
        found = [Origin("start-up", value)] if name in self.completed else []
        found += reversed(words)
        if kind is None:
            facts = {"exe-path": self.folder + "/tool", "exe-name": "veltrane"}
            return found + [Origin("host", facts.get(name, value if not words else None))]
        answers = self.answers(self.section(kind), name)
        if name == "metadata" or name in USER_FOLDERS and self.data_known:
            answers = [answer for answer in answers if "file" not in answer.source]
        answers = self.by_strength(name, answers)
        if given and not words:
            answers.sort(key=lambda answer: answer.source != given.source)  # what came too late stands after it
        return found + answers

    def by_strength(self, name, answers):
        """As the answers count for the option at its moment; they come with the environment last."""
        if not answers or answers[-1].source != "environment":
            return answers
        place = len(answers) - 1
        if name in self.early:
            place = min(place, int(answers[0].source == "registry"))
        if not answers[0].text:  # an empty text of the registry hides the files alone
            place = 0
        return answers[:place] + answers[-1:] + answers[place:-1]


# The generator.

class Generator:
    def __init__(self, rng, folder):
        self.rng, self.world = rng, World(folder)
        self.database = rng.choice(DATABASES)

    def text(self):
        rng = self.rng
        word = "".join(rng.choice("abcxyz") for _ in range(rng.randint(1, 5)))
        chance = rng.random()
        if chance < 0.45:
            return word
        if chance < 0.75:
            return word + "%" + self.reference() + "%" + rng.choice(["", "z"])
        return rng.choice(["", "true", "FALSE", "auto", "5%", "a;b", "a b", "C:\\new\\" + word, "%spool%", "%k3%",
                           "1,2", "\u00e4\u20ac", "[x]", "a=b", "w" * 70,
                           "v" * 2100 if rng.random() < 0.1 else "v"])

    def reference(self):
        if self.rng.random() < 0.005:
            return self.rng.choice(["role", "unknown", "quiet", "load-dictionary"])  # most often errors
        return self.rng.choice(["k1", "k2", "k3"] * 2 + ["V1", "name", "data", "exe-name", "logfile", "spool",
                                                         "metadata", "dictionary-root", "changefile-root", "config"])

    def word(self):
        return self.rng.choice(["run", "w.log", "%k1%.log", "%V1%", "%k2%", "", "x%k3%"])

    def folder(self, name):
        """Absolute, relative or by a drive; all exist, most of them."""
        world, rng = self.world, self.rng
        base = {"metadata": "tool", "data": "out"}.get(name, "out")
        metadata = os.path.basename(os.path.dirname(world.basic.path))
        own = {"metadata": [metadata], "data": ["data"]}.get(name, ["d1", "d2", "D3"])
        relative = rng.choice(own)
        if rng.random() < 0.02 and name != "logging":  # without a log the host tells nothing
            relative = "missing"
        below = base if name in ("metadata", "data") else base + "/data"
        forms = ["%s/%s/%s" % (world.folder, below, relative), "X:\\%s\\%s" % (below.replace("/", "\\"), relative),
                 "Y:/" + relative if name not in ("metadata", "data") else "X:" + below + "/" + relative]
        if rng.random() < 0.01:
            return "%autodoc-title%"  # nothing, as a rule
        if name != "data":
            forms += [relative] * 3
        if name not in ("metadata", "data"):
            forms += ["%data%/" + relative] * 2
        return rng.choice(forms)

    def value(self, name):
        if name == "name":
            return self.database if self.rng.random() < 0.96 else self.rng.choice(DATABASES)
        if name in ("metadata", "data") or name in USER_FOLDERS:
            return self.folder(name)
        if name == "logfile":
            return self.word()
        if name == "ini":
            return self.rng.choice(["team.ini"] * 3 + [self.world.user.path, "X:\\cwd\\team.ini"])
        return self.text()

    def kind(self, section):
        """Options whose keys belong into a section."""
        return [row[0] for row in OPTIONS if row[1] == section]

    def pick(self, section, share, without=()):
        without = [*without, "metadata"] if self.rng.random() < 0.7 else without
        names = [name for name in self.kind(section) if name not in without and self.rng.random() < share]
        self.rng.shuffle(names)
        return names

    def fill(self, add, section, share, is_basic, families=True):
        rng = self.rng
        sure = {DATABASE: ["dictionary-name", "role", "registry"], ROOT: ["name"]}.get(section, []) if is_basic else []
        if is_basic and section.lower() == self.database.lower():  # the two share a section
            sure = ["dictionary-name", "role", "registry", "name"]
        for name in dict.fromkeys(sure + self.pick(section, share)):
            if FAMILY in TABLE[name][2]:
                if families:
                    self.fill_family(add, name, is_basic)
            else:
                add(name, (self.value(name) or "s") if name in sure else self.value(name))
                if rng.random() < 0.05:
                    add(name, self.value(name))  # again: answers nothing in a file, everything in the registry
        if section != DATABASE:
            for key in rng.sample(["k1", "k2", "k3"], 2):
                add(key, rng.choice(["one", "two", "", "%V1%", "%k2%" if key == "k1" else "three"]))
        if rng.random() < 0.03 and families:
            for i in range(300):
                add("filler-%d" % i, "f")

    def fill_family(self, add, name, is_basic):
        rng = self.rng
        index = 0 if is_basic else 50
        for _ in range(rng.randint(1, 3)):
            index = index + rng.randint(4, 9) if rng.random() < 0.97 else 4
            if rng.random() < 0.35:
                key = name[:rng.choice([len(name), rng.randint(3, len(name))])] + rng.choice(["", "", "-"])
            else:
                key = "%s-%d" % (name, index)
            add(key.rstrip("-") if rng.random() < 0.8 and key.endswith("-") else key, self.text())

    def fill_ini(self, file, is_basic):
        rng = self.rng
        database = "e1" if self.database == "%k1%" else self.database
        kinds = [ROOT, USER, AUTODOC, DATABASE]
        rng.shuffle(kinds)
        if rng.random() < 0.1:
            kinds.append(rng.choice([ROOT, USER, DATABASE]))  # a second one answers nothing
        for kind in kinds:
            file.section(database if kind == DATABASE else kind)
            self.fill(file.entry, kind, 0.35 if is_basic else 0.3, is_basic)
        form = database.replace("%%", "%").replace("%d", "3", 1) if "%d" in database else database
        index = 0 if is_basic else 7
        for _ in range(rng.choice([0, 1, 1, 2, 3])):
            index = index + rng.randint(1, 2) if rng.random() < 0.97 else 2
            if form != database and rng.random() < 0.5:
                file.section(form)  # a family of sections by the name of the database
                file.entry("obsolete-classes", self.text())
                continue
            file.section("%s\\FILES\\%d" % (database.replace("%%", "%").replace("%d", str(index), 1), index))
            for name in ("map-file", "index-file"):
                if rng.random() < 0.7:
                    file.entry(name, self.text())

    def fill_registry(self):
        world, rng = self.world, self.rng
        world.registry = Registry(rng, world.folder + "/machine.reg")
        for kind in rng.sample([ROOT, USER, DATABASE, AUTODOC], rng.randint(0, 4)):
            tool = "veltrane" if rng.random() < 0.9 else "other"
            world.registry.section(tool, self.database if kind == DATABASE else kind)
            self.fill(world.registry.entry, kind, 0.2, is_basic=False, families=False)

    def fill_environment(self):
        world, rng = self.world, self.rng
        world.environment = {"V1": "var", "k1": "e1", "k2": "%V1%", "k3": "e3"}
        for name in self.pick(ROOT, 0.25):
            world.environment[name] = self.value(name)

    def fill_words(self):
        world, rng = self.world, self.rng
        names = [rng.choice(list(TABLE)) for _ in range(rng.randint(0, 6))]
        names = [name for name in names if name != "exe-path" and (name not in FACTS or rng.random() < 0.5)]
        names = [name for name in names if name not in ("metadata", "exe-name", "ini") or rng.random() < 0.3]
        names += ["name"] * rng.choice([0, 1, 1, 2]) + ["ini"] * rng.choice([0, 1]) + ["summary"]
        names += [name for name in names if rng.random() < 0.3 and name != "exe-name"]
        rng.shuffle(names)
        if rng.random() < 0.7 and "data" not in names:
            names.insert(0, "data")
        for name in names:
            world.words.append(self.type(name))
        if rng.random() < 0.02:
            world.words.append(("name", [""], ""))

    def type(self, name):
        kinds, typed = TABLE[name][2:]
        rng = self.rng
        typed = rng.choice([typed, "--" + name])
        if "flag" in kinds or "tri" in kinds:
            default = "true" if "flag" in kinds else "auto"
            text = rng.choice(["true", "TRUE"]) if name == "summary" else rng.choice(["true", "False"])
            return (name, [typed, text], text) if rng.random() < 0.6 else (name, [typed], default)
        if BARE in kinds and rng.random() < 0.3:
            return (name, [typed], "")
        text = "Veltrane.exe" if name == "exe-name" else self.value(name)
        if name == "name" and text and rng.random() < 0.5 and self.takes_bare():
            return (name, [text], text)
        return (name, [typed, text or "given"], text or "given")

    def takes_bare(self):
        """Whether the next word would not be taken as the value of the last option."""
        return not self.world.words or not self.world.words[-1][1][-1].startswith("-")

    def make(self):
        world, rng = self.world, self.rng
        out = world.folder + "/out"
        for path in ("tool/.metadata", "tool/meta", "out/data/d1", "out/data/d2", "out/data/D3", "cwd"):
            os.makedirs(world.folder + "/" + path.lower(), exist_ok=True)
        for path in ("configuration", "changefile", "log"):
            shutil.rmtree(out + "/data/" + path, ignore_errors=True)
        world.drives = {"X": world.folder, "Y": out + "/data"}
        world.basic, world.user = Ini(rng), Ini(rng)
        metadata = rng.choice([".metadata"] * 3 + ["meta"])
        world.basic.path = "%s/tool/%s/veltrane.ini" % (world.folder, metadata)
        world.user.path = world.folder + rng.choice(["/cwd/team.ini"] * 12 + ["/out/data/configuration/team.ini",
                                                                          "/out/data/d1/team.ini"])
        self.fill_words()
        self.fill_environment()
        self.fill_registry()
        self.fill_ini(world.basic, is_basic=True)
        self.fill_ini(world.user, is_basic=False)
        if metadata != ".metadata" and rng.random() < 0.9:
            world.words.append(("metadata", ["-m", metadata], metadata))
        return world


# The comparison.

def write(world):
    for path in ("tool/.metadata/veltrane.ini", "tool/meta/veltrane.ini", "cwd/team.ini",
                 "out/data/configuration/team.ini", "out/data/d1/team.ini"):
        if os.path.exists(world.folder + "/" + path):
            os.remove(world.folder + "/" + path)
    os.makedirs(os.path.dirname(world.user.path), exist_ok=True)
    for file in (world.basic, world.user, world.registry):
        file.write()


def ask(world):
    """The lines of the host's summary, as they stand in JSON; None when its start-up fails."""
    environment = dict(world.environment, VORNAK_REGISTRY=world.registry.path, VELTRANE_SUMMARY="json",
                       VORNAK_DRIVES=";".join("%s=%s" % pair for pair in world.drives.items()))
    words = [word for _, typed, _ in world.words for word in typed]
    result = subprocess.run([world.folder + "/tool/veltrane", *words], cwd=world.folder + "/cwd", env=environment,
                            stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=60, check=False)
    world.talk = result.stderr.decode("utf-8", "replace")
    lines = result.stdout.decode().splitlines()
    lines = [line for line in lines if line.startswith('{"option"')]
    return [json.loads(line) for line in lines] if lines else None


def origin_of(told):
    return Origin(told["source"], told.get("text"), told.get("file"), told.get("line"), told.get("section"),
                  told.get("key"), told.get("word"))


def trim_registry(place):
    """The key of a database that ends with a backslash is the key without."""
    return tuple(part[:-1] if isinstance(part, str) and part.endswith("\\") and i == 3 else part
                 for i, part in enumerate(place))


def agree(actual, expected):
    """What only the host knows, such as when it was built, is any text."""
    if ("host", None) in expected and len(actual) == len(expected):
        expected = [actual[i] if place == ("host", None) and actual[i][0] == "host" else place
                    for i, place in enumerate(expected)]
    return actual == expected


def compare(world, lines):
    """The first difference as a text, or None."""
    told = {(line["option"], line["index"]): line for line in lines}
    if len(told) != len(lines) or set(told) != set(world.items):
        return "items: %s" % sorted(set(told) ^ set(world.items), key=str)
    for (name, index), line in told.items():
        value = world.items[name, index][0]
        if value is not None and line["value"] != value:
            return "%s[%d]: value %r instead of %r" % (name, index, line["value"], value)
        expected = [trim_registry(origin.told(world.real)) for origin in world.candidates(name, index)]
        actual = [trim_registry(origin_of(one).told(world.real)) for one in line["candidates"]]
        if not agree(actual, expected):
            return "%s[%d]: %s\n instead of %s" % (name, index, actual, expected)
        own = trim_registry(origin_of(line).place(world.real))
        first = trim_registry(origin_of(line["candidates"][0]).place(world.real))
        if own != first:
            return "%s[%d]: line %s, first candidate %s" % (name, index, own, first)
    return None


def has_bare_keys(world, name):
    try:
        return FAMILY in TABLE[name][2] and world.family(world.section(TABLE[name][1]), name)[1]
    except Fault:
        return True


def delete(world, name, index, winner):
    section = world.section(TABLE[name][1])
    if winner.source == "command line":
        kept = [word for word in world.words if word[0] != name]
        if FAMILY not in TABLE[name][2]:
            last = max(i for i, word in enumerate(world.words) if word[0] == name)
            kept = world.words[:last] + world.words[last + 1:]
        world.words = kept
    elif winner.source == "environment":
        del world.environment[name]
    elif winner.source == "registry":
        world.registry.delete(world.tool_key, section, name)
    else:
        file = world.user if winner.source == "user file" else world.basic
        file.delete(winner.section, winner.key)


def told_without_word(origin, world):
    origin.word = None
    return trim_registry(origin.told(world.real))


def check_deletion(world, rng):
    """Deletes one winner from its source. @return difference or None, and whether something was checked"""
    choice = [(name, index) for name, index in sorted(world.items) if name not in MOVING and name != "summary"
              and not has_bare_keys(world, name)]
    choice = [key for key in choice if world.candidates(*key)[0].source not in ("host", "start-up")
              and world.candidates(*key)[0].line != 0 or world.candidates(*key)[0].file is None
              and world.candidates(*key)[0].source not in ("host", "start-up")]
    if not choice:
        return None, False
    name, index = rng.choice(choice)
    candidates = world.candidates(name, index)
    try:
        delete(world, name, index, candidates[0])
    except KeyError:
        return None, False
    write(world)
    lines = ask(world)
    if lines is None:
        return None, False  # a mandatory option, or a reference that needs it
    told = [line for line in lines if line["option"] == name and line["index"] == index]
    expected = [told_without_word(origin, world) for origin in candidates[1:]]
    actual = [told_without_word(origin_of(one), world) for line in told for one in line["candidates"]]
    if not told and (not expected or expands_to_nothing(world, name, expected)):
        return None, True
    if not agree(actual, expected) and "start-up" not in [place[0] for place in actual]:
        return "%s[%d] without its winner: %s\n instead of %s" % (name, index, actual, expected), True
    return None, True


def expands_to_nothing(world, name, expected):
    """A next candidate without a text hides the weaker ones."""
    try:
        world.run()
    except Fault:
        return True
    return (name, -1) not in world.items


def main():
    host, count = os.path.abspath(sys.argv[1]), int(sys.argv[2])
    seed = int(sys.argv[3]) if len(sys.argv) > 3 else random.randrange(1 << 30)
    folder = "%s/origins%d" % (tempfile.gettempdir(), os.getpid())  # in lower case, like the path of the basic file
    os.makedirs(folder + "/tool")
    shutil.copy(host, folder + "/tool/veltrane")
    figures = {"configurations": 0, "ended by an error": 0, "values": 0, "candidates": 0, "deletions": 0}
    for number in range(count):
        rng = random.Random("%d %d" % (seed, number))
        world = Generator(rng, folder).make()
        write(world)
        try:
            world.run()
            fault = None
        except Fault as error:
            fault = str(error)
        lines = ask(world)
        figures["configurations"] += 1
        difference = None
        if fault is not None or lines is None:
            figures["ended by an error"] += 1
            if (fault is None) != (lines is not None) and "Failed to open the log file!" not in world.talk:
                difference = "the start %s, the model says: %s" % ("fails" if lines is None else "succeeds", fault)
        else:
            difference = compare(world, lines)
            figures["values"] += len(lines)
            figures["candidates"] += sum(len(line["candidates"]) for line in lines)
            if difference is None and number % 3 == 0:
                difference, checked = check_deletion(world, rng)
                figures["deletions"] += checked
        if difference:
            print("seed %d, configuration %d, in %s:\n%s\nwords: %s\nenvironment: %s\n%s" % (
                seed, number, folder, difference, world.words, world.environment, world.talk))
            sys.exit(1)
    shutil.rmtree(folder)
    print("seed %d: %s" % (seed, ", ".join("%d %s" % (figure, what) for what, figure in figures.items())))


if __name__ == "__main__":
    main()
