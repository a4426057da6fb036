# siputil.bash - completions of siputil for bash: commands and options as --help lists them.
# shellcheck shell=bash

_siputil() {
  local word=${COMP_WORDS[COMP_CWORD]} program=${COMP_WORDS[0]}
  COMPREPLY=()
  if [ "$COMP_CWORD" -eq 1 ]; then
    mapfile -t COMPREPLY < <(compgen -W "--help --version
      $("$program" --help 2>/dev/null | sed '1,/ommands:/d' | awk '/^ +[a-z]/ { print $1 }')" -- "$word")
  elif [[ $word == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W \
      "$("$program" "${COMP_WORDS[1]}" --help 2>/dev/null | grep -o -- '--[a-z][a-z-]*')" -- "$word")
  fi
}

# Texts may be anything, and files are wanted where a command takes them.
complete -o default -F _siputil siputil
