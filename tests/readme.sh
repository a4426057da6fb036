#!/usr/bin/env bash
# Usage: readme.sh SOURCE_DIRECTORY EXAMPLE_PROGRAM
# Holds README's C++ against examples/editAddress.cpp and its output block against the program's.
set -euo pipefail

block() { sed -n "/^\`\`\`$1\$/,/^\`\`\`\$/{/^\`\`\`/d;p}" README.md; }

cd "$1"
diff -u <(sed 1d examples/editAddress.cpp) <(block cpp)
diff -u <("$2") <(block text)
