#!/usr/bin/env python3
"""Usage: diagnostics.py [--check]

Brings docs/diagnostics.md up to date with the log calls in the library's sources: a section for
each source and module, an item for each text with its level. The words behind a text are written
by hand and stay with it; a new text gets "TODO". With --check changes nothing and fails where the
page is not what the sources give or a text has no words.
"""
import os
import re
import sys
from collections import namedtuple

PAGE = "docs/diagnostics.md"
LOG = "sip_utility/src/base/log."
LEVELS = {"kTrace": 3, "kFailure": 4, "kSevere": 5}
CALLS = {"logTrace": "kTrace", "logFailure": "kFailure", "logSevere": "kSevere"}
TOKEN = re.compile(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])*\'|\w+|\S', re.S)
os.chdir(os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))
MODULES = dict(re.findall(r"(kModule\w+) = (\d+)", open(LOG + "h").read()))

# A log call whose text is not written at it: where it comes from is found by the name.
Sink = namedtuple("Sink", "level module source file argument function")


def tokens_of(text):
    text = re.sub(r"(?m)^#.*", "", text)
    tokens = [t for t in TOKEN.findall(text) if not t.startswith(("//", "/*"))]
    joined = []
    for token in tokens:
        if token[0] == '"' and joined and joined[-1][0] == '"':
            joined[-1] = joined[-1][:-1] + token[1:]
        else:
            joined.append(token)
    return joined


def close(tokens, i):
    """Returns the position of the bracket that closes the one at i."""
    depth = 0
    while True:
        depth += (tokens[i] in "([{") - (tokens[i] in ")]}")
        if depth == 0:
            return i
        i += 1


def arguments(tokens, i):
    """Splits what stands between the bracket at i and the one that closes it at its commas."""
    end, parts = close(tokens, i), [[]]
    i += 1
    while i < end:
        if tokens[i] == ",":
            parts.append([])
        elif tokens[i] in "([{":
            parts[-1] += tokens[i : close(tokens, i)]
            i = close(tokens, i)
            parts[-1].append(tokens[i])
        else:
            parts[-1].append(tokens[i])
        i += 1
    return parts


def functions_of(tokens):
    """Returns each function's name, parameters and body as positions."""
    found, i = [], 0
    while i < len(tokens):
        if tokens[i] == "(" and re.match(r"\w", tokens[i - 1]):
            end = close(tokens, i)
            brace = end + 1 + (tokens[end + 1 : end + 2] == ["const"])
            if tokens[brace : brace + 1] == ["{"]:
                found.append((tokens[i - 1], arguments(tokens, i), brace, close(tokens, brace)))
                i = brace
        i += 1
    return [f for f in found if f[0] not in ("if", "while", "for", "switch")]


def text_of(token):
    return token[1:-1].encode().decode("unicode_escape")


