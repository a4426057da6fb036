#!/usr/bin/env bash
# Usage: chooses.sh SIPUTIL DATA
# Compares the numbers of the messages that options choose, and that all commands choose the same.
# The input has INVITE, 100, 486 and ACK of one call, REGISTER without a number in its CSeq, and 503.
set -euo pipefail

siputil=$1 input=$2/list.sip
while IFS='|' read -r expected options; do
  echo "$options"
  eval "arguments=($options)"
  # shellcheck disable=SC2154 # arguments is assigned in the eval
  found=$("$siputil" list "${arguments[@]}" "$input" 2>&1 | sed 's/^ *//; s/  .*//' | paste -s -d ' ' || true)
  diff <(echo "$expected") <(echo "$found")
done <<'END'
1 2 3 4 5 6|
1 2 3|--method INVITE
1 2 3 4|--method invite,ACK
1 2 3 4 5|--method INVITE,ACK --method REGISTER --number 1-5
3 6|--status 4xx,503
2|--status 1XX
2 3 6|--status 1xx,4Xx --status 503 --from '' --from nothing
siputil: no message was chosen of 6|--status 4xx --method REGISTER
1 2 3 4|--call-id ONE
5 6|--call-id 'two \'
1 2 3 4 5|--from A.TEST
1 2 3 4|--to 0123
2|--to 'bob b'
1|--with k
1|--with supported=TIMER
1|--with Supported=100rel
1|--with Via=192.0.2.9
1 2 3 4 5|--with V
siputil: no message was chosen of 6|--with Via=z9hG4bK1,
2 6|--number 2,6
2 3 4 6|--number 2-3 --number 6-99,4
siputil: note: 'Contcat' is no known field, is it 'Contact'? siputil: no message was chosen of 6|--with Contcat
siputil: --number: expected numbers from 1 on, such as 3 or 5-9|--number 0
siputil: --number: expected numbers from 1 on, such as 3 or 5-9|--number 5-3
siputil: --number: expected numbers from 1 on, such as 3 or 5-9|--number 1,,2
siputil: --number: expected numbers from 1 on, such as 3 or 5-9|--number 1-
siputil: --number: expected numbers from 1 on, such as 3 or 5-9|--number 99999999999999999999
siputil: --status: expected status codes such as 4xx,503|--status xx4
siputil: --status: expected status codes such as 4xx,503|--status 4000
siputil: --status: expected status codes such as 4xx,503|--status '4x*'
siputil: --method: expected methods such as INVITE,BYE|--method 'INVITE BYE'
siputil: --method: expected methods such as INVITE,BYE|--method ''
siputil: --with: expected NAME or NAME=TEXT, such as Require=100rel|--with =x
END

status() { "$siputil" "$@" "$input" >/dev/null 2>&1 || echo "status $?"; }
diff - <(status list; status list --method x; status list --number 0) <<'END'
status 1
status 2
END

# A number counts the messages of all files, whatever holds them.
[ "$("$siputil" list --number 6-7 "$input" "$input" | cut -c -12)" = $'  6  503 Ser\n  7  INVITE ' ]
[ "$("$siputil" message --only none --method ACK "$input" "$input" | grep -c '^ACK')" -eq 2 ]
"$siputil" check --status 486 "$input" "$input" | grep -q '^2 files, 2 messages, 12 header fields'

# The names of --only are compact, long, or likely another one's.
diff <("$siputil" message --only f --only Contcat --number 6 "$input" 2>&1) - <<'END'
siputil: note: 'Contcat' is no known field, is it 'Contact'?
SIP/2.0 503 Service Unavailable
  From  urn:service:sos
  ? missing by RFC 3261: Via (8.1.1.7), To (8.1.1.2)
END
