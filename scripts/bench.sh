#!/usr/bin/env bash
# Usage: bench.sh [FILTER] [--growth] [--against FILE] [--out FILE] [--instructions]
# Runs the benchmarks whose names match FILTER, a regular expression, nine times each in random
# order and prints the medians; all of them take about a minute and a half. --growth runs the
# operations on 1 KiB to 1 MiB of text instead. --out names the JSON file of the run, by default
# build/release/bench.json or growth.json. --against compares the run with an earlier one by Google
# Benchmark's compare.py. --instructions times nothing: it counts the instructions of one call of
# each operation, all together, and writes callgrind's profile to build/release/callgrind.out.
set -euo pipefail

cd "$(dirname "$0")/.."
filter=-BM_Growth_ against='' out='' name=bench instructions=''
while [ $# -ne 0 ]; do
  case $1 in
    --growth) filter=BM_Growth_ name=growth ;;
    --against) against=$2 && shift ;;
    --out) out=$2 && shift ;;
    --instructions) instructions=yes ;;
    -*) sed -n '2s/^# //p' "$0" >&2 && exit 2 ;;
    *) filter=$1 ;;
  esac
  shift
done
build=build/release
program=("$build/bench/siputility_bench" "--benchmark_filter=$filter")
out=${out:-$build/$name.json}
scripts/need.sh g++ cmake ninja zlib.h CLI/CLI.hpp nlohmann/json.hpp utf8.h pcap/pcap.h gtest/gtest.h \
  benchmark/benchmark.h ${against:+compare.py python3-scipy} ${instructions:+valgrind}
[ -z "$against" ] || [ -r "$against" ] || { echo "bench.sh: cannot read $against" >&2 && exit 2; }
cmake --preset release >/dev/null
cmake --build --preset release --target siputility_bench -- --quiet >&2

if [ -n "$instructions" ]; then
  valgrind --tool=callgrind --callgrind-out-file=$build/callgrind.out \
    --log-file=$build/callgrind.log --toggle-collect='void timedOperation<*' \
    "${program[@]}" --benchmark_min_time=0 >/dev/null
  sed -n 's/.*Collected : /instructions: /p' $build/callgrind.log
  exit
fi

"${program[@]}" --benchmark_repetitions=9 --benchmark_min_time=0.05 \
  --benchmark_enable_random_interleaving=true --benchmark_display_aggregates_only=true \
  --benchmark_counters_tabular=true --benchmark_out="$out.new" --benchmark_out_format=json |
  { sed -u 3q && grep _median | sort -V; }
if [ -n "$against" ]; then
  /usr/bin/python3 /usr/share/benchmark/compare.py --no-color --display_aggregates_only \
    benchmarks "$against" "$out.new" | grep -vE '_(mean|stddev|cv) '
fi
mv "$out.new" "$out"
