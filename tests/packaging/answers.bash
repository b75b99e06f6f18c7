#!/usr/bin/env bash
# answers.bash COMPLETIONS: for each command line on stdin, what bash would offer behind it, one
# "LINE<tab>CANDIDATE" a line.
set -u
# Outside of a completion there is nothing to set an option of.
compopt() { :; }
source "$1"
while IFS= read -r line; do
    read -ra COMP_WORDS <<<"$line"
    [[ $line != *' ' ]] || COMP_WORDS+=('')
    COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
    COMPREPLY=()
    _korvane korvane "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD - 1]}"
    [ "${#COMPREPLY[@]}" -eq 0 ] || printf "$line\t%s\n" "${COMPREPLY[@]}"
done
