"""Random configurations: three files whose writer knows on which line each entry stands, environment and command line."""
import os
import shutil

from precedence import DATABASE, FOLDERS, NONE, OPTIONS, ROOT, USER, Entry

DATABASES = ["base", "base", "Base", "db", "root", "ROOT", "user", "x\\ROOT", "p/e\\", "50%_a", "a%d", "%k1%"]
MANDATORY = {ROOT: ["name"], DATABASE: ["dictionary-name", "role", "registry"]}


class File:
    def __init__(self, rng, path, encoding="utf-8", end="\r\n"):
        self.rng, self.path, self.encoding, self.end = rng, path, encoding, end
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
    """With remarks, blanks, quotes, any case, and text that answers nothing."""

    def __init__(self, rng, path):
        super().__init__(rng, path, rng.choice(["utf-8"] * 4 + ["utf-8-sig", "utf-16"]), rng.choice(["\n", "\r\n", "\r"]))
        self.lines += rng.choice([[]] * 9 + [["logfile=lost"], ["; remark"], [""], ["name=lost"]])

    def add_section(self, name):
        name = self.rng.choice([name] * 8 + [name.upper(), name.lower()])
        self.sections.append((name, []))
        self.lines.append(self.rng.choice(["[%s]", "[%s]", " [ %s ] ; x", "[%s"]) % name)

    def add(self, key, text):
        if self.rng.random() < 0.1:
            self.lines.append(self.rng.choice(["", f";{key}=remark", key, "=x"]))
        key = self.rng.choice([key] * 8 + [key.upper(), key.lower()])
        bare, quoted = ["%s=%s", "%s=%s", " %s =%s", "%s=  %s \t"], ['%s= "%s"', " %s ='%s'"]
        form = self.rng.choice(quoted + bare * (text.strip(" \"'") == text))  # without blanks or quotes around it
        self.enter(key, text[:2047], form % (key, text))


class Registry(File):
    def add_section(self, name):
        path = f"SOFTWARE\\VORNAK\\{self.rng.choice(['veltrane'] * 9 + ['other'])}\\{name}"
        self.sections.append((path.rstrip("\\"), []))
        self.lines.append("[%s\\%s]" % (self.rng.choice(["HKEY_LOCAL_MACHINE", "HKLM", "hklm"]), path))

    def add(self, name, text):
        if self.rng.random() < 0.05:
            self.lines += [f'"{name}"="gone"', f'"{name}"=-']
        if self.rng.random() < 0.7 or not text:
            self.enter(name, text, '"%s"="%s"' % (name, text.replace("\\", "\\\\").replace('"', '\\"')))
            return
        data = (text.encode("utf-16-le") + b"\0\0").hex(",")
        middle = len(data) // 6 * 3
        self.enter(name, text, f'"{name}"=hex({self.rng.choice([1, 2])}):{data[:middle]}\\', "  " + data[middle:])


