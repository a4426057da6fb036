#!/usr/bin/env bash
# Usage: manual.sh SIPUTIL SHARE_DIRECTORY
# Compares the manual page and the completions for bash with the commands and options that the
# program's --help lists. The page has the first example of each command, and names files that are
# installed.
set -euo pipefail

siputil=$1
examples=$(mktemp)
trap 'rm -f "$examples"' EXIT
listed_commands() { "$siputil" --help | sed '1,/ommands:/d' | awk '/^ +[a-z]/ { print $1 }'; }
listed_options() { "$siputil" "$@" --help | grep -o -- '--[a-z][a-z-]*'; }
section() { sed -n "/^\.SH $1/,/^\.SH/p" "$2/siputil.1" | sed 's/\\-/-/g'; }

diff --label help --label 'manual page' -u <(listed_commands | sort) \
  <(section COMMANDS "$2" | sed -n '/^\.TP/{n;s/^\.[BIR]* "\{0,1\}\([a-z-]*\).*/\1/p}' | sort)

mapfile -t commands < <(listed_commands)
diff --label help --label 'manual page' -u \
  <({ listed_options && for each in "${commands[@]}"; do listed_options "$each"; done; } | sort -u) \
  <(section OPTIONS "$2" | grep -A 1 '^\.TP' | grep -o -- '--[a-z][a-z-]*' | sort -u)

section EXAMPLES "$2" | sed "s/\\\\(aq/'/g" >"$examples"
for each in "${commands[@]}"; do
  first=$("$siputil" "$each" --help | sed -n '/^Examples:/{n;s/^  //p}')
  grep -qFx -- "$first" "$examples" || { echo "the manual page lacks: $first"; exit 1; }
done
section FILES "$2" | sed -n 's/^\.I //p' | while IFS= read -r file; do
  [ -r "$(dirname "$siputil")/../$file" ] || { echo "$file is not installed"; exit 1; }
done

completions() { # COMMAND_WORD...
  COMP_WORDS=("$siputil" "$@") COMP_CWORD=$#
  _siputil
  printf '%s\n' "${COMPREPLY[@]}" | sort
}
compopt() { echo "$*"; }
# shellcheck source=tool/share/siputil.bash
source "$2/siputil.bash"
diff -u <({ listed_commands && listed_options; } | sort -u) <(completions '')
diff -u <(echo message) <(completions mess)
diff -u <(echo --only) <(completions message file --on)
diff -u <(echo always) <(completions message --color = al)
diff -u <(printf '%s\n' Record-Route Recv-Info) <(completions message --only Rec)
diff -u <(printf '%s\n' '-o nospace' phone-context= phoneNumber=) <(completions tel --set ph)
diff -u <(echo) <(completions check nofile)
