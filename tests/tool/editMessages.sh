#!/usr/bin/env bash
# Usage: editMessages.sh SIPUTIL DATA MAKECAPTURE
# Edits messages and compares what changes. Each `$` line below edits the same message; the lines
# after it are what is printed on standard error, the lines that differ and, unless it is 0, the
# status. Then checks that texts come back byte for byte without edits, that a body gets its length,
# and that hostile messages do not take long.
set -euo pipefail

siputil=$(readlink -f "$1") data=$(readlink -f "$2") makeCapture=$(readlink -f "$3")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

# Lines with CR are shown without it; the test of bytes is below.
cat >text <<'END'
INVITE sip:b@b.test SIP/2.0
v: SIP/2.0/UDP one.test:5060;branch=z9hG4bK1,
 SIP/2.0/TCP [::1];branch=z9hG4bK2;rport
VIA : SIP/2.0/UDP three.test
f: "Bob, <\"B\">"   <sip:bob:pw@old.test:05060;x;y=1?subject=hi>;a=1 ; TAG=t ;b
To: <tel:+1-201;ext=7>
m: <sip:one@a.test> , "Two" <sips:two@b.test>;expires=60,, sip:three@c.test;q=0.5
no colon
Authorization: Digest username="a,b", nonce="n"
Subject: 
 folded
X-Bytes: é
Call-ID: a{b}
Bad: <sip:a
P-Asserted-Identity: < sip:a@b.test>
Reply-To: <sip:long@host.test> <sip:c>
l: 4

END
sed -i 's/$/\r/' text
printf 'body' >>text
printf 'X-Bytes: \xff\x00\r\n' >bytes
sed -i -e '/^X-Bytes/{r bytes' -e 'd}' text

edit() { # OPTION...
  local status=0
  "$siputil" edit "$@" text >output 2>errors || status=$?
  cat errors
  [ -s output ] || { echo "nothing written, status $status" && return; }
  { diff -a text output || true; } | grep -a '^[<>]' | tr -d '\r' | LC_ALL=C sed 's/[\xff\x00]/?/g' || true
  [ "$status" -eq 0 ] || echo "status $status"
}

