#!/usr/bin/env bash
# Usage: consumer.sh PREFIX WORK_DIRECTORY [COMPILER]
# Builds examples/consumer against the library installed under PREFIX, with its CMake package and
# with pkg-config, and holds what the programs print against what they should.
set -euo pipefail

source=$(dirname "$(dirname "$(readlink -f "$0")")")/examples/consumer
work=$2 compiler=${3-c++}
rm -rf "$work"
mkdir -p "$work"
cmake -S "$source" -B "$work/cmake" -DCMAKE_PREFIX_PATH="$1" -DCMAKE_CXX_COMPILER="$compiler" \
  -DCMAKE_FIND_PACKAGE_NO_PACKAGE_REGISTRY=ON
cmake --build "$work/cmake"

PKG_CONFIG_PATH=$(dirname "$(find "$1" -name siputility.pc)")
export PKG_CONFIG_PATH
read -ra flags < <(pkg-config --cflags --libs siputility siputility-host)
"$compiler" -std=c++17 -o "$work/consumer" "$source/consumer.cpp" "${flags[@]}" \
  -Wl,-rpath,"$(pkg-config --variable=libdir siputility)"

for program in "$work/cmake/consumer" "$work/consumer"; do
  ldd "$program" | awk -v prefix="$1/" '/lib-/ && index($3, prefix) != 1 { print "not from there:", $0; bad = 1 }
    END { exit bad }'
  diff -u <("$program") - <<'EXPECTED'
Contact: "Bob" <sip:bob@host.test;transport=tcp>;expires=0
sip:a%3Ab@host.test
EXPECTED
done
