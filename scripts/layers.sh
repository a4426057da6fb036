#!/usr/bin/env bash
# Usage: layers.sh
# Checks that includes point one way, as docs/architecture.md draws it. A folder may include itself
# and the folders that are listed for it below. A header of the library, or the source of that name,
# may include headers of its own row and of the rows above it. A room is in the row whose headers it
# may include at most. Headers must not include each other in a circle. A class that an exported
# header only names must be exported or in the library's namespace.
set -euo pipefail

cd "$(dirname "$0")/.."
src=sip_utility/src inc=sip_utility/inc
folders="platform/inc:
  platform/host: platform/inc
  $inc: platform/inc/imsdpl.h platform/inc/imsvarn.h
  $src/base: platform/inc $inc
  $src/grammar: $src/base $inc
  $src/params: $src/grammar $src/base $inc
  $src/address: $src/params $src/grammar $src/base $inc
  $src/multipart: $src/base platform/inc $inc
  $src: $src/multipart $src/address $src/params $src/grammar $src/base platform/inc $inc
  message/inc: $inc
  message/src: message/inc $inc
  tool/text: message/inc $inc
  tool/input: tool/text
  tool/finding: tool/text
  tool/packets: tool/finding tool/input tool/text
  tool/fields: tool/text $inc platform/inc platform/host/hostControl.h
  tool/output: tool/packets tool/fields tool/text $inc platform/inc
  tool/selection: tool/output tool/fields tool/packets tool/finding tool/input tool/text
  tool/commands: tool/selection tool/output tool/fields tool/packets tool/finding tool/input tool/text $inc platform/inc
  tool: tool/commands tool/text
  fuzz: message/inc tool/text tool/finding $inc platform/inc platform/host/hostControl.h tests/support
  examples: $inc platform/inc
  bench: $inc platform/inc"
rows='wySipExport
  wySipString wySipCxx base grammar
  wySipCommon wySipInit wySipMatch wyTelAddressMatch
  wySipPort wySipParam params address
  wySipAddress wyTelAddress
  wySipHeaderMatch
  wySipHeader
  wySipUtils
  sipMultipartmessagebody sipMultipartmessagebodyUtility multipart'

includes=$(scripts/sources.sh '*.h' '*.cpp' |
  xargs -0 grep -H '^ *# *include "' | sed 's/:[^"]*"/ /; s/".*//')
headers=$(scripts/sources.sh '*.h' | tr '\0' '\n')

awk -v folders="$folders" -v rows="$rows" -v headers="$headers" '
  BEGIN {
    for (n = split(folders, line, "\n"); n > 0; --n) {
      split(line[n], part, ":")
      gsub(/ /, "", part[1])
      allowed[part[1]] = part[2] " " part[1] " "
    }
    for (n = split(rows, line, "\n"); n > 0; --n)
      for (m = split(line[n], name, " "); m > 0; --m) row[name[m]] = n
    for (n = split(headers, line, "\n"); n > 0; --n) {
      name[1] = line[n]; sub(/.*\//, "", name[1])
      home[name[1]] = home[name[1]] " " line[n]
    }
  }
  function folder(path) { sub(/\/[^\/]*$/, "", path); return path }
  # The row of a room, or of the family whose name the file begins with.
  function rowOf(path, parts, n, name, most) {
    n = split(path, parts, "/")
    if (parts[n - 1] in row) return row[parts[n - 1]]
    most = ""
    for (name in row) if (index(parts[n], name) == 1 && length(name) > length(most)) most = name
    return row[most]
  }
  function wrong(words) { print "layers: " $1 " includes \"" $2 "\": " words; failed = 1 }
  folder($1) in allowed {
    from = folder($1); file = $2; sub(/.*\//, "", file)
    found = 0
    for (n = split(home[file], place, " "); n > 0; --n)
      found += index(allowed[from], " " folder(place[n]) " ") || index(allowed[from], " " place[n] " ")
    if (!found) wrong("not a folder below")
    if (from ~ /^sip_utility/) {
      for (n = split(home[file], place, " "); n > 0; --n)
        if (place[n] ~ /^sip_utility/ && rowOf(place[n]) > rowOf($1)) wrong("not in a row above")
      if (!rowOf($1)) wrong("in no row")
    }
  }
  END { exit failed }' <<<"$includes"

awk '$1 ~ /^(platform|sip_utility|message|tool).*\.h$/ {sub(/.*\//, "", $1); sub(/.*\//, "", $2); print}' \
  <<<"$includes" | tsort >/dev/null

awk '
  /^class SIPUTILITY_EXPORT / { exported[$3 ";"] }
  /^namespace siputility / { private = 1 }
  /^}/ { private = 0 }
  /^(class|struct) [A-Za-z]+;|^ *friend [a-z]+ [A-Za-z]+;/ && !private { named[$NF] = FILENAME }
  END {
    for (name in named)
      if (!(name in exported)) {
        print "layers: " named[name] " names a global " name
        failed = 1
      }
    exit failed
  }' sip_utility/inc/*.h
