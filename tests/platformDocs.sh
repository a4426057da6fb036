#!/usr/bin/env bash
# Usage: platformDocs.sh SOURCE_DIRECTORY
# Checks that docs/platform.md names every function and class that platform/inc declares.
set -euo pipefail

cd "$1"
declared() {
  sed 's,//.*,,' platform/inc/*.h |
    grep -oE '\b(__|wyDpl|wyLog|pzmem|varn)[A-Za-z_0-9]+\(|class [A-Za-z]+|\b[A-Z][A-Za-z]+\(' |
    sed 's/^class //; s/($//' | grep -v '^__asm__$' | sort -u
}
missing=$(comm -23 <(declared) <(grep -oE '[A-Za-z_0-9]+' docs/platform.md | sort -u))
if [ -n "$missing" ]; then
  printf 'not in docs/platform.md: %s\n' "$missing" >&2
  exit 1
fi
