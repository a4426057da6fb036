#!/usr/bin/env bash
# Usage: exports.sh LIBRARY LIST
# Compares what the library exports with the list. To accept a change of the interface, write
# what this prints as "exported" to the list:  exports.sh LIBRARY /dev/null
set -euo pipefail

exported=$(nm --dynamic --defined-only --demangle "$1" | cut -d ' ' -f 3- | LC_ALL=C sort -u)
diff --label listed --label exported -u "$2" <(echo "$exported")
