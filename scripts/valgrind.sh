#!/usr/bin/env bash
# Usage: valgrind.sh [TEST_PROGRAM_ARGUMENT...]
# Runs the unit tests under valgrind's memcheck, which must find no error and no leak. Death tests
# are left out. The test program keeps its own operator new, in which allocations fail on demand.
set -euo pipefail

cd "$(dirname "$0")/.."
scripts/need.sh g++ cmake ninja zlib.h gtest/gtest.h valgrind
cmake --preset dev >/dev/null
cmake --build --preset dev --target siputility_tests
set -x
valgrind --soname-synonyms=somalloc=nouserintercepts --error-exitcode=9 --leak-check=full \
  build/dev/tests/siputility_tests --gtest_filter='-*DeathTest*' "$@"
