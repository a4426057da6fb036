#!/usr/bin/env bash
# Usage: run.sh SIPUTIL CASE [MAKECAPTURE]
# Runs siputil as a case file says and compares. The lines of a case begin with
#   #  a comment     $  the arguments, as a shell reads them    <  one line of standard input
#   @  one line of a description of the capture that standard input is
#   >  one line of standard output    !  one of standard error  =  the exit status
# In lines of input, escapes such as \xHH are bytes and \{N} is N zeros. In arguments, $data is
# tests/data.
set -euo pipefail

siputil=$1 case=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

lines() { sed -n "s/^$1 \{0,1\}//p" "$case"; }

# shellcheck disable=SC2034 # for the arguments
data=$(dirname "$0")/../data
eval "arguments=($(lines '[$]'))"
lines '<' | while IFS= read -r line; do
  if [[ $line =~ '\{'([0-9]+)'}' ]]; then
    line=${line/"${BASH_REMATCH[0]}"/$(printf '%0*d' "${BASH_REMATCH[1]}" 0)}
  fi
  printf '%b\n' "$line"
done >"$work/input"
if grep -q '^@' "$case"; then
  lines '@' | "${3:?a program that makes captures}" >"$work/input"
fi
lines '>' >"$work/expected-output"
lines '!' >"$work/expected-errors"
lines '=' >"$work/expected-status"
status=0
# shellcheck disable=SC2154 # arguments is assigned in the eval
"$siputil" "${arguments[@]}" <"$work/input" >"$work/output" 2>"$work/errors" || status=$?
echo "$status" >"$work/status"
for part in output errors status; do
  diff -u "$work/expected-$part" "$work/$part"
done