cat >expected <<'END'
$ --set Contact.host=h.test
< m: <sip:one@a.test> , "Two" <sips:two@b.test>;expires=60,, sip:three@c.test;q=0.5
> m: <sip:one@h.test> , "Two" <sips:two@h.test>;expires=60,, sip:three@h.test;q=0.5
$ --set m[2].port=7
< m: <sip:one@a.test> , "Two" <sips:two@b.test>;expires=60,, sip:three@c.test;q=0.5
> m: <sip:one@a.test> , "Two" <sips:two@b.test:7>;expires=60,, sip:three@c.test;q=0.5
$ --set Contact[3].displayName=Three
< m: <sip:one@a.test> , "Two" <sips:two@b.test>;expires=60,, sip:three@c.test;q=0.5
> m: <sip:one@a.test> , "Two" <sips:two@b.test>;expires=60,, Three <sip:three@c.test>;q=0.5
$ --set Contact[4].host=h
siputil: --set Contact[4].host=h: no message has that field
status 1
$ --set Contact[2].displayName=
< m: <sip:one@a.test> , "Two" <sips:two@b.test>;expires=60,, sip:three@c.test;q=0.5
> m: <sip:one@a.test> , <sips:two@b.test>;expires=60,, sip:three@c.test;q=0.5
$ --set Contact[3].uri='<sip:x@y.test;dropped>'
< m: <sip:one@a.test> , "Two" <sips:two@b.test>;expires=60,, sip:three@c.test;q=0.5
> m: <sip:one@a.test> , "Two" <sips:two@b.test>;expires=60,, sip:x@y.test;q=0.5
$ --set 'contact[2];expires=5' --set 'contact[3];expires=6'
< m: <sip:one@a.test> , "Two" <sips:two@b.test>;expires=60,, sip:three@c.test;q=0.5
> m: <sip:one@a.test> , "Two" <sips:two@b.test>;expires=5,, sip:three@c.test;q=0.5;expires=6
$ --set 'Contact[1].uri;transport=tcp' --set 'Contact[1].uri;lr'
< m: <sip:one@a.test> , "Two" <sips:two@b.test>;expires=60,, sip:three@c.test;q=0.5
> m: <sip:one@a.test;transport=tcp;lr> , "Two" <sips:two@b.test>;expires=60,, sip:three@c.test;q=0.5
$ --set 'Contact[3].uri;lr'
< m: <sip:one@a.test> , "Two" <sips:two@b.test>;expires=60,, sip:three@c.test;q=0.5
> m: <sip:one@a.test> , "Two" <sips:two@b.test>;expires=60,, <sip:three@c.test;lr>;q=0.5
$ --set Contact[3].user='a;b'
< m: <sip:one@a.test> , "Two" <sips:two@b.test>;expires=60,, sip:three@c.test;q=0.5
> m: <sip:one@a.test> , "Two" <sips:two@b.test>;expires=60,, <sip:a;b@c.test>;q=0.5
$ --set Contact[3].value='sip:a,sip:b'
siputil: text:7: --set Contact[3].value=sip:a,sip:b: the field would then read differently
status 1
$ --set From.host=new.test
< f: "Bob, <\"B\">"   <sip:bob:pw@old.test:05060;x;y=1?subject=hi>;a=1 ; TAG=t ;b
> f: "Bob, <\"B\">"   <sip:bob:pw@new.test:5060;x;y=1?subject=hi>;a=1 ; TAG=t ;b
$ --set From.port=0 --set From.user= --set From.scheme=sips
< f: "Bob, <\"B\">"   <sip:bob:pw@old.test:05060;x;y=1?subject=hi>;a=1 ; TAG=t ;b
> f: "Bob, <\"B\">"   <sips:old.test;x;y=1?subject=hi>;a=1 ; TAG=t ;b
$ --set 'From.uri;y=2' --set 'From;tag=new' --set 'From;c'
< f: "Bob, <\"B\">"   <sip:bob:pw@old.test:05060;x;y=1?subject=hi>;a=1 ; TAG=t ;b
> f: "Bob, <\"B\">"   <sip:bob:pw@old.test:05060;x;y=2?subject=hi>;a=1 ; tag=new ;b;c
$ --set From.user='a b' --set From.host=c.test
siputil: text:5: --set From.user=a b: text is left after the user [SipAddress::setUser | trailing characters in user]
status 1
$ --set From.phoneNumber=5
siputil: text:5: --set From.phoneNumber=5: a SIP address has no phoneNumber
status 1
$ --set To.phoneNumber=+1-202 --set To.isub=1
siputil: text:6: --set To.isub=1: the text is malformed
status 1
$ --set To.host=a
siputil: text:6: --set To.host=a: a tel address has no host
status 1
$ --set To.ext=x
siputil: text:6: --set To.ext=x: the text does not begin with a extension [TelAddress::setExtension | parsing failed]
status 1
$ --set Via.host=v.test
< v: SIP/2.0/UDP one.test:5060;branch=z9hG4bK1,
<  SIP/2.0/TCP [::1];branch=z9hG4bK2;rport
< VIA : SIP/2.0/UDP three.test
> v: SIP/2.0/UDP v.test:5060;branch=z9hG4bK1,
>  SIP/2.0/TCP v.test;branch=z9hG4bK2;rport
> VIA : SIP/2.0/UDP v.test
$ --set Via[2].port=5 --set Via[3].port=6
<  SIP/2.0/TCP [::1];branch=z9hG4bK2;rport
< VIA : SIP/2.0/UDP three.test
>  SIP/2.0/TCP [::1]:5;branch=z9hG4bK2;rport
> VIA : SIP/2.0/UDP three.test:6
$ --set Via[1].user=a
siputil: text:2: --set Via[1].user=a: the sent-by of a Via has a host and a port
status 1
$ --set 'v[1];branch=z9hG4bK9' --set 'Via[3];rport'
< v: SIP/2.0/UDP one.test:5060;branch=z9hG4bK1,
> v: SIP/2.0/UDP one.test:5060;branch=z9hG4bK9,
< VIA : SIP/2.0/UDP three.test
> VIA : SIP/2.0/UDP three.test;rport
$ --set 'Authorization;nonce="m"' --set 'Authorization;realm="r,s"'
< Authorization: Digest username="a,b", nonce="n"
> Authorization: Digest username="a,b", nonce="m", realm="r,s"
$ --set Call-ID.value=c
< Call-ID: a{b}
> Call-ID: c
$ --set Bad.host=c
siputil: text:14: --set Bad.host=c: valid SIP that this library does not take apart: the text of an extension header (RFC 3261, 25.1)
  Bad: <sip:a
             ^