class Configuration:
    def __init__(self, rng, folder):
        self.rng, self.folder = rng, folder
        self.drives = {"X": folder, "Y": folder + "/out/data"}
        self.database, self.metadata = rng.choice(DATABASES), rng.choice([".metadata"] * 3 + ["meta"])
        self.basic = Ini(rng, f"{folder}/tool/{self.metadata}/veltrane.ini")
        self.user = Ini(rng, folder + rng.choice(["/cwd"] * 12 + ["/out/data/configuration", "/out/data/d1"]) + "/team.ini")
        self.registry = Registry(rng, folder + "/machine.reg")
        self.words = []  # option, words, text
        self.type_words()
        self.environment = {"V1": "var", "k1": "e1", "k2": "%V1%", "k3": "e3",
                            **{name: self.value(name) for name in self.some(ROOT, 0.25)}}
        self.fill_registry()
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
        """Takes an answer out of its source; of a family all words."""
        if origin.source == "command line":
            numbers = [number for number, word in enumerate(self.words) if word[0] == name]
            for number in reversed(numbers if "family" in OPTIONS[name].kinds else numbers[-1:]):
                del self.words[number]
        elif origin.source == "environment":
            del self.environment[name]
        else:
            file = {"registry": self.registry, "user file": self.user}.get(origin.source, self.basic)
            file.delete(origin.section, origin.key)

    def text(self):
        word = "".join(self.rng.choices("abcxyz", k=self.rng.randint(1, 5)))
        chance = self.rng.random()
        other = self.rng.choice(["", "true", "FALSE", "auto", "5%", "a;b", "a b", "C:\\new\\" + word, "%spool%", "%k3%", "1,2",
                                 " a ", '"q"', "'", "\u00e4\u20ac", "[x]", "a=b", "w" * 70, "v" * (2100 if chance < 0.1 else 1)])
        reference = self.rng.choice(["k1", "k2", "k3"] * 2 + [
            "V1", "name", "data", "exe-name", "logfile", "spool", "metadata", "dictionary-root", "changefile-root", "config"])
        if self.rng.random() < 0.005:
            reference = self.rng.choice(["role", "unknown", "quiet", "load-dictionary"])  # most often an error
        return self.rng.choices([word, f"{word}%{reference}%" + self.rng.choice(["", "z"]), other], [45, 30, 25])[0]

    def path(self, name):
        """Of a folder: absolute, relative or by a drive; most of them exist."""
        below, relative = {"metadata": ("tool", self.metadata), "data": ("out", "data")}.get(
            name, ("out/data", self.rng.choice(["d1", "d2", "D3"])))
        if self.rng.random() < 0.02 and name != "logging":  # without a log the host tells nothing
            relative = "missing"
        forms = ["%s/%s/%s" % (self.folder, below, relative), "X:\\%s\\%s" % (below.replace("/", "\\"), relative)]
        if name in ("metadata", "data"):
            forms += [f"X:{below}/{relative}"] + [relative] * 3 * (name == "metadata")
        else:
            forms += [f"Y:/{relative}"] + [relative] * 3 + [f"%data%/{relative}"] * 2
        return self.rng.choice(forms) if self.rng.random() < 0.99 else "%autodoc-title%"  # nothing, as a rule

    def value(self, name):
        if name in ("data", *FOLDERS):
            return self.path(name)
        choices = {"name": [self.database] * 24 + [self.rng.choice(DATABASES)],
                   "logfile": ["run", "w.log", "%k1%.log", "%V1%", "%k2%", "", "x%k3%"],
                   "ini": ["team.ini"] * 3 + [self.user.path, "X:\\cwd\\team.ini"]}
        return self.rng.choice(choices[name]) if name in choices else self.text()

    def some(self, section, share):
        names = [name for name, option in OPTIONS.items() if option.section == section
                 and self.rng.random() < (share if name != "metadata" else share / 3)]
        return self.rng.sample(names, len(names))

    def fill(self, file, section, share, sure=()):
        for name in dict.fromkeys([*sure, *self.some(section, share)]):
            if "family" not in OPTIONS[name].kinds:
                file.add(name, self.value(name) or "s" * (name in sure))
                if self.rng.random() < 0.05:
                    file.add(name, self.value(name))  # again: answers nothing in a file, everything in the registry
            elif file is not self.registry:
                self.fill_family(file, name)
        for key in self.rng.sample(["k1", "k2", "k3"], 2 * (section != DATABASE)):
            file.add(key, self.rng.choice(["one", "two", "", "%V1%", "%k2%" if key == "k1" else "three"]))
        if self.rng.random() < 0.03 and file is not self.registry:
            for number in range(300):  # more than a list of keys holds
                file.add(f"filler-{number}", "f")

    def fill_family(self, file, name):
        index = 0 if file is self.basic else 50
        for _ in range(self.rng.randint(1, 3)):
            index = index + self.rng.randint(4, 9) if self.rng.random() < 0.97 else 4  # may be there already
            begun = name[:self.rng.choice([len(name), self.rng.randint(3, len(name))])] + self.rng.choice(["", "", "-"])
            file.add(begun if self.rng.random() < 0.35 else f"{name}-{index}", self.text())

    def fill_ini(self, file):
        rng, index = self.rng, 0 if file is self.basic else 7
        database = "e1" if self.database == "%k1%" else self.database
        kinds = rng.sample([ROOT, USER, "AUTODOC", DATABASE], 4)
        for kind in kinds + rng.choice([[]] * 9 + [[rng.choice([ROOT, USER, DATABASE])]]):  # a second one answers nothing
            sure = MANDATORY.get(kind, []) + MANDATORY[DATABASE] * (database.lower() == kind.lower())
            file.add_section(database if kind == DATABASE else kind)
            self.fill(file, kind, 0.35, sure if file is self.basic else ())
        for _ in range(rng.choice([0, 1, 1, 2, 3])):
            index = index + rng.randint(1, 2) if rng.random() < 0.97 else 2
            if "%d" in database and rng.random() < 0.5:  # a family of sections by the name of the database
                file.add_section(database.replace("%d", "3"))
                file.add("obsolete-classes", self.text())
                continue
            file.add_section("%s\\FILES\\%d" % (database.replace("%d", str(index)), index))
            for name in rng.sample(["map-file", "index-file"], rng.choice([0, 1, 2, 2])):
                file.add(name, self.text())

    def fill_registry(self):
        self.registry.lines += ["Windows Registry Editor Version 5.00", ""]
        for kind in self.rng.sample([ROOT, USER, DATABASE, "AUTODOC"], self.rng.randint(0, 4)):
            self.registry.add_section(self.database if kind == DATABASE else kind)
            self.fill(self.registry, kind, 0.2)

    def type_words(self):
        rng = self.rng
        rare = {"exe-path": 0, "exe-name": 0.15, "metadata": 0.3, "ini": 0.3}
        names = [name for name in rng.choices(list(OPTIONS), k=rng.randint(0, 6))
                 if rng.random() < rare.get(name, 0.5 if OPTIONS[name].section == NONE else 1)]
        names += ["name"] * rng.choice([0, 1, 1, 2]) + ["ini"] * rng.choice([0, 1]) + ["summary"]
        names += [name for name in names if rng.random() < 0.3 and name != "exe-name"]
        for name in ["data"] * (rng.random() < 0.7) + rng.sample(names, len(names)):
            self.words.append((name, *self.typed(name)))
        self.words += [("name", [""], "")] * (rng.random() < 0.02)
        self.words += [("metadata", ["-m", self.metadata], self.metadata)] * (self.metadata == "meta" and rng.random() < 0.9)

    def typed(self, name):
        """The words, and the text that they give the option."""
        kinds, rng = OPTIONS[name].kinds, self.rng
        typed = rng.choice([OPTIONS[name].typed, "--" + name])
        if "flag" in kinds or "tri" in kinds:
            text = rng.choice(["true", "TRUE"] if name == "summary" else ["true", "False"])
            return ([typed, text], text) if rng.random() < 0.6 else ([typed], "true" if "flag" in kinds else "auto")
        if "bare" in kinds and rng.random() < 0.3:
            return [typed], ""
        text = "Veltrane.exe" if name == "exe-name" else self.value(name) or "given"
        takes_it = self.words and self.words[-1][1][-1].startswith("-")  # the option before
        return ([text], text) if name == "name" and not takes_it and rng.random() < 0.5 else ([typed, text], text)
