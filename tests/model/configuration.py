"""Random configurations: three files whose writer knows the line of each entry, environment and command line."""
import os
import shutil
from random import choice, choices, randint, random, sample

from precedence import DATABASE, FOLDERS, NONE, OPTIONS, ROOT, USER, Entry

DATABASES = ["base", "base", "Base", "db", "root", "ROOT", "user", "x\\ROOT", "p/e\\", "50%_a", "a%d", "%k1%"]
MANDATORY = {ROOT: ["name"], DATABASE: ["dictionary-name", "role", "registry"]}


def any_text():
    word = "".join(choices("abcxyz", k=randint(1, 5)))
    often = ["k1", "k2", "k3"] * 2 + ["V1", "name", "data", "exe-name", "logfile", "spool", "metadata", "dictionary-root",
                                      "changefile-root", "config"]
    reference = choice(often if random() > 0.005 else ["role", "unknown", "quiet", "load-dictionary"])  # most often an error
    other = choice(["", "true", "FALSE", "auto", "5%", "a;b", "a b", " a ", '"q"', "'", "C:\\new\\" + word, "%spool%",
                    "%k3%", "1,2", "\u00e4\u20ac", "[x]", "a=b", "w" * 70, "v" * choice([1] * 9 + [2100])])
    return choices([word, f"{word}%{reference}%" + choice(["", "z"]), other], [45, 30, 25])[0]


class File:
    def __init__(self, path, encoding="utf-8", end="\r\n"):
        self.path, self.encoding, self.end = path, encoding, end
        self.lines, self.sections = [], []  # sections: name and entries, as often as it stands there

    def enter(self, key, text, *lines):
        self.sections[-1][1].append(Entry(key, text, len(self.lines) + 1))
        self.lines += lines

    def delete(self, section, key):
        for entries in [entries for name, entries in self.sections if name.lower().rstrip("\\") == section.rstrip("\\")]:
            for entry in [entry for entry in entries if entry.key.lower() == key.lower()]:
                entries.remove(entry)
                length = 2 if self.lines[entry.line - 1].endswith(",\\") else 1
                self.lines[entry.line - 1:entry.line - 1 + length] = [""] * length

    def write(self):
        with open(self.path, "w", encoding=self.encoding, newline="") as file:
            file.write("".join(line + self.end for line in self.lines))


class Ini(File):
    """With comments, blanks, quotes, any case, and text without an answer."""

    def __init__(self, path):
        super().__init__(path, choice(["utf-8"] * 4 + ["utf-8-sig", "utf-16"]), choice(["\n", "\r\n", "\r"]))
        self.lines += choice([[]] * 9 + [["logfile=lost"], ["; remark"], [""], ["name=lost"]])

    def add_section(self, name):
        name = choice([name] * 8 + [name.upper(), name.lower()])
        self.sections.append((name, []))
        self.lines.append(choice(["[%s]", "[%s]", " [ %s ] ; x", "[%s"]) % name)

    def add(self, key, text):
        if random() < 0.1:
            self.lines.append(choice(["", f";{key}=remark", key, "=x"]))
        key = choice([key] * 8 + [key.upper(), key.lower()])
        bare, quoted = ["%s=%s", "%s=%s", " %s =%s", "%s=  %s \t"], ['%s= "%s"', " %s ='%s'"]
        form = choice(quoted + bare * (text.strip(" \"'") == text))  # without blanks or quotes around it
        self.enter(key, text[:2047], form % (key, text))


class Registry(File):
    def __init__(self, path):
        super().__init__(path)
        self.lines += ["Windows Registry Editor Version 5.00", ""]

    def add_section(self, name):
        path = f"SOFTWARE\\VORNAK\\{choice(['veltrane'] * 9 + ['other'])}\\{name}"
        self.sections.append((path.rstrip("\\"), []))
        self.lines.append("[%s\\%s]" % (choice(["HKEY_LOCAL_MACHINE", "HKLM", "hklm"]), path))

    def add(self, name, text):
        if random() < 0.05:
            self.lines += [f'"{name}"="gone"', f'"{name}"=-']
        if random() < 0.7 or not text:
            self.enter(name, text, '"%s"="%s"' % (name, text.replace("\\", "\\\\").replace('"', '\\"')))
            return
        data = (text.encode("utf-16-le") + b"\0\0").hex(",")
        middle = len(data) // 6 * 3
        self.enter(name, text, f'"{name}"=hex({choice([1, 2])}):{data[:middle]}\\', "  " + data[middle:])