status 1
$ --set P-Asserted-Identity.host=c
siputil: text:15: --set P-Asserted-Identity.host=c: the scheme is missing [SipAddress::parseURI - couldn't find scheme]
  P-Asserted-Identity: < sip:a@b.test>
                        ^
status 1
$ --set Reply-To.host=c
siputil: text:16: --set Reply-To.host=c: the value has several addresses
status 1
$ --set X-Bytes.value=c
siputil: text:12: --set X-Bytes.value=c: a byte that no value has outside quotes: byte 0xff is not allowed here [SipHeaderMatchIHeaderChars::doMatch - bad character 0xff]
  X-Bytes: \xff\x00
           ^
status 1
$ --set CSeq.value='1 INVITE'
siputil: --set CSeq.value=1 INVITE: no message has that field
status 1
$ --set-header Via='SIP/2.0/UDP z.test'
< v: SIP/2.0/UDP one.test:5060;branch=z9hG4bK1,
<  SIP/2.0/TCP [::1];branch=z9hG4bK2;rport
< VIA : SIP/2.0/UDP three.test
> v: SIP/2.0/UDP z.test
$ --set-header v[2]='SIP/2.0/UDP y.test, SIP/2.0/UDP z.test' --set Via[3].port=8
<  SIP/2.0/TCP [::1];branch=z9hG4bK2;rport
>  SIP/2.0/UDP y.test, SIP/2.0/UDP z.test:8
$ --set-header Subject='new text' --set-header X-Bytes=
<  folded
< X-Bytes: ??
>  new text
> X-Bytes: 
$ --set-header Subject='free (text'
<  folded
>  free (text
$ --set-header To='<sip:a' --add-header 'Contcat=<'
siputil: --set-header To=<sip:a: something other than ">" follows the URI: the text ends here [SipAddress::parseURI missing '>']
  To: <sip:a
            ^
siputil: note: 'Contcat' is no known field, is it 'Contact'?
nothing written, status 1
$ --add-header Via='SIP/2.0/UDP a.test' --add-header v='SIP/2.0/UDP b.test' --set Via[1].port=1
> v: SIP/2.0/UDP b.test:1
> Via: SIP/2.0/UDP a.test
$ --add-header X-New=1 --add-header Route='<sip:r.test;lr>' --set X-New.value=2
> X-New: 2
> Route: <sip:r.test;lr>
$ --remove-header Via --remove-header X-None
< v: SIP/2.0/UDP one.test:5060;branch=z9hG4bK1,
<  SIP/2.0/TCP [::1];branch=z9hG4bK2;rport
< VIA : SIP/2.0/UDP three.test
$ --remove-header Via[1] --remove-header Via[2]
< v: SIP/2.0/UDP one.test:5060;branch=z9hG4bK1,
> v:
< VIA : SIP/2.0/UDP three.test
$ --remove-header Contact[2] --remove-header Contact[2]
< m: <sip:one@a.test> , "Two" <sips:two@b.test>;expires=60,, sip:three@c.test;q=0.5
> m: <sip:one@a.test> ,
$ --remove-header Contact[1] --remove-header Contact[1] --remove-header Contact[1]
< m: <sip:one@a.test> , "Two" <sips:two@b.test>;expires=60,, sip:three@c.test;q=0.5
$ --remove-header Via --add-header Via='SIP/2.0/UDP n.test'
< v: SIP/2.0/UDP one.test:5060;branch=z9hG4bK1,
<  SIP/2.0/TCP [::1];branch=z9hG4bK2;rport
< VIA : SIP/2.0/UDP three.test
> Via: SIP/2.0/UDP n.test
$ --remove-header Via --set Via.host=a
siputil: --set Via.host=a: no message has that field
< v: SIP/2.0/UDP one.test:5060;branch=z9hG4bK1,
<  SIP/2.0/TCP [::1];branch=z9hG4bK2;rport
< VIA : SIP/2.0/UDP three.test
status 1
$ --add-header X-Name=$'a\nb'
siputil: --add-header X-Name=a\x0ab: expected no line end
nothing written, status 2
$ --set-header 'X: a=b'
siputil: --set-header X: a=b: expected the name of a header field
nothing written, status 2
$ --set 'From.usr=b'
siputil: --set From.usr=b: expected FIELD.PIECE=VALUE with one of displayName, scheme, user, host, port, uri, phoneNumber, isub, ext, phone-context, value, or FIELD;PARAMETER=VALUE
nothing written, status 2
$ --set 'From.user'
siputil: --set From.user: expected FIELD.PIECE=VALUE with one of displayName, scheme, user, host, port, uri, phoneNumber, isub, ext, phone-context, value, or FIELD;PARAMETER=VALUE
nothing written, status 2
$ --set From.port=65536
siputil: --set From.port=65536: expected a number from 0 to 65535
nothing written, status 2
$ --set Via[0].host=a
siputil: --set Via[0].host=a: expected a number from 1 in brackets
nothing written, status 2
$ --set 'Via;=a'
siputil: text:2: --set Via;=a: an empty name [SipParameterList::setParameter name is empty]
status 1
$ --remove-header 'Via[1'
siputil: --remove-header Via[1: expected a number from 1 in brackets
nothing written, status 2
$ --body none
siputil: --body: none: No such file or directory
nothing written, status 2
END

grep -a '^\$ ' expected | while IFS= read -r line; do
  echo "$line"
  eval "edit ${line#??}"
done | diff -a -u expected -

# Without edits a text is the same: each sample, with other line ends, and all in one file.
for sample in "$data"/messages/*.sip; do
  "$siputil" edit "$sample" | cmp "$sample" -
  tr -d '\r' <"$sample" >lf
  "$siputil" edit lf | cmp lf -
  { printf '\r\n\n' && cat "$sample" && printf '\r\n\n\n\r\n'; } >>all
done
head -c -3 text >>all
"$siputil" edit <all >output
cmp all output
"$siputil" edit all --remove-header X-None | cmp all -

# A new body has its length: in a compact field, in a new one, after a header without an end, and
# with CRLF counted where the text was saved with LF.
printf 'a\nb' >body
for start in 'A sip:a SIP/2.0\r\nl:  9\r\nL: 9\r\nTo: a\r\n\r\nold' 'A sip:a SIP/2.0\nTo: a\n\n' \
  'A sip:a SIP/2.0\r\nTo: a' 'A sip:a SIP/2.0\r\n\r' 'A sip:a SIP/2.0' 'A sip:a SIP/2.0\r\n \r\nX' \
  'A sip:a SIP/2.0\r\nl: 0\r\n\r\nB sip:b SIP/2.0\r\nl: 1\n\nx'; do
  printf '%b' "$start" | "$siputil" edit --body body | sed 's/\r/\\r/' && echo '.'
done | diff -u <(cat <<'END'
A sip:a SIP/2.0\r
l:  3\r
To: a\r
\r
a
b.
A sip:a SIP/2.0
To: a
Content-Length: 4

a
b.
A sip:a SIP/2.0\r
To: a\r
Content-Length: 3\r
\r
a
b.
A sip:a SIP/2.0\r
Content-Length: 3\r
\r
a
b.
A sip:a SIP/2.0\r
Content-Length: 3\r
\r
a
b.
A sip:a SIP/2.0\r
 \r
X\r
Content-Length: 3\r
\r
a
b.
A sip:a SIP/2.0\r
l: 3\r
\r
a
b\r
B sip:b SIP/2.0\r
l: 3

a
b.
END
) -

# All messages are written, one that refuses an edit as it came. Start lines begin a line.
printf '12:00 %s\n' 'A sip:a SIP/2.0' 'To: <sip:a@b;x>' 'l: 1' '' x >log
sed 's/<.*>/*/' log >>log2
cat log2 log >log3
{ "$siputil" edit --find log3 --set To.host=c.test --set To.user= --set To.port=1 2>errors || printf '\nstatus %s\n' $?; } |
  cat - errors |
  diff -u <(cat <<'END'
A sip:a SIP/2.0
To: *
l: 1

x
A sip:a SIP/2.0
To: <sip:c.test:1;x>
l: 1

x
status 1
siputil: log3:2: --set To.host=c.test: the address is `*`, which has no pieces [SipAddress::setHost | cannot modify wildcard address]
END
) -
printf '%s\n' 'udp 192.0.2.1 5060 192.0.2.2 5060 ACK sip:a SIP/2.0\r\nTo: *\r\nl: 1\r\n\r\nx' \
  'udp 192.0.2.1 5060 192.0.2.2 5060 BYE sip:b SIP/2.0\r\nTo: sip:a\r\nl: 0\r\n\r\n' |
  "$makeCapture" >capture
{ "$siputil" edit capture --set To.host=c.test 2>errors || printf '\nstatus %s\n' $?; } |
  cat - errors | tr -d '\r' | diff -u <(cat <<'END'
ACK sip:a SIP/2.0
To: *
l: 1

x
BYE sip:b SIP/2.0
To: sip:c.test
l: 0


status 1
siputil: capture: 2024-02-29T23:59:59.999999Z 192.0.2.1:5060 -> 192.0.2.2:5060 UDP frame 1: --set To.host=c.test: the address is `*`, which has no pieces [SipAddress::setHost | cannot modify wildcard address]
END
) -

# Hostile messages.
times() { head -c "$1" /dev/zero | sed "s/\\x00/$2/g"; }
{ printf 'A sip:a SIP/2.0\r\nVia:' && times 100000 'SIP\/2.0\/UDP a,' && printf '\r\n\r\n'; } >hostile
"$siputil" edit --set Via.port=7 --set 'Via[99999].host=b' --remove-header 'Via[100000]' hostile >output
[ "$(grep -o 'a:7' output | wc -l)" -eq 99998 ] && grep -q 'a:7,SIP/2.0/UDP b:7,.$' output
{ printf 'A sip:a SIP/2.0\r\n' && times 60000 'Via: SIP\/2.0\/UDP a\r\n' && printf '\r\n'; } >hostile
"$siputil" edit hostile --add-header Via='SIP/2.0/UDP b' --set Via.port=7 --remove-header 'Via[1]' >output
[ "$(grep -c 'a:7' output)" -eq 60000 ]
{ printf 'A sip:a SIP/2.0\r\nTo: <sip:' && times 1000000 '<' && printf '>\r\n\r\n'; } >hostile
{ "$siputil" edit --set To.host=b hostile 2>errors || [ $? -eq 1 ]; } | cmp hostile -
[ -s errors ]
