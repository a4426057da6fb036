#!/usr/bin/env bash
# Usage: surviveCaptures.sh SIPUTIL MUTATE MAKECAPTURE COUNT CASE...
# Runs `siputil message` on COUNT damaged captures, made from those of the cases. Each exit status
# must be 0 or 1, and some messages must be left.
set -euo pipefail

siputil=$1 mutate=$2 makeCapture=$3 count=$4
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# A report of a sanitizer must not end with the status of a refused text.
export ASAN_OPTIONS=exitcode=99 UBSAN_OPTIONS=exitcode=99 LSAN_OPTIONS=exitcode=99

mkdir "$work/files" "$work/captures"
for case in "${@:5}"; do
  # Small captures, so that the damage hits what matters.
  grep -qE '^@ times|^@.*[{]' "$case" ||
    sed -n 's/^@ \{0,1\}//p' "$case" | "$makeCapture" >"$work/captures/$(basename "$case")"
done
"$mutate" "$count" files "$work/files" "$work"/captures/*
cd "$work/files"
# shellcheck disable=SC2016 # for the inner shell
find . -type f -print0 | xargs -0 -n 500 bash -c '
  status=0
  "$0" message --json "$@" >>../results 2>../errors || status=$?
  [ "$status" -le 1 ] || { echo "siputil ended with status $status"; tail -n 50 ../errors; exit 255; }
' "$siputil"
results=$(grep -c '^{"number":.*,"frame":' ../results)
echo "$count captures, $results messages"
[ "$results" -gt $((count / 2)) ]
