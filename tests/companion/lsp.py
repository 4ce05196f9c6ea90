#!/usr/bin/env python3
"""Talks to the server for editors as a client does: recorded talks, a text typed letter by letter and compared with lint
on a file with that text, broken bytes, bursts, and 10,000 changes.
Usage: lsp.py PROGRAM [TALK ...]"""
import json
import os
import pathlib
import subprocess
import sys
import tempfile

program = os.path.abspath(sys.argv[1])
BASIC = ("[ROOT]\nname=db\nlogfile = %name%-run.log\n[USER]\nquiet = false\n[db]\ndictionary-name=d\nrole=r\nregistry=g\n"
         "[db\\TABLENAME RULES\\3]\nOLD=NEW\n")
TEAM = "; a\n; b\n[ROOT]\nlogfile = \U0001F600-%name%.log\n[USER]\nquiet = yes\nspool = %logfile%.lst\nlodd-oracle = true\n[USERS]\nexit=true\n"
REGISTRY = 'REGEDIT4\n[HKLM\\SOFTWARE\\VORNAK\\veltrane\\db]\n"role"="x"\n'


def frame(message):
    body = message if isinstance(message, bytes) else json.dumps(message, ensure_ascii=False).encode()
    return b"Content-Length: %d\r\n\r\n%b" % (len(body), body)


def note(method, **params):
    return {"jsonrpc": "2.0", "method": method, "params": params}


class Talk:
    """A server with files of its own, and what it has published."""

    def __init__(self, *arguments, start=True, **given):
        self.work = tempfile.TemporaryDirectory()
        for name, text in {"meta/veltrane.ini": BASIC, "team.ini": TEAM, "r.reg": REGISTRY, "other.ini": "[USER]\nexit=x\n"}.items():
            self.write(name, text)
        arguments = self.arguments = [word.replace("@", self.work.name) for word in arguments]
        self.environment = {"VORNAK_REGISTRY": f"{self.work.name}/r.reg", "ASAN_OPTIONS": "quarantine_size_mb=1"}
        self.server = subprocess.Popen([program, "lsp", *(arguments and ["--"]), *arguments], stdin=subprocess.PIPE,
                                       stdout=subprocess.PIPE, cwd=self.work.name, env=self.environment)
        self.asked, self.published, self.shown = 0, [], []
        if start:
            self.ask("initialize", **{"capabilities": {"textDocument": {
                "documentSymbol": {"hierarchicalDocumentSymbolSupport": True}}}, **given})
            self.tell(note("initialized"))

    def write(self, name, text):
        path = pathlib.Path(self.work.name, name)
        path.parent.mkdir(exist_ok=True)
        path.write_bytes(text if isinstance(text, bytes) else text.encode())

    def uri(self, name):
        return f"file://{os.path.realpath(self.work.name)}/{name}"

    def tell(self, *messages):
        self.server.stdin.write(b"".join(m if isinstance(m, bytes) else frame(m) for m in messages))
        self.server.stdin.flush()

    def read(self):
        header = self.server.stdout.readline()
        assert header.startswith(b"Content-Length: "), header  # nothing but messages
        assert self.server.stdout.readline() == b"\r\n"
        message = json.loads(self.server.stdout.read(int(header[16:])))
        method = message.get("method") if isinstance(message, dict) else "batch"
        if method == "textDocument/publishDiagnostics":
            self.published.append(message["params"])
        if method == "window/showMessage":
            self.shown.append(message["params"]["message"])
        return message

    def reply(self, wanted):
        while (message := self.read()).get("id", 0) != wanted or "method" in message:
            pass
        return message

    def ask(self, method, **params):
        self.asked += 1
        self.tell({**note(method, **params), "id": self.asked})
        reply = self.reply(self.asked)
        return reply["result"] if "result" in reply else reply["error"]["code"]

    def about(self, method, name, line=0, column=0, **more):
        at = {"line": line, "character": column}
        return self.ask("textDocument/" + method, textDocument={"uri": self.uri(name)}, position=at, **more)

    def open(self, name, text, version=1):
        self.tell(note("textDocument/didOpen", textDocument={
            "uri": self.uri(name), "languageId": "ini", "version": version, "text": text}))

    def change(self, name, version, *changes):
        return note("textDocument/didChange", textDocument={"uri": self.uri(name), "version": version},
                    contentChanges=[{"text": text, **({"range": where} if where else {})} for where, text in changes])

    def diagnostics(self, name, version):
        """Those of a version of a text; those of other files are kept."""
        while not any(p["uri"] == self.uri(name) and p.get("version") == version for p in self.published):
            self.read()
        return next(p for p in reversed(self.published) if p["uri"] == self.uri(name))["diagnostics"]

    def end(self, code=0):
        if code == 0:
            assert self.ask("shutdown") is None
        self.tell(note("exit"))
        assert self.server.wait(20) == code, self.server.returncode
        self.work.cleanup()


