#!/usr/bin/env bash
# Usage: consumer.sh PREFIX WORK_DIRECTORY GENERATOR COMPILER
# Builds examples/consumer against the library installed under PREFIX, with its CMake package and
# with pkg-config, and compares what the programs print with what they should print.
set -euo pipefail

source=$(dirname "$(dirname "$(readlink -f "$0")")")/examples/consumer
work=$2 generator=$3 compiler=$4
rm -rf "$work"
mkdir -p "$work"
cmake -S "$source" -B "$work/cmake" -G "$generator" -DCMAKE_CXX_COMPILER="$compiler" \
  -DCMAKE_PREFIX_PATH="$1" -DCMAKE_FIND_PACKAGE_NO_PACKAGE_REGISTRY=ON
cmake --build "$work/cmake"

PKG_CONFIG_PATH=$(dirname "$(find "$1" -name siputility.pc)")
export PKG_CONFIG_PATH
# pkg-config escapes a blank in a path as a shell does, and xargs reads it so.
ask() { pkg-config "$@" | xargs printf '%s\n'; }
mapfile -t flags < <(ask --cflags --libs siputility siputility-host)
"$compiler" -std=c++17 -o "$work/consumer" "$source/consumer.cpp" "${flags[@]}" \
  -Wl,-rpath,"$(ask --variable=libdir siputility)"

for program in "$work/cmake/consumer" "$work/consumer"; do
  ldd "$program" | awk -v prefix="$1/" '/lib-/ && !index($0, "=> " prefix) { print "not from there:", $0; bad = 1 }
    END { exit bad }'
  diff -u <("$program") - <<'EXPECTED'
Contact: "Bob" <sip:bob@host.test;transport=tcp>;expires=0
sip:a%3Ab@host.test
EXPECTED
done
