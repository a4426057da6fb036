#!/usr/bin/env bash
# Usage: performance.sh
# Runs ./dev bench and ./dev bench --growth and writes their tables to the end of
# docs/performance.md. A row that has a floor shows how many times the floor it takes.
set -euo pipefail

cd "$(dirname "$0")/.."
scripts/need.sh jq
scripts/bench.sh
scripts/bench.sh --growth
cpu=$(sed -n 's/^model name.*: //p' /proc/cpuinfo | head -1)
page=docs/performance.md
sed -i '/^<!-- scripts\/performance.sh writes the rest -->$/q' $page
{
  jq -r --arg cpu "$cpu" '
    def floor_name: sub("ParseAndAddress"; "Parse") | sub("_Sip(Address|Header)_"; "_Floor_");
    [.benchmarks[] | select(.aggregate_name == "median")] as $rows |
    ($rows | map({key: .run_name, value: .cpu_time}) | from_entries) as $ns |
    def times_floor: (.run_name | floor_name) as $floor |
      if $floor == .run_name or $ns[$floor] == null then ""
      else (.cpu_time / $ns[$floor] * 100 | round) / 100 end;
    "", "\(.context.date[:10]); \($cpu), \(.context.num_cpus) processors;",
    "\(.context.compiler), `\(.context.flags)`.", "",
    "| operation | ns | allocations | x floor |", "|---|--:|--:|--:|",
    ($rows | sort_by(.run_name)[] |
      "| \(.run_name) | \((.cpu_time * 10 | round) / 10) | \(.allocations) | \(times_floor) |")
  ' build/release/bench.json
  jq -r '
    "", "Nanoseconds for each byte of a text:", "",
    "| operation | 1 KiB | 16 KiB | 256 KiB | 1 MiB |", "|---|--:|--:|--:|--:|",
    ([.benchmarks[] | select(.aggregate_name == "median") |
        (.run_name | split("/")) as [$name, $size] | {$name, size: ($size | tonumber),
          ns: ((1e11 / .bytes_per_second | round) / 100)}] |
      group_by(.name)[] | sort_by(.size) |
      "| \(.[0].name) | \(map(.ns | tostring) | join(" | ")) |")
  ' build/release/growth.json
} >>$page
