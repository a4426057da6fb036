#!/usr/bin/env bash
# Usage: surviveLines.sh SIPUTIL MUTATE COMMAND COUNT SAMPLES
# Runs `siputil COMMAND - --json` on COUNT damaged lines. The exit status must be that of refused
# texts, and every line that is not empty must have its result.
set -euo pipefail

siputil=$1 mutate=$2 command=$3 count=$4 samples=$5
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# A report of a sanitizer must not end with the status of a refused text.
export ASAN_OPTIONS=exitcode=99 UBSAN_OPTIONS=exitcode=99 LSAN_OPTIONS=exitcode=99

"$mutate" "$count" lines "$samples" >"$work/lines"
status=0
"$siputil" "$command" - --json <"$work/lines" >"$work/results" 2>"$work/errors" || status=$?
if [ "$status" -ne 1 ]; then
  echo "siputil ended with status $status"
  tail -n 50 "$work/errors"
  exit 1
fi
expected=$(grep -acvE $'^\r?$' "$work/lines")
results=$(wc -l <"$work/results")
accepted=$(grep -c '^{"ok":true' "$work/results")
echo "$expected lines, $results results, $accepted accepted"
[ "$expected" -eq "$results" ] && [ "$accepted" -gt 0 ]