def span(line, begin, end):
    return {"start": {"line": line, "character": begin}, "end": {"line": line, "character": end}}


def places(locations):
    return [f"{l['uri'].rsplit('/')[-1]}:{l['range']['start']['line'] + 1}" for l in locations]


def labels(items, *names):
    """The items with these names in the order that the client shows, else the number of all."""
    return [i["label"] for i in sorted(items, key=lambda i: i["sortText"]) if i["label"] in names]


def applied(talk, name, text, title):
    """The text after an action."""
    actions = talk.about("codeAction", name, range=span(0, 0, 0) | {"end": {"line": 99, "character": 0}}, context={})
    edits = next(a for a in actions if a["title"] == title)["edit"]["changes"][talk.uri(name)]
    lines = text.splitlines(keepends=True)
    offset = lambda at: sum(map(len, lines[:at["line"]])) + at["character"]
    for edit in sorted(edits, key=lambda e: -offset(e["range"]["start"])):
        text = text[:offset(edit["range"]["start"])] + edit["newText"] + text[offset(edit["range"]["end"]):]
    return text


ARGUMENTS = ("db", "-m", "@/meta", "-i", "team.ini")  # @ is the folder of the talk


def questions():
    talk = Talk(*ARGUMENTS)
    talk.open("team.ini", TEAM)
    talk.open("meta/veltrane.ini", BASIC)
    found = talk.diagnostics("team.ini", 1)
    assert [(d["code"], d["range"], d["severity"], d.get("tags")) for d in found] == [
        ("C05", span(5, 8, 11), 2, None), ("C02", span(7, 0, 11), 2, [1]), ("C01", span(8, 1, 6), 2, [1])], found
    hover = lambda *at: (talk.about("hover", "team.ini", *at) or {"contents": {"value": None}})["contents"]["value"]
    for at, parts in {(3, 2): ["logfile, text, [ROOT]", "logging output", "> user file    team.ini:4 [ROOT]", "%name%-run.log"],
                      (3, 14): ["%name%, a step of logfile", "2  %name%  meta/veltrane.ini:2 [ROOT]"],
                      (4, 3): ["[USER]", "quiet, "], (5, 9): ["quiet = yes, means false", "C05, invalid value"]}.items():
        text = hover(*at)
        assert all(part in text for part in parts), (at, text)
    assert talk.about("hover", "team.ini", 3, 14)["range"] == span(3, 13, 19)
    assert hover(0, 1) is None and hover(99, 99) is None
    rule = talk.about("hover", "meta/veltrane.ini", 10, 1)["contents"]["value"]
    assert "From version 3 on, 'OLD' is replaced by 'NEW' in names of tables." in rule, rule
    assert places(talk.about("definition", "team.ini", 3, 14)) == ["veltrane.ini:2"]
    assert places(talk.about("definition", "team.ini", 3, 1)) == ["veltrane.ini:3"]
    assert places(talk.about("definition", "meta/veltrane.ini", 2, 1)) == ["team.ini:4"]
    assert places(talk.about("references", "meta/veltrane.ini", 1, 1)) == ["veltrane.ini:2", "veltrane.ini:3", "team.ini:4"]
    assert places(talk.about("references", "team.ini", 6, 12, context={"includeDeclaration": False})) == ["team.ini:7"]
    symbols = [(s["name"], [c["name"] for c in s["children"]]) for s in talk.about("documentSymbol", "team.ini")]
    assert symbols == [("ROOT", ["logfile"]), ("USER", ["quiet", "spool", "lodd-oracle"]), ("USERS", ["exit"])], symbols
    folds = [(f["startLine"], f["endLine"]) for f in talk.about("foldingRange", "team.ini")]
    assert folds == [(2, 3), (4, 7), (8, 9), (0, 1)], folds
    tokens = talk.about("semanticTokens/full", "team.ini")["data"]
    assert tokens[15:45] == [1, 0, 7, 1, 0, 0, 10, 3, 2, 0, 0, 3, 6, 3, 0, 0, 6, 4, 2, 0, 1, 1, 4, 0, 0, 1, 0, 5, 1, 0], tokens
    for title, (old, new) in {
            "Change to 'load-oracle'": ("lodd-oracle", "load-oracle"), "Change to 'USER'": ("[USERS]", "[USER]"),
                        "Remove the line, which is never read": ("lodd-oracle = true\n", ""),
            "Remove the section [USERS], which is never read": ("[USERS]\nexit=true\n", ""),
            "Silence C05 on this line": ("quiet", "; lint: C05\nquiet")}.items():
        assert applied(talk, "team.ini", TEAM, title) == TEAM.replace(old, new), title
    moved = "[USER]\nexit=true\n[db]\nquiet=true"
    talk.tell(talk.change("team.ini", 2, (None, moved)))
    assert applied(talk, "team.ini", moved, "Move to [USER]") == "[USER]\nexit=true\nquiet=true\n[db]"
    complete = lambda text, *names: (talk.tell(talk.change("team.ini", 3, (None, text.replace("^", "")))), labels(talk.about(
        "completion", "team.ini", text[:text.find("^")].count("\n"), text.find("^") - text.rfind("\n", 0, text.find("^")) - 1), *names))[1]
    assert complete("[USER]\n[^", "USER", "db", "ROOT", "db\\FILES\\1") == ["ROOT", "db", "db\\FILES\\1", "USER"]
    assert complete("[USER]\nexit=true\n^", "exit", "spool", "logfile", "load-dictionary-1") == ["load-dictionary-1", "spool", "exit"]
    assert complete("[USER]\ncreate-views = ^", "true", "false", "auto") == ["auto", "false", "true"]
    assert complete("[USER]\nown=1\nspool = %^", "own", "name", "exit", "logfile") == ["logfile", "name", "own"]
    talk.open("r.reg", REGISTRY.replace("db", "USER") + '"ex"\n"quiet"="')
    texts = lambda *at: [i["textEdit"]["newText"] for i in talk.about("completion", "r.reg", *at)]
    assert 'exit"=' in texts(3, 2) and texts(4, 9) == ['false"', 'true"'] and "load-dictionary-1" not in str(texts(3, 2))
    assert "HKLM\\SOFTWARE\\VORNAK\\veltrane\\db" in texts(1, 6)
    talk.tell(talk.change("r.reg", 2, (None, REGISTRY.replace("db", "USER") + '"quiet"="yes"\n')))
    assert [d["range"] for d in talk.diagnostics("r.reg", 2)] == [span(2, 1, 5), span(3, 8, 13)]
    talk.end()


