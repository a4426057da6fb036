# siputil.bash - completions of siputil for bash, which siputil itself finds.
# shellcheck shell=bash

_siputil() {
  mapfile -t COMPREPLY < <("${COMP_WORDS[0]}" --complete "${COMP_WORDS[@]:1:COMP_CWORD}" 2>/dev/null |
    cut -f 1)
  # A value or a piece follows.
  [[ ${COMPREPLY[0]-} != *[.=] ]] || compopt -o nospace
}

# Texts may be anything, and files are wanted where a command takes them.
complete -o default -F _siputil siputil
