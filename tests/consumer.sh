#!/usr/bin/env bash
# Usage: consumer.sh PREFIX WORK_DIRECTORY GENERATOR C++_COMPILER C_COMPILER
# Moves a copy of the library installed under PREFIX elsewhere, builds examples/consumer against it,
# with its CMake package and with pkg-config, and compares what the programs print with what they
# should print.
set -euo pipefail

source=$(dirname "$(dirname "$(readlink -f "$0")")")/examples/consumer
work=$2 generator=$3 cxx=$4 cc=$5
prefix="$work/moved elsewhere"
rm -rf "$work"
mkdir -p "$work"
cp -a "$1" "$prefix"
cmake -S "$source" -B "$work/cmake" -G "$generator" -DCMAKE_CXX_COMPILER="$cxx" \
  -DCMAKE_C_COMPILER="$cc" -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_FIND_PACKAGE_NO_PACKAGE_REGISTRY=ON
cmake --build "$work/cmake"
cmake --install "$work/cmake" --prefix "$work/installed"

PKG_CONFIG_PATH=$(dirname "$(find "$prefix" -name siputility.pc)")
export PKG_CONFIG_PATH
# pkg-config escapes a blank in a path as a shell does, and xargs reads it so.
ask() { pkg-config "$@" siputility | xargs printf '%s\n'; }
libdir=$(ask --variable=libdir)
for kind in '' --static; do
  mapfile -t flags < <(ask --cflags --libs $kind)
  # As by default on Ubuntu, a program names only the libraries that it calls.
  flags=("-Wl,--as-needed" "${flags[@]}" "-Wl,-rpath,$libdir")
  mkdir -p "$work/pkg-config$kind"
  "$cxx" -std=c++17 -o "$work/pkg-config$kind/consumer" "$source/consumer.cpp" "${flags[@]}"
  "$cc" -o "$work/pkg-config$kind/caller" "$source/caller.c" "${flags[@]}"
done

# The installed programs are those of a library in a folder that the loader searches.
for folder in cmake installed/bin pkg-config pkg-config--static; do
  [ "$folder" != installed/bin ] || export LD_LIBRARY_PATH="$libdir"
  for program in "$work/$folder"/{consumer,caller}; do
    ldd "$program" | awk -v prefix="$prefix/" '
      /lib-/ && !index($0, "=> " prefix) { print "not from there:", $0; bad = 1 } END { exit bad }'
  done
  diff -u <("$work/$folder/consumer") - <<'EXPECTED'
Contact: "Bob" <sip:bob@host.test;transport=tcp>;expires=0
sip:a%3Ab@host.test
EXPECTED
  diff -u <("$work/$folder/caller") - <<'EXPECTED'
token 1, separator 1
host type 2, equal 1
sip:a%3Ab@host.test
compressed, expanded: the same
EXPECTED
  unset LD_LIBRARY_PATH
done
