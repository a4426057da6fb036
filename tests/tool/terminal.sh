#!/usr/bin/env bash
# Usage: terminal.sh SIPUTIL MAKECAPTURE
# Lists messages on terminals of different widths: each line fits, the number is never cut, and the
# columns are below each other.
set -euo pipefail

siputil=$(readlink -f "$1") makeCapture=$(readlink -f "$2")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

fields='From: <sip:+12015550123@a.test>\r\nTo: <sip:b\xC3\xA9atrice@a.test>\r\nCall-ID: 0b92a4d1@a.test\r\n'
"$makeCapture" >trace.pcap <<END
udp 10.20.30.40 5060 192.168.100.200 5060 INVITE sip:b SIP/2.0\\r\\n${fields}CSeq: 7 INVITE\\r\\n\\r\\n
udp 2001:db8:1234:5678:9abc:def0:1234:5678 5060 2001:db8::2 5060 SIP/2.0 183 Session Progress\\r\\n${fields}CSeq: 7 INVITE\\r\\n\\r\\n
END
{ yes $'BYE sip:b SIP/2.0\nl: 0\n' | head -n 3000; printf 'SIP/2.0 404 %030d\nCSeq: 70 BYE\nl: 0\n' 0; } >text || true

on_terminal() { # COLUMNS ARGUMENT...
  echo "$*"
  COLUMNS=200 script -qec "stty cols $1; ${siputil@Q} list ${*:2}" /dev/null </dev/null | tr -d '\r'
}
diff -u - <(for width in 30 80 120 160; do on_terminal "$width" trace.pcap; done
  on_terminal 80 --number 999-1001 text
  on_terminal 80 --number 1001 text
  on_terminal 0 --number 1001 text) <<'END'
30 trace.pcap
  1 23:59:59.999 10.2~0.40 ->~
  2 00:00:00.000 2001~5678 ->~
80 trace.pcap
  1 23:59:59.999 10.2~0.40 -> 192.~.200 INVITE    7 INVI~ +12~123 béa~ice 0b92a~
  2 00:00:00.000 2001~5678 -> 2001~8::2 183 Sess~ 7 INVI~ +12~123 béa~ice 0b92a~
120 trace.pcap
  1 23:59:59.999 10.20.30.40  -> 192.16~0.200 INVITE             7 INVITE   +12015550123 béatrice     0b92a4d1@a.test
  2 00:00:00.000 2001:d~:5678 -> 2001:db8::2  183 Session Progr~ 7 INVITE   +12015550123 béatrice     0b92a4d1@a.test
160 trace.pcap
  1  23:59:59.999  10.20.30.40:5060     -> 192.168.100.200:5060  INVITE                   7 INVITE      +12015550123     béatrice         0b92a4d1@a.test
  2  00:00:00.000  [2001:db8:1~5678]:5060 -> [2001:db8::2]:5060    183 Session Progress     7 INVITE      +12015550123     béatrice         0b92a4d1@a.test
80 --number 999-1001 text
999  BYE
1000  BYE
1001  404 000000000000~  70 BYE
80 --number 1001 text
1001  404 000000000000~  70 BYE
0 --number 1001 text
1001  404 000000000000000000000000000000  70 BYE
END
