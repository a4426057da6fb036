#!/usr/bin/env bash
# Usage: fuzz.sh [TARGET|all] [SECONDS]
# Runs a fuzz target (a name without fuzz_, all unless named) under libFuzzer with address,
# undefined-behaviour and unsigned-overflow checks, each for SECONDS (60 unless given), JOBS at once
# (as many as there are processors unless set). Shows their progress every 10 seconds. New inputs
# are kept in build/fuzz/work, findings in build/fuzz/findings.
set -euo pipefail

cd "$(dirname "$0")/.."
wanted=${1-all} seconds=${2-60}
scripts/need.sh g++ clang++ cmake ninja zlib.h gtest/gtest.h sanitizer/asan_interface.h
build=build/fuzz
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz --target fuzz_targets >/dev/null
mkdir -p $build/findings $build/logs
mapfile -t targets < <(sed -n 's/^add_fuzz_target(\([a-z]*\) \([a-z]*\).*/\1 \2/p' fuzz/CMakeLists.txt |
  awk -v wanted="$wanted" 'wanted == "all" || $1 == wanted')
if [ ${#targets[@]} -eq 0 ]; then
  echo "fuzz: no target '$wanted'" >&2
  exit 2
fi

run() { # NAME DICTIONARY
  local log=$build/logs/$1.log status=0 kept
  mkdir -p "$build/work/$1"
  kept=$(find "fuzz/corpus/$1" "fuzz/regressions/$1" -type d 2>/dev/null || true)
  # shellcheck disable=SC2086 # directories without blanks, or none
  "$build/fuzz/fuzz_$1" -max_total_time="$seconds" -dict="fuzz/$2.dict" -max_len=1024 \
    -artifact_prefix="$build/findings/$1-" "$build/work/$1" $kept >"$log" 2>&1 &
  local fuzzer=$!
  while sleep 10 && kill -0 $fuzzer 2>/dev/null; do progress "$1"; done
  wait $fuzzer || status=$?
  # A fail-stop ends with status 0: only the closing line shows that the run was complete.
  if [ $status -ne 0 ] || ! grep -aq '^Done [0-9]* runs in' "$log"; then
    printf '%-10s FINDING, see %s and %s\n' "$1" "$log" "$build/findings" >&2
    return 1
  fi
  progress "$1"
  printf '%-10s %s\n' "$1" "$(grep -a '^Done' "$log")"
}

progress() { # NAME
  printf '%-10s %s\n' "$1" "$(grep -a 'cov:' "$build/logs/$1.log" | tail -1 |
    sed 's/^\(#[0-9]*\).*\(cov: [0-9]*\).*\(exec\/s: [0-9]*\).*/\1 \2 \3/')"
}

export -f run progress
export build seconds
export ASAN_OPTIONS=malloc_context_size=2 # short stacks, quick runs; a replay shows long ones
printf '%s\n' "${targets[@]}" | xargs -P "${JOBS:-$(nproc)}" -L 1 bash -euo pipefail -c 'run "$@"' run
