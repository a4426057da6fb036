#!/usr/bin/env bash
# Usage: examples.sh SIPUTIL DATA MAKECAPTURE PAGE...
# Runs the examples that `siputil COMMAND --help` shows, in a folder with the files that they name.
# Each must succeed and print something, and each command must have two. Then runs the examples in
# the console blocks of the pages, which must print what the page shows.
set -euo pipefail

siputil=$(readlink -f "$1") data=$(readlink -f "$2") makeCapture=$(readlink -f "$3")
mapfile -t pages < <(readlink -f "${@:4}")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

siputil() { "$siputil" "$@"; }
# Replaces the pager, which may be missing.
less() { cat; }
export -f siputil less
export siputil
mkdir traces
cp "$data/messages/prack.sip" message.sip
cp "$data/messages/register.sip" "$data/messages/redirect-302.sip" traces
printf '%s\n' 'udp 192.0.2.1 5060 192.0.2.2 5060 ACK sip:a SIP/2.0\r\n\r\n' | "$makeCapture" >trace.pcap
{ echo 'Nov 21 received:' && cat message.sip; } >server.log
printf -- '--b\r\n\r\nhello\r\n--b--\r\n' >body.bin
printf 'sip:a@b.test\nsip:[::1]\n' >uris.txt
siputil gzip message.sip >message.gz

run=0
for command in $(siputil --help | sed '1,/^Commands:/d; s/^ *\([^ ]*\).*/\1/'); do
  siputil "$command" --help | sed -n '1,/^Examples:/d; s/^  //p' >examples
  [ "$(wc -l <examples)" -ge 2 ] || { echo "$command has few examples"; exit 1; }
  while IFS= read -r example; do
    echo "$example"
    bash -euo pipefail -c "$example" >output </dev/null
    [ -s output ]
    run=$((run + 1))
  done <examples
done
echo "$run examples"
[ "$run" -gt 0 ]

mkdir tests
ln -s "$data" tests/data
for page in "${pages[@]}"; do
  awk '/^```$/ { shown = 0 } shown; /^```console$/ { shown = 1 }' "$page" >expected
  grep '^\$ ' expected | while IFS= read -r line; do
    echo "$line"
    bash -c "${line#??}" 2>&1 </dev/null || true
  done >output
  diff -u expected output
  [ -s output ]
done
