#!/usr/bin/env bash
# Usage: example.sh SOURCE_DIRECTORY PAGE NAME PROGRAM
# Compares the C++ and the output that a page shows with examples/NAME.cpp, without its first line,
# and with what the program prints. They are the first such blocks after the words
# `examples/NAME.cpp`, or of the page if it does not have these words.
set -euo pipefail

block() { # LANGUAGE: the content of the first such block after those words
  awk -v words="$words" -v fence="\`\`\`$1" -v after="$first" '
    index($0, words) {after = 1}
    inside && $0 == "```" {exit}
    inside
    after && $0 == fence {inside = 1}' "$page"
}

cd "$1"
page=$2 words="\`examples/$3.cpp\`" first=0
grep -qF "$words" "$page" || first=1
diff -u <(sed 1d "examples/$3.cpp") <(block cpp)
diff -u <("$4") <(block text)
