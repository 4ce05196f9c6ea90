#!/usr/bin/env python3
"""Makes one slip at a time in examples/config and asks lint which line it was.

Usage: mutateconfig.py SOURCE_FOLDER BUILD_FOLDER [COUNT [SEED]]

Letters of keys, sections, references and words of flags are dropped, doubled and swapped, keys are moved to a section
of another kind, lines are repeated, a percent sign or quote is lost, a value of the registry emptied, a remark put
after a flag, also in values that another source overrides. Old texts of naming rules are left out: any text is valid. A
slip that lint does not report must leave all values and renamings as they are. COUNT picks that many slips at random.
"""
import collections, json, os, random, re, shutil, subprocess, sys, tempfile

source, build = (os.path.abspath(path) for path in sys.argv[1:3])
count = int(sys.argv[3]) if len(sys.argv) > 3 else 0
rng = random.Random(int(sys.argv[4]) if len(sys.argv) > 4 else 1)
work = tempfile.mkdtemp()
FILES = ['metadata/veltrane.ini', 'user/team.ini', 'registry.reg']
RULES = re.compile(r'RULES\\')
# The text before a part that can slip, the part, the text after it.
SECTION = re.compile(r'(\[(?:HKEY_LOCAL_MACHINE\\)?)([^]]*)(\].*)')
KEY = re.compile(r'("?)([A-Za-z][\w-]*)("?\s*=.*)')
WORD = re.compile(r'([^=]*=\s*"?)(true|false|auto)("?)$')
REFERENCE = re.compile(r'([^=]*=.*?%)([\w-]+)(%.*)')


def letters(text):
    for i in range(len(text)):
        if text[i].isalpha() or text[i] == '-':
            yield text[:i] + text[i + 1:]
            yield text[:i] + text[i] + text[i:]
        if i and text[i].isalpha() and text[i - 1].isalpha() and text[i].lower() != text[i - 1].lower():
            yield text[:i - 1] + text[i] + text[i - 1] + text[i + 1:]


def kind(section):
    return 'rules' if RULES.search(section) else re.sub(r'\d+$', '', section)


def slips(name, lines):
    """Yields what was done, the lines after it and the numbers of the changed lines."""
    headers = [(n, SECTION.match(line).group(2)) for n, line in enumerate(lines) if SECTION.match(line)]
    section = ''
    for n, line in enumerate(lines):
        header, key = SECTION.match(line), KEY.match(line)
        section = header.group(2) if header else section
        is_rule = RULES.search(section)
        if not header and not key:
            continue
        for what, match in (('section', header), ('key', not is_rule and key), ('word', WORD.match(line)),
                            ('reference', REFERENCE.match(line))):
            for text in set(letters(match.group(2))) if match else ():
                yield what, lines[:n] + [match.group(1) + text + match.group(3)] + lines[n + 1:], {n + 1}
        is_registry = name.endswith('.reg')
        for what, text in (('percent', re.sub(r'(%[\w-]+)%', r'\1', line, count=1)),
                           ('empty', re.sub('=".*"$', '=""', line) if is_registry else line),
                           ('quote', line if is_registry else re.sub('"$', '', line)),
                           ('remark', line if is_registry else WORD.sub(r'\g<0> ; for now', line))):
            if text != line:
                yield what, lines[:n] + [text] + lines[n + 1:], {n + 1}
        yield 'repeated', lines[:n + 1] + lines[n:], {n + 2}
        for at, other in headers if key and not name.endswith('.reg') else ():
            if kind(other) != kind(section):
                rest = lines[:n] + lines[n + 1:]
                at -= at > n
                yield 'moved', rest[:at + 1] + [line] + rest[at + 1:], {at + 2}


def run(*words):
    env = {'PATH': os.environ['PATH'], 'VORNAK_DRIVES': 'D=' + work, 'VORNAK_REGISTRY': work + '/registry.reg',
           'data': 'D:\\Out'}
    tool = ['--metadata', work + '/metadata', '--config', work + '/user', 'base', '-i', 'team.ini']
    if words[0] == 'veltrane':
        return subprocess.run([build + '/veltrane', *tool, *words[1:]], env=env, capture_output=True, text=True)
    return subprocess.run([build + '/veltrane-config', *words, '--format=json', '--', *tool], env=env,
                          capture_output=True, text=True)


def effect():
    """All values, and what the rules make of names at each version."""
    shown = json.loads(run('show', '--all').stdout)
    values = [(option['name'], option.get('index'), option['value'], option.get('means')) for option in shown['options']
              if option['name'] != 'datetime']
    lists = [word for version in range(7) for word in ('-l', f'{work}/v{version}')]
    return values, shown['startup'], run('veltrane', *lists).stdout


def findings():
    found = json.loads(run('lint').stdout)['findings']
    return {(os.path.relpath(os.path.realpath(item['file']), os.path.realpath(work)), item['line']) for item in found}


def main():
    for name in ('metadata', 'user', 'registry.reg'):
        path = os.path.join(source, 'examples/config', name)
        (shutil.copytree if os.path.isdir(path) else shutil.copy)(path, os.path.join(work, name))
    os.mkdir(work + '/Out')
    for version in range(7):
        with open(f'{work}/v{version}', 'w') as file:
            file.write(f'version {version}\n' + ''.join(f'{kind} {name}\n' for kind in ('table', 'column') for name in
                       ('orders_old', 'tmp_a', 'cust', 'descr', 'quiet', 'role', 'map-file', 'name', 'spool', 'logfile')))
    assert not findings(), 'the untouched configuration has findings'
    before = effect()
    texts = {name: open(os.path.join(work, name)).read().splitlines() for name in FILES}
    mutants = {}
    for name, lines in texts.items():
        for what, text, changed in slips(name, lines):
            mutants.setdefault((name, '\n'.join(text)), (what, changed))
    chosen = sorted(mutants.items(), key=lambda item: item[0])
    if count:
        chosen = rng.sample(chosen, min(count, len(chosen)))
    result = collections.Counter()
    for (name, text), (what, changed) in chosen:
        path = os.path.join(work, name)
        with open(path, 'w') as file:
            file.write(text + '\n')
        found = findings()
        named = {(name, line) for line in changed}
        if found and found <= named:
            verdict = 'named exactly'
        elif found & named:
            verdict = 'named beside others'
        else:
            verdict = 'harmless' if effect() == before else 'MISSED'
        result[what, verdict] += 1
        if verdict == 'MISSED' or (verdict != 'named exactly' and '-v' in sys.argv):
            print(f'{verdict}: {what} in {name}:{min(changed)}: {text.splitlines()[min(changed) - 1]} {sorted(found)}')
        with open(path, 'w') as file:
            file.write('\n'.join(texts[name]) + '\n')
    for (what, verdict), number in sorted(result.items()):
        print(f'{what:10} {verdict:20} {number:5}')
    totals = collections.Counter()
    for (_, verdict), number in result.items():
        totals[verdict] += number
    print(', '.join(f'{verdict} {number} ({number / len(chosen):.1%})' for verdict, number in totals.most_common()))
    return 1 if totals['MISSED'] else 0


try:
    sys.exit(main())
finally:
    shutil.rmtree(work)
