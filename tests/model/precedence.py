"""Where a value comes from: the rules of a start, stated a second time, apart from the library.

The store of a tool keeps the first item that it gets for an option:
  1. facts of the host (exe-name ...), then the words of the command line; of a single option the last word holds
  2. the FOLDERS, and `data` when one of them but `metadata` is relative or not given: no file is open yet
  3. `ini`, which names the user file; then that is opened, and the basic file, <metadata>/<exe-name>.ini
  4. every other option, in the order of the table

What is not in the store yet is looked up in the section of the option. The first of them that has a text wins:
  registry > user file > basic file > environment (ROOT only)
An empty text in the registry hides both files; anywhere else it is no answer. A family (map-file-0, map-file-1 ...) merges
both files and asks nothing else. %name% in a text is the value of that name in the same section, else in ROOT, else the
list of all sections; a name in ROOT that no source has is an option of the store."""
import os
import re
from collections import namedtuple

ROOT, USER, DATABASE, FILES, NONE = "ROOT", "USER", "database", "files", "none"
FOLDERS = {"metadata": ".metadata", "config": "configuration", "changefile-root": "changefile", "logging": "log"}
AUTODOC = """script empty-page stylesheet index generated title class-title persistent-class-tree-file
    persistent-class-list-file nonpersistent-class-list-file container-class-list-file persistent-class-property-file
    nonpersistent-class-property-file container-class-property-file class-list-line-template class-href-template
    attribute-list-line-template ref-list-line-template presentation-repository""".split()
TABLE = [  # in the order of the option table: section and kinds; long names, each with its short one
    ("USER tri", "create-views -cv"),
    ("USER flag", "create-schema -cs, gather-index-statistics -gis, quiet -q, load-oracle -o, exit -e"),
    ("USER string bare", "spool -sp"),  # may be given without a word
    ("USER flag", "summary"),
    ("ROOT string mandatory", "name -n"),
    ("ROOT string", "dictionary-root -dr, data -dat, changefile-root -cr, logfile -log, logging"),
    ("USER string", "ini -i"),
    ("ROOT string", "metadata -m"),
    ("USER string", "config -cfg, autodoc-document-root -doc"),
    ("none string mandatory", "exe-path, exe-name, version-info, compile-time, datetime"),
    ("USER string family", "load-dictionary -l"),
    ("USER family bare", "diff-dictionary -d"),
    ("USER string family", "create-changefile -c"),
    ("USER flag", "check-database, fix-database, load-active-environment -la, create-autodoc -ca"),
    ("database string mandatory", "dictionary-name, role, registry"),
    ("AUTODOC string", ", ".join("autodoc-" + name for name in AUTODOC)),
    ("database family bare", "obsolete-classes"),
    ("files string family", "map-file, index-file"),
]
Option = namedtuple("Option", "section kinds typed")
OPTIONS = {name: Option(kinds.split()[0], kinds.split()[1:], short[0] if short else "--" + name)
           for kinds, names in TABLE for name, *short in map(str.split, names.split(", "))}
# The answer of a source before its references are resolved, and its place. The text None is any.
Origin = namedtuple("Origin", "source text file line section key word", defaults=[None] * 5)
Entry = namedtuple("Entry", "key text line")  # of a file


class Fault(Exception):
    """The start ends with an error that contains these texts."""


def without_fault(call, *arguments, otherwise=""):
    try:
        return call(*arguments)
    except Fault:
        return otherwise


def is_absolute(path):
    return path[:1] in ("/", "\\") or path[1:2] == ":"


def join(folder, name):
    """With the separator that the folder uses last."""
    if name[1:2] == ":" or not folder:
        return name
    used = re.findall(r"[\\/]", folder) or ["\\"]
    return folder + ("" if folder[-1] in "\\/" or name[:1] in ("\\", "/") else used[-1]) + name


def find_in_registry(registry, section, key):
    """The last value of the name, also an empty one. A backslash at the end is no part of the name of a section."""
    return next((entry for name, entries in reversed(registry.sections) for entry in reversed(entries)
                 if name.lower() == section.lower().rstrip("\\") and entry.key.lower() == key.lower()), None)


def entries_of(file, section):
    """Those of the first section of the name; later ones are ignored."""
    return next((entries for name, entries in file.sections if name.lower() == section.strip(" ").lower()), [])


