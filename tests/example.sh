#!/usr/bin/env bash
# Usage: example.sh SOURCE_DIRECTORY PAGE NAME PROGRAM
# Holds the C++ and the output that a page shows behind the words `examples/NAME.cpp`, or first if it
# does not have them, against that file, its first line left out, and what the program prints.
set -euo pipefail

block() { # LANGUAGE: what stands in the first such block behind those words
  awk -v words="$words" -v fence="\`\`\`$1" -v behind="$first" '
    index($0, words) {behind = 1}
    inside && $0 == "```" {exit}
    inside
    behind && $0 == fence {inside = 1}' "$page"
}

cd "$1"
page=$2 words="\`examples/$3.cpp\`" first=0
grep -qF "$words" "$page" || first=1
diff -u <(sed 1d "examples/$3.cpp") <(block cpp)
diff -u <("$4") <(block text)
