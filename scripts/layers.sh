#!/usr/bin/env bash
# Usage: layers.sh
# Checks that includes run downwards only, as docs/architecture.md draws it: each folder includes
# itself and what is listed for it here, an exported header those of its own row and the rows above,
# and no headers include each other in a circle. A class that an exported header only names is an
# exported one, or belongs to the library's namespace.
set -euo pipefail

cd "$(dirname "$0")/.."
folders='platform/inc:
  platform/host: platform/inc
  sip_utility/inc: platform/inc/imsvarn.h
  sip_utility/src/internal: sip_utility/inc platform/inc
  sip_utility/src: sip_utility/src/internal sip_utility/inc platform/inc
  tool: sip_utility/inc platform/inc platform/host/hostControl.h
  fuzz: tool sip_utility/inc platform/inc platform/host/hostControl.h tests/support
  examples: sip_utility/inc platform/inc
  bench: sip_utility/inc platform/inc'
rows='wySipExport wySipInit wySipCommon
  wySipString
  wySipMatch wyTelAddressMatch
  wySipPort wySipParam
  wySipHeaderMatch
  wySipAddress wyTelAddress
  wySipHeader
  wySipUtils
  sipMultipartmessagebody sipMultipartmessagebodyUtility'

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
      for (m = split(line[n], name, " "); m > 0; --m) row[name[m] ".h"] = n
    for (n = split(headers, line, "\n"); n > 0; --n) {
      name[1] = line[n]; sub(/.*\//, "", name[1])
      home[name[1]] = home[name[1]] " " line[n]
    }
  }
  function folder(path) { sub(/\/[^\/]*$/, "", path); return path }
  function wrong(words) { print "layers: " $1 " includes \"" $2 "\": " words; failed = 1 }
  folder($1) in allowed {
    from = folder($1); file = $2; sub(/.*\//, "", file)
    found = 0
    for (n = split(home[file], place, " "); n > 0; --n)
      found += index(allowed[from], " " folder(place[n]) " ") || index(allowed[from], " " place[n] " ")
    if (!found) wrong("not a folder below")
    own = $1; sub(/.*\//, "", own)
    if (from == "sip_utility/inc" && !(own in row && row[file] <= row[own])) wrong("not in a row above")
  }
  END { exit failed }' <<<"$includes"

awk '$1 ~ /^(platform|sip_utility|tool).*\.h$/ {sub(/.*\//, "", $1); sub(/.*\//, "", $2); print}' \
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
