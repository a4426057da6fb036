#!/usr/bin/env bash
# Usage: performance.sh
# Puts the numbers of the last ./dev bench and ./dev bench --growth into docs/performance.md, each
# between its two markers, and draws docs/performance-growth.svg.
set -euo pipefail

cd "$(dirname "$0")/.."
scripts/need.sh jq
runs=build/release

table() { # RUN FUNCTION
  jq -r -L scripts "include \"bench\"; $2 | @tsv" "$runs/$1.json"
}

markdown() {
  awk '{gsub(/\t/, " | "); print "| " $0 " |"} NR == 1 {gsub(/[^|]+/, "---"); print "|" $0 "|"}'
}

fill() { # NAME: replaces what stands between the markers of this name
  awk -v name="$1" -v news="$(cat)" '
    index($0, "<!-- /" name " -->") {print news; skip = 0}
    !skip {print}
    index($0, "<!-- " name " -->") {skip = 1}' docs/performance.md >"$runs/performance.md"
  mv "$runs/performance.md" docs/performance.md
}

jq -r --arg cpu "$(sed -n 's/^model name.*: //p' /proc/cpuinfo | head -1)" '.context |
  "\(.date[:10]); \($cpu), \(.num_cpus) processors; \(.compiler), `\(.flags)`."' \
  $runs/bench.json | fill setup
table bench rows | markdown | fill rows
table bench 'operations(null)' | markdown | fill operations
table growth growth | markdown | fill growth
table growth growth | { sed -u 1q && sort -t $'\t' -k5,5gr; } | awk -f scripts/growth.awk >docs/performance-growth.svg
