#!/usr/bin/env -S fish --no-config
# answers.fish COMPLETIONS: as answers.bash.
source $argv[1]
while read -l line
    for candidate in (complete -C $line)
        printf '%s\t%s\n' $line (string split -f 1 \t -- $candidate)
    end
end
