#!/usr/bin/env bash
# Usage: lint.sh
# Checks the format, the shell scripts, the page of log lines, the includes, that each exported
# header compiles alone, and runs clang-tidy.
set -euo pipefail

cd "$(dirname "$0")/.."
scripts/need.sh g++ cmake ninja zlib.h CLI/CLI.hpp nlohmann/json.hpp utf8.h pcap/pcap.h gtest/gtest.h \
  benchmark/benchmark.h clang-tidy shellcheck python3
set -x
scripts/format.sh --dry-run -Werror
scripts/sources.sh dev .ci/run '*.sh' '*.bash' | xargs -0 shellcheck
scripts/diagnostics.py
scripts/layers.sh
cmake --preset dev >/dev/null
cmake --build --preset dev --target all_verify_interface_header_sets
# The shell expands the last pattern, not sources.sh: this leaves out the projects in folders of
# examples/.
scripts/sources.sh 'sip_utility/*.cpp' 'message/*.cpp' 'platform/*.cpp' 'tool/*.cpp' examples/*.cpp |
  xargs -0 -n 1 -P "$(nproc)" clang-tidy -p build/dev --quiet --warnings-as-errors='*' \
    2> >(grep -v 'warnings generated' >&2)
cmake --preset release >/dev/null
scripts/sources.sh 'bench/*.cpp' |
  xargs -0 -n 1 -P "$(nproc)" clang-tidy -p build/release --quiet --warnings-as-errors='*' \
    2> >(grep -v 'warnings generated' >&2)
