#!/usr/bin/env bash
# Usage: checkFiles.sh SIPUTIL MAKECAPTURE
# Runs `siputil check` on directories: their order, links that lead back, special files, missing
# files, a name with terminal controls, captures, gzip data, files too large to be a text, texts in
# other encodings, files without a message.
set -euo pipefail

siputil=$1 makeCapture=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

# Prints the output of check for the paths, and its status.
check() {
  status=0
  "$siputil" check "$@" 2>&1 || status=$?
  echo "status $status"
}

mkdir -p sound/deep bad/b/c $'steer\e[31m' empty
begin='ACK sip:a SIP/2.0\nVia: SIP/2.0/UDP a\nFrom: sip:a\nMax-Forwards: 1\nCall-ID: a\nCSeq: 1 ACK'
printf '%b\nTo: <sip:a>\n\n' "$begin" >message
cp message sound/deep/1
cp message sound/2
ln -s .. sound/deep/up
ln -s nowhere sound/dangling
mkfifo sound/pipe
sed 's/>//' message >bad/b/c/1
cp bad/b/c/1 bad/b-1
cp bad/b/c/1 bad/a
ln -s ../sound bad/b/sound
cp message bad/z
cp bad/a $'steer\e[31m/1'

diff -u - <(check sound; check empty; check nowhere sound/2 bad; check $'steer\e[31m') <<'END'
2 files, 2 messages, 12 header fields, 0 refused
status 0
siputil: no file in empty
0 files, 0 messages, 0 header fields, 0 refused
status 1
siputil: nowhere: No such file or directory
3  something other than ">" follows the URI [SipAddress::parseURI missing '>']
   first: bad/a:7: To: <sip:a

5 files, 5 messages, 30 header fields, 3 refused
status 2
1  something other than ">" follows the URI [SipAddress::parseURI missing '>']
   first: steer\x1b[31m/1:7: To: <sip:a

1 file, 1 message, 6 header fields, 1 refused
status 1
END

mkdir other
for code in UTF-16 UTF-16LE UTF-16BE; do iconv -t "$code" message >"other/$code"; done
printf '\xEF\xBB\xBF%s\n\n' "$(cat bad/a)" >other/bom
touch other/nothing
printf 'no\nmessage\n' >other/text
diff -u - <(check --find other; "$siputil" message --only none sound/2 other/nothing 2>&1) <<'END'
siputil: no SIP message in other/nothing
siputil: no SIP message in other/text
1  something other than ">" follows the URI [SipAddress::parseURI missing '>']
   first: other/bom:7: To: <sip:a

6 files, 4 messages, 24 header fields, 1 refused
status 1
sound/2:1
ACK sip:a SIP/2.0
siputil: no SIP message in other/nothing
END

# Both commands count the same, whatever is shown.
printf 'ACK sip:a SIP/2.0\nl: 9\nc: multipart/mixed;boundary=b\nno colon\n\n--b\nx' >bad/body
counts() { "$siputil" "$@" bad/a bad/body | tail -n 1 | sed 's/.*fields, //'; }
[ "$(counts check)" = '4 refused, 1 remark' ]
[ "$(counts message)" = '4 refused, 1 remark' ]
[ "$(counts message --only To)" = '4 refused, 1 remark' ]

mkdir mixed
printf 'udp 192.0.2.1 1 192.0.2.2 2 %s\\r\\nTo: <sip:a\\r\\n\\r\\n\n' "${begin//\\n/\\r\\n}" | "$makeCapture" >mixed/1.pcap
{ head -c 40 mixed/1.pcap | gzip; tail -c +41 mixed/1.pcap | gzip; } >mixed/1.pcap.gz
head -c -9 mixed/1.pcap.gz >mixed/1.pcap.gz.part
head -c 24 mixed/1.pcap >mixed/1.pcap.start
{ gzip -c message; head -c 70000 /dev/zero; } >mixed/2
truncate -s 257M text
gzip -1 text
mv text.gz mixed
truncate -s 257M mixed/core
diff -u - <(check mixed; "$siputil" message mixed/text.gz 2>&1) <<'END'
siputil: mixed/1.pcap.gz.part: the gzip data is damaged or ends early
siputil: no SIP message in mixed/1.pcap.start
siputil: mixed/core: has a message that is too large
siputil: mixed/text.gz: has a message that is too large
3  something other than ">" follows the URI [SipAddress::parseURI missing '>']
   first: mixed/1.pcap:frame 1, 2024-02-29T23:59:59.999999Z, Call-ID a: To: <sip:a

7 files, 4 messages, 24 header fields, 3 refused
status 1
siputil: mixed/text.gz: has a message that is too large
END

# However many files are refused, few reasons are kept.
mkdir many
seq 2000 | while read -r i; do printf '%b\nTo: <sip:a:%d>\n\n' "$begin" $((65000 + i)) >"many/$i"; done
[ "$("$siputil" check many | grep -c first:)" -eq 1 ]
