#!/usr/bin/env bash
# Usage: docs.sh
# Makes the reference of the exported headers and the pages of docs/ with Doxygen; fails on any
# warning. Begin at build/docs/html/index.html.
set -euo pipefail

cd "$(dirname "$0")/.."
scripts/need.sh doxygen
mkdir -p build
rm -rf build/docs
doxygen docs/Doxyfile
echo "build/docs/html/index.html"
