#!/usr/bin/env python3
"""Usage: diagnostics.py

Checks that docs/diagnostics.md has each log text of the library's sources, and no text that the
sources do not have. A log text is a string literal with "::" or an inner blank; adjacent literals
are one text. On the page a text is in quotes after its level, or fills a line of a code block
after its level.
"""
import os
import re
import subprocess
import sys

PAGE = "docs/diagnostics.md"
NO_LOG_TEXT = {"ASSERT Failure:"}  # for assertions, which have a handler of their own
STRING = r'"((?:\\.|[^"\\\n])*)"'
# What is not a string comes first, so that no quote in it begins one.
TOKEN = re.compile(r"//[^\n]*|#[^\n]*|static_assert\(.*?\);|'(?:\\.|[^'\\])'|((?:" + STRING + r"\s*)+)",
                   re.S)
os.chdir(os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))


def texts_of(source):
    strings = ("".join(re.findall(STRING, token[0])) for token in TOKEN.findall(source))
    texts = {string.encode().decode("unicode_escape") for string in strings}
    return {text.strip() for text in texts if re.search(r"::|\S \S", text)} - NO_LOG_TEXT


def main():
    command = ["scripts/sources.sh", "sip_utility/src/*.cpp", "sip_utility/src/*.h"]
    names = subprocess.run(command, check=True, capture_output=True, text=True).stdout.split("\0")
    logged = set()
    for name in filter(os.path.isfile, names):  # a deleted file is listed as well
        with open(name, encoding="ascii") as file:
            logged |= texts_of(file.read())
    with open(PAGE, encoding="ascii") as file:
        listed = re.findall(r'(?m)^(?:- \d "(.*?)": |\d (.*))', file.read())
    listed = {(row or line).strip() for row, line in listed}
    for text in sorted(logged - listed):
        print(f"{PAGE} lacks the log text: {text}")
    for text in sorted(listed - logged):
        print(f"no source has the log text on {PAGE}: {text}")
    sys.exit(logged != listed)


main()
