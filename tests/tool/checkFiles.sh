#!/usr/bin/env bash
# Usage: checkFiles.sh SIPUTIL MAKECAPTURE
# Runs `siputil check` on directories: their order, links that lead back, special files, missing
# files, a name with terminal controls, a capture, a file too large to be a text.
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
printf 'ACK sip:a SIP/2.0\nTo: <sip:a>\n\n' >message
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
2 files, 2 messages, 2 header fields, 0 refused
status 0
0 files, 0 messages, 0 header fields, 0 refused
status 0
siputil: nowhere cannot be read
3  SipAddress::parseURI missing '>'
   SipHeader::SipHeader | value parsing failed
   first: bad/a:2: To: <sip:a

5 files, 5 messages, 5 header fields, 3 refused
status 2
1  SipAddress::parseURI missing '>'
   SipHeader::SipHeader | value parsing failed
   first: steer\x1b[31m/1:2: To: <sip:a

1 files, 1 messages, 1 header fields, 1 refused
status 1
END

mkdir mixed
printf 'udp 192.0.2.1 1 192.0.2.2 2 ACK sip:a SIP/2.0\\r\\nTo: <sip:a\\r\\n\\r\\n\n' | "$makeCapture" >mixed/1.pcap
cp message mixed/2
truncate -s 257M mixed/core
diff -u - <(check mixed) <<'END'
siputil: mixed/core: is too large
1  SipAddress::parseURI missing '>'
   SipHeader::SipHeader | value parsing failed
   first: mixed/1.pcap:2: To: <sip:a

3 files, 2 messages, 2 header fields, 1 refused
status 2
END

# However many files are refused, few reasons are kept.
mkdir many
seq 2000 | while read -r i; do printf 'ACK sip:a SIP/2.0\nTo: <sip:a:%d>\n\n' $((65000 + i)) >"many/$i"; done
[ "$("$siputil" check many | grep -c first:)" -eq 1 ]
