#!/usr/bin/env bash
# Usage: survive.sh SIPUTIL MUTATE_LINES SAMPLES COUNT COMMAND
# Runs `siputil COMMAND - --json` on COUNT damaged lines: every line that is not empty must get
# its result line, and the exit status must be that of refused texts.
set -euo pipefail

siputil=$1 mutate=$2 samples=$3 count=$4 command=$5
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

"$mutate" "$samples" "$count" >"$work/lines"
status=0
"$siputil" "$command" - --json <"$work/lines" >"$work/results" 2>"$work/errors" || status=$?
if [ "$status" -ne 1 ]; then
  echo "siputil ended with status $status"
  tail -n 50 "$work/errors"
  exit 1
fi
expected=$(grep -acvE $'^\r?$' "$work/lines")
got=$(wc -l <"$work/results")
accepted=$(grep -c '^{"ok":true' "$work/results")
echo "$expected lines, $got results, $accepted accepted"
[ "$expected" -eq "$got" ]