def configurations():
    talk = Talk()  # a file that is opened is the basic file by its name, else it is looked at alone
    talk.open("meta/veltrane.ini", BASIC.replace("registry=g", "registri=g"))
    assert [d["code"] for d in talk.diagnostics("meta/veltrane.ini", 1)] == ["C02", "C07"]
    talk.open("other.ini", "[USER]\nexit=x\n[unknown]\n")
    assert [d["code"] for d in talk.diagnostics("other.ini", 1)] == ["C05"]
    talk.tell(note("textDocument/didClose", textDocument={"uri": talk.uri("other.ini")}))
    while talk.published[-1]["uri"] != talk.uri("other.ini") or talk.published[-1]["diagnostics"]:
        talk.read()
    talk.end()
    talk = Talk(start=False)
    arguments = [word.replace("@", talk.work.name) for word in ARGUMENTS[:-1]] + ["../team.ini"]
    talk.ask("initialize", capabilities={}, workspaceFolders=[{"uri": talk.uri("meta")}],  # a fault of one text shows in another
             initializationOptions={"arguments": arguments})
    both = "[db\\FILES\\1]\nmap-file=a\n"
    talk.open("meta/veltrane.ini", BASIC + both)
    assert "C08" not in [d["code"] for d in talk.diagnostics("meta/veltrane.ini", 1)]
    talk.open("team.ini", both)
    assert [d["code"] for d in talk.diagnostics("team.ini", 1)] == ["C08"]
    talk.tell(talk.change("meta/veltrane.ini", 2, (None, BASIC)))
    talk.diagnostics("meta/veltrane.ini", 2)
    talk.about("hover", "team.ini")
    assert talk.diagnostics("team.ini", 1) == []
    os.remove(f"{talk.work.name}/team.ini")  # what is open counts
    talk.tell(talk.change("team.ini", 2, (None, "[USER]\nquiet=no\n")))
    assert [d["code"] for d in talk.diagnostics("team.ini", 2)] == ["C05"]
    talk.end()
    talk = Talk(*ARGUMENTS)
    assert talk.diagnostics("team.ini", None)
    os.remove(f"{talk.work.name}/team.ini")
    talk.tell(note("workspace/didChangeWatchedFiles", changes=[]))
    while talk.published[-1]["uri"] != talk.uri("team.ini") or talk.published[-1]["diagnostics"]:
        talk.read()
    talk.end()
    talk = Talk("--help")
    talk.open("team.ini", TEAM)
    assert talk.about("hover", "team.ini") is None and talk.shown == ["--help ends the tool at once; there is nothing to show"]
    talk.end()


