#!/usr/bin/env bash
# Usage: surviveFiles.sh SIPUTIL MUTATE COUNT SAMPLE...
# Runs `siputil message` on COUNT damaged messages, many at once, and one of very many fields. The
# exit status must be that of refused texts. Nearly every file must have its message: damage leaves
# nothing of a few. Then runs it on all of them as one log, with the lines as they are, with a prefix
# and in one line each. Then edits them: without an edit, and with edits of fields that they do not
# have, `siputil edit` must write the same bytes.
set -euo pipefail

siputil=$1 mutate=$2 count=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# A report of a sanitizer must not end with the status of a refused text.
export ASAN_OPTIONS=exitcode=99 UBSAN_OPTIONS=exitcode=99 LSAN_OPTIONS=exitcode=99

mkdir "$work/files"
"$mutate" "$count" files "$work/files" "${@:4}"
awk 'BEGIN { print "ACK sip:b SIP/2.0"; while (++i <= 200000) print "CSeq: x" }' >"$work/files/many"
cd "$work/files"
# shellcheck disable=SC2016 # for the inner shell
find . -type f -print0 | xargs -0 -n 1000 bash -c '
  status=0
  "$0" message --json "$@" >>../results 2>../errors || status=$?
  [ "$status" -eq 1 ] || { echo "siputil ended with status $status"; tail -n 50 ../errors; exit 255; }
' "$siputil"
results=$(wc -l <../results)
echo "$count files, $results messages"
[ "$results" -gt $((count * 9 / 10)) ]
in_one_line() { LC_ALL=C sed -z 's/\\/\\\\/g; s/"/\\"/g; s/\r/\\r/g; s/\n/\\n/g; s/.*/{"a":"&"}\n/' "$@"; }
with_prefix() { sed 's/^/12:00:00 sip[1]: /' "$@"; }
export -f in_one_line with_prefix
for layout in cat with_prefix in_one_line; do
  status=0
  find . -type f -print0 | xargs -0 bash -c "$layout \"\$@\"" - |
    "$siputil" message --json --find >../found 2>../errors || status=$?
  found=$(wc -l <../found)
  echo "$layout: status $status, $found messages found"
  [ "$status" -eq 1 ] && [ "$found" -gt $((count / 2)) ]
done

# shellcheck disable=SC1003,SC2016 # a command of sed, which ends the last line
find . -type f -print0 | xargs -0 sed -i '$a\'
find . -type f -print0 | xargs -0 cat >../all
for edits in '' '--set X-None.host=a --remove-header X-None' '--set From.host=a --set Via.port=1 --add-header Via=a'; do
  # shellcheck disable=SC2016 # for the inner shell
  find . -type f -print0 | xargs -0 -n 1000 bash -c '
    status=0
    "$0" edit $1 "${@:2}" 2>../errors || status=$?
    [ "$status" -le 1 ] || { echo "siputil ended with status $status" >&2; tail -n 50 ../errors >&2; exit 255; }
  ' "$siputil" "$edits" >../edited
  [[ $edits == *Via* ]] || cmp ../all ../edited
done
