#!/usr/bin/env bash
# Usage: run.sh ARGUMENT...
# Builds siputil, quietly, and runs it with the arguments.
set -euo pipefail

root=$(dirname "$(dirname "$(readlink -f "$0")")")
build=$root/build/tool
"$root/scripts/need.sh" g++ cmake ninja zlib.h CLI/CLI.hpp nlohmann/json.hpp pcap/pcap.h
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! {
  cmake -S "$root" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DSIPUTILITY_BUILD_TESTS=OFF &&
    cmake --build "$build" --target siputil
} >"$log" 2>&1 </dev/null; then
  cat "$log" >&2
  exit 1
fi
"$build/tool/siputil" "$@"