class Sources:
    def __init__(self):
        names = os.popen("scripts/sources.sh 'sip_utility/src/*.cpp' 'sip_utility/src/*.h'").read()
        files = names.split("\0")[:-1]
        self.tokens = {f: tokens_of(open(f).read()) for f in files}
        self.functions = {f: functions_of(t) for f, t in self.tokens.items()}
        self.lines = set()  # (source, module, level, text)
        for file, tokens in self.tokens.items():
            for i, token in enumerate(tokens[:-1]):
                if token in CALLS or token == "logEvent":
                    if tokens[i - 1] != "void" and tokens[i + 1] == "(":
                        self.log_call(file, i, arguments(tokens, i + 1))
        texts = {line[3] for line in self.lines}
        for file, tokens in self.tokens.items():
            for token in tokens:
                if token[0] == '"' and re.search(r"::| \| ", token) and text_of(token) not in texts:
                    sys.exit(f"{file}: not found where this is logged: {token}")

    def constant(self, file, name):
        tokens = self.tokens[file]
        places = [i for i, t in enumerate(tokens) if t == name and tokens[i + 1] == "="]
        return text_of(tokens[places[0] + 2]) if places else None

    def log_call(self, file, i, parts):
        function = next((f for f in self.functions[file] if f[2] < i < f[3]), None)
        if function is None or file.startswith(LOG):
            return  # a declaration, or a call that hands on what it got
        level, module = CALLS.get(self.tokens[file][i]), "kModuleLibrary"
        if level is None:
            level, module = parts[0][0], parts[1][0]
            parts = parts[2:3] + parts[4:]
        source = self.constant(file, parts[0][0])
        sink = Sink(LEVELS[level], MODULES[module], source, file, parts[1], function)
        texts = [t for t in parts[1] if t[0] == '"']
        if texts and source is None:  # the text here, the source the caller's
            self.callers_sources(sink, texts)
        elif texts:
            self.add(sink, file, texts)
        elif not self.resolve(sink):
            sys.exit(f"{file}: no text found for {' '.join(sink.argument)}")

    def add(self, sink, file, texts):
        source = sink.source or self.constant(file, "kSourceFile")
        self.lines |= {(source, sink.module, sink.level, text_of(t)) for t in texts}
        return bool(texts)

    def callers_sources(self, sink, texts):
        for file, tokens in self.tokens.items():
            if sink.function[0] in tokens and self.constant(file, "kSourceFile"):
                self.add(sink, file, texts)

    def resolve(self, sink):
        name, (function, parameters, start, end) = sink.argument[-1], sink.function
        if len(sink.argument) > 1:
            return self.from_tables(sink, name)
        for index, parameter in enumerate(parameters):
            if parameter[-1] == name or name in parameter and "=" in parameter:
                return self.from_calls(sink, function, index)
        return self.from_assignments(sink, name, self.tokens[sink.file][start:end])

    def from_calls(self, sink, function, index):
        found, tokens = False, self.tokens[sink.file]
        for i, token in enumerate(tokens[:-1]):
            if token == function and tokens[i + 1] == "(":
                parts = arguments(tokens, i + 1)
                texts = [t for t in parts[index] if t[0] == '"'] if index < len(parts) else []
                found |= self.add(sink, sink.file, texts)
        return found

    def from_assignments(self, sink, name, body):
        """name = "text", or name = function(...) that returns texts"""
        found = False
        for i in range(len(body) - 2):
            if body[i : i + 2] == [name, "="]:
                found |= self.add(sink, sink.file, [t for t in body[i + 2 : i + 3] if t[0] == '"'])
                for function, _, start, end in self.functions[sink.file]:
                    if function == body[i + 2]:
                        returned = self.tokens[sink.file][start:end]
                        texts = [b for a, b in zip(returned, returned[1:]) if a == "return"]
                        found |= self.add(sink, sink.file, [t for t in texts if t[0] == '"'])
        return found

    def from_tables(self, sink, field):
        """Constants of a structure with this field, one or an array of them"""
        found = False
        for tokens in self.tokens.values():
            for i in range(len(tokens) - 2):
                if tokens[i] == "struct" and "{" in tokens[i : i + 7]:
                    name = tokens[tokens.index("{", i) - 1]
                    members = " ".join(tokens[i : close(tokens, tokens.index("{", i))])
                    fields = re.findall(r"(?:const )?char \*? ?(\w+) ;", members)
                    if field in fields:
                        found |= self.from_constants(sink, name, fields.index(field))
        return found

    def from_constants(self, sink, structure, index):
        found = False
        for file, tokens in self.tokens.items():
            for i, token in enumerate(tokens):
                rest = tokens[i + 1 : i + 6]
                if token == structure and tokens[i - 1] == "constexpr" and "{" in rest:
                    start = tokens.index("{", i)
                    rows = [arguments(tokens, start)]
                    if "[" in tokens[i:start]:
                        rows = [arguments(row, 0) for row in rows[0] if row]
                    for row in rows:
                        found |= self.add(sink, file, [t for t in row[index] if t[0] == '"'])
        return found


def page(lines, old):
    head, words = old.split("\n## ")[0], {}
    section = None
    for line in old.split("\n"):
        if line.startswith("## "):
            section = line
        elif item := re.match(r"- \d (`.*?`): (.*)", line):
            words[section, item[1]] = item[2]
    out, section = [head.rstrip("\n")], None
    for source, module, level, text in sorted(lines, key=lambda x: (x[:2], x[3], x[2])):
        if section != f"## {source}, module {module}":
            section = f"## {source}, module {module}"
            out += ["", section, ""]
        out.append(f"- {level} `{text}`: {words.get((section, f'`{text}`'), 'TODO')}")
    return "\n".join(out) + "\n"


def main():
    old = open(PAGE).read()
    new = page(Sources().lines, old)
    if sys.argv[1:] == ["--check"]:
        if new != old or "`: TODO" in new:
            sys.exit(f"{PAGE}: not what the sources log, or without words; scripts/diagnostics.py")
    else:
        open(PAGE, "w").write(new)


main()
