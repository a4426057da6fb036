#!/usr/bin/env bash
# Usage: sources.sh PATTERN...
# Prints the names of the project's files that match a pattern, each with a zero byte after it. A *
# matches slashes as well. In a checkout git lists the files; in a tarball they are all files
# outside build/.
set -euo pipefail

cd "$(dirname "$0")/.."
if [ -e .git ] && command -v git >/dev/null; then
  git ls-files -z --cached --others --exclude-standard "$@"
else
  patterns=()
  for pattern in "$@"; do patterns+=(-o -path "./$pattern"); done
  find . -path ./build -prune -o -type f \( "${patterns[@]:1}" \) -printf '%P\0'
fi