def find_in_file(file, section, key):
    """The first line of the key unless it is empty; in no section the names of all."""
    names = [Entry(key, listed([name for name, _ in file.sections]), 0)] if not section else [
        entry for entry in entries_of(file, section) if entry.key.lower() == key.strip(" ").lower()]
    return names[0] if names and names[0].text else None


def listed(names):
    """One text with commas, cut to the length of a list."""
    whole = ",".join(names)
    return whole if len(whole) < 2047 else whole[:2046].rstrip(",")


def number_in(item, form):
    """The number that an item has in the place of "%d", None where it has another form."""
    before, found, _ = form.partition("%d")
    number = found and re.match(re.escape(before) + r"\s*([+-]?[0-9]+)", item)
    return int(number[1]) if number else None


class Start:
    """One start of a tool. What its store holds then: (name, index) -> (value, origin when it came from a source), the
    index -1 for a single option; a value of None is any."""

    def __init__(self, given):
        self.given, self.fault = given, ()
        self.typed, self.completed, self.renumbered, self.asked_early = {}, set(), set(), set(FOLDERS)
        self.tool = self.user = self.basic = None  # no source is open
        self.facts = {"exe-path": self.given.folder + "/tool", "exe-name": "veltrane"}
        self.items = {(name, -1): (self.facts.get(name), None) for name in OPTIONS if OPTIONS[name].section == NONE}
        try:
            self.run()
        except Fault as fault:
            self.fault = fault.args

    def run(self):
        self.take_words()
        self.tool = re.sub(r"\.exe$", "", self.value("exe-name"))  # now the registry can be asked
        for name, default in FOLDERS.items():
            self.resolve_folder(name, default)
        self.note_early_answers()
        self.open_files()
        for name in OPTIONS:
            self.retrieve(name)

    def take_words(self):
        number = 1
        for name, words, text in self.given.words:
            origins = self.typed.setdefault(name, [])
            index = len(origins) if "family" in OPTIONS[name].kinds else -1
            self.items[name, index] = (self.expand("", text), None)
            origins.append(Origin("command line", text, word=number))
            number += len(words)

    def resolve_folder(self, name, default):
        """Relative or not given: below the program or `data`. A folder that is not given is created there, except `metadata`."""
        self.retrieve(name)
        path = self.value(name)
        if not is_absolute(path):
            base = self.value("exe-path") if name == "metadata" else self.resolved_data()
            if not base:
                return
            _, origin = self.items.get((name, -1), (None, None))
            self.items[name, -1] = (join(base, path or default), origin)
            self.completed.add(name)
        if path or name == "metadata":
            self.check_folder(self.value(name))

    def resolved_data(self):
        self.asked_early.add("data")
        self.retrieve("data")
        if self.value("data"):
            self.check_folder(self.value("data"))
        return self.value("data")

    def check_folder(self, path):
        if not self.given.exists(path):
            raise Fault(f"Folder <{path}> does not exist!")

    def note_early_answers(self):
        """Which options the environment answers, and which folders are determined, before the files are opened."""
        data = self.value("data") if ("data", -1) in self.items else without_fault(self.expand, ROOT, "%data%")
        self.settled = set(FOLDERS) if data else {"metadata"}
        self.early = {name for name in self.asked_early if without_fault(
            self.expand, ROOT, self.given.environment.get(name, ""), otherwise="an error at its time")}

    def open_files(self):
        self.retrieve("ini")
        ini = self.value("ini")
        if ini:
            is_found = self.given.exists(ini) or is_absolute(ini)
            self.user = self.opened(self.given.user, ini, None if is_found else self.value("config"))
        name = self.value("exe-name").replace(".exe", "") + ".ini"
        self.basic = self.opened(self.given.basic, name, self.value("metadata"))

    def opened(self, file, name, folder):
        """A program that only looks creates no default folder, and then misses it."""
        if self.given.real(join(folder or "", name)) != file.path:
            raise Fault("<" + (name if folder is None else folder))
        return file

    def section(self, name):
        """Where an option is looked up."""
        section = OPTIONS[name].section
        if section not in (DATABASE, FILES):
            return section
        database = self.value("name")
        return database if section == DATABASE else f"{database}\\FILES\\%d".lstrip("\\")

    def value(self, name):
        """What the store answers for a text."""
        kinds = OPTIONS[name].kinds if name in OPTIONS else []
        held, _ = self.items.get((name, -1), (None, None))
        if "string" not in kinds or "family" in kinds or held is None and "mandatory" in kinds:
            raise Fault(f"Error retrieving the string option <{name}>!")
        if "bare" in kinds:
            return "false" if held is None else held or "true"
        return held or ""

    def retrieve(self, name):
        """Puts an option into the store, unless it is there."""
        if OPTIONS[name].section == NONE or any(held == name for held, _ in self.items):
            return
        section = self.section(name)
        if "family" in OPTIONS[name].kinds:
            for index, origin in sorted(self.family(name).items()):
                if index == -1:
                    return  # the family ends here
                self.items[name, index] = (self.expand(section, origin.text), origin)
            return
        try:
            value, origin = self.look_up(section, name, ())
            if value:
                self.items[name, -1] = (value, origin)
            elif "mandatory" in OPTIONS[name].kinds:
                raise Fault(f"<{name}>")
        except Fault as fault:
            told = [answer for answer in self.answers(section, name) if answer.line][:1]
            raise Fault(*fault.args, *(f"{os.path.basename(answer.file)}>, line {answer.line}: {name}=" for answer in told)
                        ) from fault

    def look_up(self, section, key, chain):
        """The value of a key, its references resolved, and the answer that it was made of."""
        if (section, key) in chain:
            raise Fault("leads back to itself")
        answers = self.answers(section, key)
        origin = answers[0] if answers and answers[0].text else None
        text = origin.text if origin else self.value(key) if section == ROOT else ""
        return self.expand(section, text, (*chain, (section, key))), origin

    def expand(self, section, text, chain=()):
        while text.count("%") > 1:
            before, key, after = text.split("%", 2)
            places = dict.fromkeys([section, ROOT, ""] if section else ["", ROOT])
            text = before + next(filter(None, (self.look_up(place, key, chain)[0] for place in places)), "") + after
        return text

    def answers(self, section, key, is_early=False):
        """One of each source that is open, the strongest first. The environment comes before files that are not open yet
        or that an empty text in the registry hides."""
        path = f"SOFTWARE\\VORNAK\\{self.tool}\\{section}"
        found = [("registry", self.given.registry, path, self.tool and find_in_registry(self.given.registry, path, key))]
        found += [(source, file, section, file and find_in_file(file, section, key))
                  for source, file in (("user file", self.user), ("basic file", self.basic))]
        found = [Origin(source, entry.text, file.path, entry.line, section.lower(), key.lower())
                 for source, file, section, entry in found if entry]
        variable = self.given.environment.get(key) if section == ROOT else None
        hides = found and not found[0].text
        place = 0 if hides else sum(answer.source == "registry" for answer in found) if is_early else len(found)
        return found[:place] + [Origin("environment", variable)] * bool(variable) + found[place:]

    def family(self, name):
        """index -> answer. A key that is a beginning of the name gets the index after the largest. With "%d" in the
        section, the sections of that form are counted."""
        found, section = {}, self.section(name)
        by_sections = "%d" in section or not section
        form = (section if by_sections else name + "-%d").lower()
        for source, file in (("basic file", self.basic), ("user file", self.user)):
            keys = [] if not file else [section for section, _ in file.sections] if by_sections else [
                entry.key for entry in entries_of(file, section)]
            for key in filter(None, listed(keys).lower().split(",")):
                index = number_in(key, form)
                if index is None and not by_sections and form.startswith(key):
                    index = max(found, default=-1) + 1
                    self.renumbered.add(name)
                if index in found:
                    raise Fault(f"Multiple options <{name}> for index <{index}>!")
                place = (key, name) if by_sections else (section.lower(), key)
                entry = find_in_file(file, *place)
                if index is not None and entry:
                    found[index] = Origin(source, entry.text, file.path, entry.line, *place)
        return found

    def candidates(self, name, index):
        """One of each source and of each word: first the one that the value came from, then the others by strength, so
        that the next takes the place of the first when that is deleted from its source."""
        words, (section, kinds, _) = self.typed.get(name, []), OPTIONS[name]
        if "family" in kinds:
            family = without_fault(self.family, name, otherwise={})
            return [origin for origin in (*words[index:index + 1], family.get(index)) if origin]
        value, origin = self.items[name, index]
        found = [Origin("start-up", value)] * (name in self.completed) + words[::-1]
        if section == NONE:
            return found + [Origin("host", self.facts.get(name))]
        answers = [answer for answer in self.answers(self.section(name), name, name in self.early)
                   if name not in self.settled or not answer.source.endswith(" file")]
        if origin and not words:
            answers.sort(key=lambda answer: answer.source != origin.source)  # a stronger one came too late
        return found + answers
