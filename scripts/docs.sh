#!/usr/bin/env bash
# Usage: docs.sh
# Makes the reference of the exported headers and the pages of docs/ with Doxygen; fails on any
# warning. Begin at build/docs/html/index.html.
set -euo pipefail

cd "$(dirname "$0")/.."
scripts/need.sh doxygen doxygen-awesome-css
# In a copy: Doxygen loses the links between pages where the path has blanks.
copy=$(mktemp -d)
trap 'rm -r "$copy"' EXIT
cp -R --parents docs sip_utility/inc message/inc "$copy"
# Each page but the first gets a table of contents.
find "$copy/docs" -name '*.md' ! -name index.md -exec sed -i '1a \\n[TOC]' {} +
mkdir -p build "$copy/build"
(cd "$copy" && doxygen docs/Doxyfile) 2>&1 | sed "s,$copy/,," >&2
if grep -E '<td class="desc">(&#160;)?</td>' "$copy"/build/docs/html/{annotated,files}.html >&2; then
  echo "docs.sh: a class or a header has no sentence" >&2
  exit 1
fi
rm -rf build/docs
mv "$copy/build/docs" build
echo "build/docs/html/index.html"
