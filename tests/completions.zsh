#!/usr/bin/env zsh
# Usage: completions.zsh SIPUTIL SHARE_DIRECTORY
# Types words in a shell and completes them with the tabulator. There siputil prints its words in
# place of running.
emulate -R zsh
set -eu
zmodload zsh/zpty

work=$(mktemp -d)
zpty shell env -i HOME=$work TERM=dumb zsh -f -i
trap 'zpty -d shell; rm -rf $work' EXIT
zpty -w shell "cd $work; PROMPT= fpath=(${(q)2:a} \$fpath); autoload -Uz compinit; compinit -D -u
  siputil() { [[ \$1 == --complete ]] && ${(q)1:a} \"\$@\" || print -r -- \"<\${(j:|:)@}>\" }
  touch file.sip; unsetopt zle_bracketed_paste; print ready\$((1))"
zpty -r shell output '*ready1*'

# Completes and runs a line, and compares the words.
completes() { # LINE WORD...
  zpty -w shell "siputil $1"$'\t'
  zpty -r shell output '*<*>*'
  local words=${${output##*<}%%>*} expected=${(j:|:)@[2,-1]}
  [[ $words == $expected ]] || { print -r -- "$1 became $words, expected $expected"; exit 1 }
}
completes mess message
completes 'message fi' message file.sip
completes 'message --foll' message --follow
completes 'message --only Allow-E' message --only Allow-Events
completes 'check --color=al' check --color=always
completes 'message --only Via f' message --only Via file.sip
completes "address 'a;b' --set hos" address 'a;b' --set host=
