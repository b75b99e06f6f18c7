#!/usr/bin/env -S zsh -f
# answers.zsh COMPLETIONS: as answers.bash. Completion only runs in an editor on a terminal, so a
# second shell is given one, and prints what it would offer.
emulate -L zsh
zmodload zsh/zpty
local line output folder=${1:A:h}
zpty shell zsh -f -i
zpty -w shell "PS1= PS2= RPS1=; stty -echo -onlcr cols 1000; fpath=(${(q)folder} \$fpath)"
zpty -w shell 'autoload -Uz compinit && compinit -D -u
compadd() {
  local -a _offered=()
  if (( ${@[1,(i)(-|--)]}[(I)-[OAD]] )); then builtin compadd "$@"; return; fi
  builtin compadd -O _offered "$@"
  (( $#_offered )) && print -l -- "<"${^_offered}">"
  builtin compadd "$@"
}
_asked() { _main_complete; compstate[insert]=; compstate[list]=; print "=end=" }
zle -C asked complete-word _asked
bindkey "^I" asked
bindkey "^J" kill-whole-line
print "=ready="'
zpty -r shell output $'*\n=ready=*'
while IFS= read -r line; do
  zpty -n -w shell $'\n'"$line"$'\t'
  zpty -r shell output '*=end=*'
  for candidate in ${(f)output}; do
    [[ $candidate == *'<'*'>'* ]] && print -r -- "$line"$'\t'"${${candidate#*<}%%>*}"
  done
done
zpty -d shell