class Configuration:
    def __init__(self, folder):
        self.folder, self.words = folder, []  # words: option, what is typed, its text
        self.drives = {"X": folder, "Y": folder + "/out/data"}
        self.database, self.metadata = choice(DATABASES), choice([".metadata"] * 3 + ["meta"])
        self.basic = Ini(f"{folder}/tool/{self.metadata}/veltrane.ini")
        self.user = Ini(folder + choice(["/cwd"] * 12 + ["/out/data/configuration", "/out/data/d1"]) + "/team.ini")
        self.registry = Registry(folder + "/machine.reg")
        self.type_words()
        self.environment = {"V1": "var", "k1": "e1", "k2": "%V1%", "k3": "e3",
                            **{name: self.value(name) for name in self.some(ROOT, 0.25)}}
        for kind in sample([ROOT, USER, DATABASE, "AUTODOC"], randint(0, 4)):
            self.registry.add_section(self.database if kind == DATABASE else kind)
            self.fill(self.registry, kind, 0.2)
        self.fill_ini(self.basic)
        self.fill_ini(self.user)

    def write(self):
        for path in ("tool/.metadata", "tool/meta", "cwd", "out"):
            shutil.rmtree(f"{self.folder}/{path}", ignore_errors=True)
        for path in ("tool/.metadata", "tool/meta", "cwd", "out/data/d1", "out/data/d2", "out/data/d3"):
            os.makedirs(f"{self.folder}/{path}")
        os.makedirs(os.path.dirname(self.user.path), exist_ok=True)
        for file in (self.basic, self.user, self.registry):
            file.write()

    def arguments(self):
        return [word for _, words, _ in self.words for word in words]

    def places(self):
        """Variables that tell where the registry and the drives are."""
        drives = ";".join(f"{letter}={folder}" for letter, folder in self.drives.items())
        return {"VORNAK_REGISTRY": self.registry.path, "VORNAK_DRIVES": drives}

    def real(self, path):
        path = path.replace("\\", "/")
        if path[1:2] == ":":
            path = self.drives.get(path[0].upper(), "/no drive") + "/" + path[2:]
        return os.path.normpath(os.path.join(self.folder, "cwd", path)).lower()

    def exists(self, path):
        return bool(path) and os.path.exists(self.real(path))

    def delete(self, name, origin):
        """Removes an answer from its source; of a family, all words."""
        if origin.source == "command line":
            numbers = [number for number, word in enumerate(self.words) if word[0] == name]
            for number in reversed(numbers if "family" in OPTIONS[name].kinds else numbers[-1:]):
                del self.words[number]
            self.words = [(option, words if words[0][:1] in ("", "-") else ["--name", *words], text)
                          for option, words, text in self.words]  # the option before might take a bare name
        elif origin.source == "environment":
            del self.environment[name]
        else:
            file = {"registry": self.registry, "user file": self.user}.get(origin.source, self.basic)
            file.delete(origin.section, origin.key)

    def path(self, name):
        """Of a folder: absolute, relative or by a drive; most of them exist."""
        below, relative = {"metadata": ("tool", self.metadata), "data": ("out", "data")}.get(
            name, ("out/data", choice(["d1", "d2", "D3"])))
        if random() < 0.02 and name != "logging":  # without a log the host tells nothing
            relative = "missing"
        forms = ["%s/%s/%s" % (self.folder, below, relative), "X:\\%s\\%s" % (below.replace("/", "\\"), relative)]
        if name in ("metadata", "data"):
            forms += [f"X:{below}/{relative}"] + [relative] * 3 * (name == "metadata")
        else:
            forms += [f"Y:/{relative}"] + [relative] * 3 + [f"%data%/{relative}"] * 2
        return choice(forms) if random() < 0.99 else "%autodoc-title%"  # nothing, as a rule

    def value(self, name):
        if name in ("data", *FOLDERS):
            return self.path(name)
        texts = {"name": [self.database] * 24 + [choice(DATABASES)],
                 "logfile": ["run", "w.log", "%k1%.log", "%V1%", "%k2%", "", "x%k3%"],
                 "ini": ["team.ini"] * 3 + [self.user.path, "X:\\cwd\\team.ini"]}
        return choice(texts[name]) if name in texts else any_text()

    def some(self, section, share):
        names = [name for name, option in OPTIONS.items()
                 if option.section == section and random() < (share if name != "metadata" else share / 3)]
        return sample(names, len(names))

    def fill(self, file, section, share, sure=()):
        for name in dict.fromkeys([*sure, *self.some(section, share)]):
            if "family" not in OPTIONS[name].kinds:
                file.add(name, self.value(name) or "s" * (name in sure))
                if random() < 0.05:
                    file.add(name, self.value(name))  # again: answers nothing in a file, everything in the registry
            elif file is not self.registry:
                self.fill_family(file, name)
        for key in sample(["k1", "k2", "k3"], 2 * (section != DATABASE)):
            file.add(key, choice(["one", "two", "", "%V1%", "%k2%" if key == "k1" else "three"]))
        if random() < 0.03 and file is not self.registry:
            for number in range(300):  # more than a list of keys holds
                file.add(f"filler-{number}", "f")

    def fill_family(self, file, name):
        index = 0 if file is self.basic else 50
        for _ in range(randint(1, 3)):
            index = index + randint(4, 9) if random() < 0.97 else 4  # may be there already
            begun = name[:choice([len(name), randint(3, len(name))])] + choice(["", "", "-"])
            file.add(begun if random() < 0.35 else f"{name}-{index}", any_text())

    def fill_ini(self, file):
        index = 0 if file is self.basic else 7
        database = "e1" if self.database == "%k1%" else self.database
        kinds = sample([ROOT, USER, "AUTODOC", DATABASE], 4)
        for kind in kinds + choice([[]] * 9 + [[choice([ROOT, USER, DATABASE])]]):  # a second one answers nothing
            sure = MANDATORY.get(kind, []) + MANDATORY[DATABASE] * (database.lower() == kind.lower())
            file.add_section(database if kind == DATABASE else kind)
            self.fill(file, kind, 0.35, sure if file is self.basic else ())
        for _ in range(choice([0, 1, 1, 2, 3])):
            index = index + randint(1, 2) if random() < 0.97 else 2
            if "%d" in database and random() < 0.5:  # a family of sections by the name of the database
                file.add_section(database.replace("%d", "3"))
                file.add("obsolete-classes", any_text())
                continue
            file.add_section("%s\\FILES\\%d" % (database.replace("%d", str(index)), index))
            for name in sample(["map-file", "index-file"], choice([0, 1, 2, 2])):
                file.add(name, any_text())

    def type_words(self):
        rare = {"exe-path": 0, "exe-name": 0.15, "metadata": 0.3, "ini": 0.3}
        names = [name for name in choices(list(OPTIONS), k=randint(0, 6))
                 if random() < rare.get(name, 0.5 if OPTIONS[name].section == NONE else 1)]
        names += ["name"] * choice([0, 1, 1, 2]) + ["ini"] * choice([0, 1]) + ["summary"]
        names += [name for name in names if random() < 0.3 and name != "exe-name"]
        for name in ["data"] * (random() < 0.7) + sample(names, len(names)):
            self.words.append((name, *self.typed(name)))
        self.words += [("name", [""], "")] * (random() < 0.02)
        self.words += [("metadata", ["-m", self.metadata], self.metadata)] * (self.metadata == "meta" and random() < 0.9)

    def typed(self, name):
        """The words, and the text that they give the option."""
        kinds = OPTIONS[name].kinds
        typed = choice([OPTIONS[name].typed, "--" + name])
        if "flag" in kinds or "tri" in kinds:
            text = choice(["true", "TRUE"] if name == "summary" else ["true", "False"])
            return ([typed, text], text) if random() < 0.6 else ([typed], "true" if "flag" in kinds else "auto")
        if "bare" in kinds and random() < 0.3:
            return [typed], ""
        text = "Veltrane.exe" if name == "exe-name" else self.value(name) or "given"
        takes_it = self.words and self.words[-1][1][-1].startswith("-")  # the option before
        return ([text], text) if name == "name" and not takes_it and random() < 0.5 else ([typed, text], text)
