#!/usr/bin/env bash
# Usage: live.sh SIPUTIL MAKECAPTURE
# Feeds siputil piece by piece, and reads what it prints of a piece before it gives it the next one:
# texts, logs, gzip data and captures from a pipe, a file that grows and becomes shorter. A signal
# ends each.
set -euo pipefail
set -m # so that background jobs take SIGINT

siputil=$(readlink -f "$1") makeCapture=$(readlink -f "$2")
work=$(mktemp -d)
trap 'kill %% 2>/dev/null || true; rm -rf "$work"' EXIT
cd "$work"
mkfifo in out

start() { # ARGUMENT... : runs siputil with its input and output as pipes
  echo "siputil $*"
  "$siputil" "$@" <in >out 2>errors &
  pid=$!
  exec {input}>in {output}<out
}
shows() { # LINE... : these are the next lines that siputil prints
  local line
  for expected in "$@"; do
    IFS= read -r -t 20 line <&"$output"
    diff -u <(echo "$expected") <(echo "$line")
  done
}
ends() { # STATUS ERRORS [SIGNAL] : the input is closed, or a signal ends the program
  local status=0
  [ $# -eq 2 ] || kill -s "$3" "$pid"
  [ $# -eq 3 ] || exec {input}>&-
  cat <&"$output" >rest
  wait "$pid" || status=$?
  exec {input}>&- {output}<&-
  diff -u <(echo "$2 status $1") <(echo "$(cat errors) status $status")
}

message() { # CALL-ID LENGTH
  printf '%s\r\n' 'MESSAGE sip:a SIP/2.0' 'Via: SIP/2.0/UDP a' 'f: <sip:a>' 't: <sip:a>' \
    "i: $1" 'CSeq: 1 MESSAGE' 'Max-Forwards: 1' 'c: text/plain' "l: $2" ''
}
one=('MESSAGE sip:a SIP/2.0' '  Call-ID  1')
two=('MESSAGE sip:a SIP/2.0' '  Call-ID  2')


# A message is shown once it has its length, another one at the end.
start message --only Call-ID --follow
message 1 0 >&"$input"
shows "${one[@]}"
{ message 2 5 && printf 'he'; } >&"$input"
printf 'llo' >&"$input"
shows '' "${two[@]}"
message 1 1 >&"$input"
ends 1 ''
diff -u - rest <<'END'

MESSAGE sip:a SIP/2.0
  Call-ID  1
  ! -:31: the body has 0 of 1 bytes

3 messages, 24 header fields, 1 refused
END

# Gzip data may follow gzip data.
start message --only Call-ID --follow
message 1 0 | gzip >&"$input"
shows "${one[@]}"
message 2 0 | gzip | head -c 4 >&"$input"
ends 0 '' INT

# In a log, also where no line end follows a body.
start message --find --only Call-ID --follow
{ echo received: && message 1 0; } >&"$input"
shows '-:2' "${one[@]}"
{ message 2 2 && printf 'hi'; } >&"$input"
shows '' '-:12' "${two[@]}"
printf '\n' >&"$input"
message 1 0 >&"$input"
shows '' '-:23' "${one[@]}"
ends 0 '' TERM

# Line ends that come after a message was written are written at the end.
start edit --follow
message 1 0 >&"$input"
shows $'MESSAGE sip:a SIP/2.0\r'
printf '\r\n\r\n' >&"$input"
ends 0 ''
{ message 1 0 | tail -n +2 && printf '\r\n\r\n'; } | diff -u - rest

# A capture that is being written ends anywhere.
for id in 1 2; do
  echo "udp 192.0.2.1 1 192.0.2.2 2 $(message $id 0 | sed 's/\r$/\\r\\n/' | tr -d '\n')"
done | "$makeCapture" >capture
half=$((($(stat -c %s capture) - 24) / 2 + 24))
start message --only Call-ID --follow
head -c "$half" capture >&"$input"
shows '2024-02-29T23:59:59.999999Z 192.0.2.1:1 -> 192.0.2.2:2 UDP frame 1' "${one[@]}"
tail -c +"$half" capture | tail -c +2 | head -c 20 >&"$input"
ends 0 '' INT

# A file that becomes shorter is read from its start.
message 1 0 >text
[ "$("$siputil" check --follow text text 2>&1)" = 'siputil: --follow: follows one FILE' ]
start message --only Call-ID --follow text
shows "${one[@]}"
message 2 0 >>text
shows '' "${two[@]}"
message 1 0 >text
shows '' "${one[@]}"
ends 0 'siputil: text: became shorter; reading it from its start' INT
diff -u - rest <<'END'

3 messages, 24 header fields, 0 refused
END

# Whoever reads the output may stop.
message 1 0 >>text
{ "$siputil" message --follow text || echo $? >status; } | head -n 1
[ "$(cat status)" -eq 141 ]
