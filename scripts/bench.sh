#!/usr/bin/env bash
# Usage: bench.sh [FILTER] [--against FILE] [--out FILE] [--growth] [--instructions CASE]
# Runs the benchmarks whose names match FILTER, a regular expression, for about a minute, and prints
# a table: medians; multiples of the floor, a hand-written scanner that makes the same pieces, timed
# in turns with the case; and with --against how the multiple was in an earlier run. Keeps the run
# in build/release/bench.json unless --out names another file. --growth runs the operations on 1 KiB
# to 1 MiB of text. --instructions counts with callgrind what one run of a case takes and keeps the
# profile in build/release/callgrind.out.
set -euo pipefail

cd "$(dirname "$0")/.."
filter=. against=/dev/null out='' name=bench instructions='' arguments=()
table="operations(\$earlier[0])" repetitions=9
while [ $# -ne 0 ]; do
  case $1 in
    --against) against=$2 && shift ;;
    --out) out=$2 && shift ;;
    --growth) name=growth table=growth repetitions=3 arguments+=(--growth) ;;
    --instructions) instructions=$2 && shift ;;
    -*) sed -n '2s/^# //p' "$0" >&2 && exit 2 ;;
    *) filter=$1 ;;
  esac
  shift
done
build=build/release program=build/release/bench/siputility_bench
out=${out:-$build/$name.json}
scripts/need.sh g++ cmake ninja zlib.h CLI/CLI.hpp nlohmann/json.hpp utf8.h pcap/pcap.h gtest/gtest.h \
  benchmark/benchmark.h jq
cmake --preset release >/dev/null
cmake --build --preset release --target siputility_bench -- --quiet >&2

if [ -n "$instructions" ]; then
  scripts/need.sh valgrind
  times=1000
  valgrind --tool=callgrind --callgrind-out-file=$build/callgrind.out --toggle-collect=benchOnce \
    $program "${arguments[@]}" "--once=$instructions" $times 2>&1 |
    awk -v times=$times '/Collected/ {printf "%d instructions\n", $NF / times; found = 1}
      !/^==/ {print} END {exit !found}'
  exit
fi

$program "${arguments[@]}" --benchmark_filter="$filter" --benchmark_repetitions=$repetitions \
  --benchmark_enable_random_interleaving=true --benchmark_report_aggregates_only=true \
  --benchmark_out="$out.new" --benchmark_out_format=json >$build/bench.log 2>&1 || {
  cat $build/bench.log >&2
  exit 1
}
jq -r -L scripts --slurpfile earlier "$against" "include \"bench\"; $table | @tsv" "$out.new" |
  column -t -s $'\t' -R 2,3,4,5,6
mv "$out.new" "$out"
