#!/usr/bin/env bash
# Usage: format.sh [CLANG_FORMAT_ARGUMENT...]
# Formats all C and C++ sources in place; with --dry-run -Werror only checks them.
set -euo pipefail

cd "$(dirname "$0")/.."
scripts/need.sh clang-format
scripts/sources.sh '*.h' '*.c' '*.cpp' | xargs -0 clang-format -i "$@"