def encodings():
    talk = Talk(*ARGUMENTS, capabilities={"general": {"positionEncodings": ["utf-8", "utf-16"]}})
    talk.write("meta/veltrane.ini", BASIC.replace("[USER]", "[\u00fc\U0001F600]\r\nb\u00e4=1\r\n[USER]\n\u00e4\U0001F600 = x\n").encode("utf-16"))
    talk.open("team.ini", "[USER]\r\nspool = \U0001F600%nme%\r\n")
    talk.diagnostics("team.ini", 1)
    known = {p["uri"]: [(d["code"], d["range"]) for d in p["diagnostics"]] for p in talk.published}
    assert known[talk.uri("team.ini")] == [("C09", span(1, 8, 17))], known
    assert known[talk.uri("meta/veltrane.ini")] == [("C01", span(3, 1, 7)), ("C02", span(6, 0, 6))], known
    talk.end()
    talk = Talk(*ARGUMENTS)
    talk.open("team.ini", "\ufeff[USR]\n")
    assert talk.diagnostics("team.ini", 1)[0]["range"] == span(0, 2, 5)
    talk.end()


def letters():
    """After each letter the diagnostics are those of lint on a file with that text."""
    talk, other = Talk(*ARGUMENTS), Talk(*ARGUMENTS, start=False)
    text = "[ROT]\r\nlogfile=\U0001F600%nme%\r\n;x\n[USER]\nquiet=yes ; no\nquiet=1\n[db\\FILES\\01]\nmap-file=a\n[db\\FILES\\1]\nmap-file=b\nroll"
    talk.open("team.ini", "", 0)
    typed, line, column = "", 0, 0
    for version, letter in enumerate(text, 1):
        talk.tell(talk.change("team.ini", version, (span(line, column, column), letter)))
        typed += letter
        line, column = (line + 1, 0) if letter == "\n" else (line, column + len(letter.encode("utf-16-le")) // 2)
        other.write("team.ini", typed)
        shown = {(d["code"], d["range"]["start"]["line"] + 1, d["message"]) for d in talk.diagnostics("team.ini", version)}
        lint = subprocess.run([program, "lint", "--format", "json", "--", *other.arguments], cwd=other.work.name, text=True,
                              env=other.environment, capture_output=True)
        told = [f for f in json.loads(lint.stdout)["findings"] if f["file"].endswith("team.ini")]
        means = lambda f: "" if not f.get("suggestion") else f"; did you mean {f['suggestion']}?" if f["suggestion"][0] == "[" \
            else f"; did you mean '{f['suggestion']}'?"
        wanted = {(f["code"], max(f["line"], 1), f["text"] + means(f)) for f in told}
        assert shown == wanted, (typed, shown ^ wanted)
    other.end(1)
    talk.end()


def changes():
    talk = Talk(*ARGUMENTS)
    talk.open("team.ini", "[USER]\n")
    talk.diagnostics("team.ini", 1)
    count = len(talk.published)
    burst = [talk.change("team.ini", v, (span(1, 0, 99), f"quiet={v}")) for v in range(2, 52)]
    talk.tell(*burst)
    assert "'51'" in talk.diagnostics("team.ini", 51)[0]["message"]
    assert len(talk.published) == count + 1  # a burst is answered once
    talk.tell(talk.change("team.ini", 7, (None, "[USR]")), talk.change("none.ini", 9, (None, "")),  # too old; not open
              talk.change("team.ini", 52, (span(5, 5, 5), "\n"), (span(2, 0, 0), "exit=\U0001F600x"), (span(2, 6, 7), "y")))
    assert "'yx'" in talk.diagnostics("team.ini", 52)[1]["message"]  # inside a pair counts as its front
    memory = lambda: int(pathlib.Path(f"/proc/{talk.server.pid}/statm").read_text().split()[1]) * 4
    for round in range(500):
        talk.tell(*(talk.change("team.ini", 100 + 20 * round + i, (span(1, 0, 99), f"quiet={i}")) for i in range(20)))
        talk.diagnostics("team.ini", 119 + 20 * round)
        talk.published.clear()
        if round == 100:
            before = memory()
    assert memory() < before + 2000, (before, memory())
    talk.end()


def broken_bytes():
    talk = Talk(start=False)
    code = lambda *bytes_, id=None: (talk.tell(*bytes_), talk.reply(id).get("error", {}).get("code"))[1]
    request = lambda method, id: frame({"jsonrpc": "2.0", "id": id, "method": method})
    assert code(request("textDocument/hover", 5), id=5) == -32002
    assert code(frame({"id": 1, "method": "initialize", "params": [[]]}), id=1) is None
    for what, bytes_, wanted in [
            ("no header", b"rubbish\r\n\r\n", -32700), ("no number", b"Content-Length: x\r\n\r\n", -32700),
            ("no length", b"Content-Type: a\r\n\r\n", -32700), ("no JSON", frame(b"{"), -32700), ("no UTF-8", frame(b'"\xff"'), -32700),
            ("deep", frame(b"[" * 5_000_000), -32600), ("many", frame(b"[" + b"1," * 2_000_000 + b"1]"), -32600),
            ("long", b"Content-Length: 67108865\r\n\r\n" + b" " * 67108865, -32600), ("no request", frame(b"7"), -32600),
            ("no message", frame(b"[]"), -32600), ("bad id", frame({"id": [], "method": "x"}), -32600),
            ("bad method", frame({"id": None, "method": 7}), -32600)]:
        assert code(bytes_, note("$/none")) == wanted, what  # told once, up to the next message
    talk.tell(b"xx{}")  # left over in front of a header
    for method, wanted in {"initialize": -32600, "nothing": -32601, "textDocument/hover": -32602}.items():
        assert code(request(method, "a"), id="a") == wanted, method
    hover = {"textDocument": {"uri": "file:///%00%2e%zz"}, "position": {"line": -1e300, "character": 1 << 63}}
    hovers = [{"id": i, "method": "textDocument/hover", "params": hover} for i in (7, 8)]
    cancel = {"method": "$/cancelRequest", "params": {"id": 8}}
    talk.tell(*hovers, cancel)
    replies = {(r := talk.read())["id"]: r, (s := talk.read())["id"]: s}
    assert replies[7]["result"] is None and replies[8]["error"]["code"] == -32800
    talk.tell(frame([hovers[0], note("$/nothing"), hovers[1], {"id": 3, "result": 1}]))  # a batch
    assert [r["id"] for r in talk.read()] == [7, 8]
    assert code(request("shutdown", 9), id=9) is None and code(request("nothing", 10), id=10) == -32600
    talk.tell(note("exit"))
    assert talk.server.wait(20) == 0
    Talk().end(1)


talks = [questions, configurations, encodings, letters, changes, broken_bytes]
for each in talks:
    if not sys.argv[2:] or each.__name__ in sys.argv[2:]:
        each()
