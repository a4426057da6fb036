#!/usr/bin/env bash
# Usage: test.sh [PRESET] [CTEST_ARGUMENT...]
# Builds everything with a preset of CMakePresets.json (dev unless named) and runs the tests.
set -euo pipefail

cd "$(dirname "$0")/.."
preset=${1-dev}
[ $# -eq 0 ] || shift
probes=(g++ cmake ninja zlib.h CLI/CLI.hpp nlohmann/json.hpp utf8.h pcap/pcap.h gtest/gtest.h
  python3-jsonschema)
case $preset in
  dev) probes+=(pkg-config zsh) ;;
  release) probes+=(benchmark/benchmark.h) ;;
  clang) probes+=(clang++) ;;
  sanitize | thread) probes+=(clang++ sanitizer/asan_interface.h) ;;
esac
scripts/need.sh "${probes[@]}"
set -x
cmake --preset "$preset"
cmake --build --preset "$preset"
ctest --preset "$preset" "$@"
