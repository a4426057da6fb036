#!/usr/bin/env bash
# Usage: run.sh ARGUMENT...
# Runs siputil with the arguments. Builds it first if it is missing or if a source has changed, and
# reports this on standard error, with the progress on a terminal. Prints nothing else of its own.
set -euo pipefail

root=$(dirname "$(dirname "$(readlink -f "$0")")")
build=$root/build/tool

built() {
  [ "$build/build.ninja" -nt "$0" ] && ninja -C "$build" -n siputil | grep -q '^ninja: no work to do'
}

quietly() { # COMMAND...: shows the output of a command that fails
  "$@" >"$log" 2>&1 || { cat "$log" >&2 && return 1; }
}

build() {
  "$root/scripts/need.sh" g++ cmake ninja zlib.h CLI/CLI.hpp nlohmann/json.hpp utf8.h pcap/pcap.h
  echo "dev: building siputil in build/tool" >&2
  log=$(mktemp)
  trap 'rm -f "$log"' EXIT
  # -O1 and no link-time optimisation: two thirds of the time to build, and it runs as fast.
  quietly cmake -S "$root" -B "$build" -G Ninja -DSIPUTILITY_BUILD_TESTS=OFF \
    -DCMAKE_BUILD_TYPE=Quick -DCMAKE_CXX_FLAGS_QUICK=-O1
  if [ -t 2 ]; then
    cmake --build "$build" --target siputil >&2
  else
    quietly cmake --build "$build" --target siputil
  fi
}

built 2>/dev/null || build </dev/null
"$build/tool/siputil" "$@"
