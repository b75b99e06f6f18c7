# fish completion for korvane

# Succeeds when the words before the cursor begin with these.
function __korvane_at
    set -l words (commandline -opc)
    set -e words[1]
    set -l length (count $argv)
    test $length -eq 0
    and return
    test (count $words) -ge $length
    and test "$words[1..$length]" = "$argv"
end

# The same, when nothing else but options follows.
function __korvane_ends_at
    __korvane_at $argv
    or return
    set -l words (commandline -opc)
    not string match -qv -- '-*' $words[(math (count $argv) + 2)..]
end

# Succeeds when one of these tools was named.
function __korvane_with
    set -l words (commandline -opc)
    for tool in $argv
        contains -- $tool $words
        and return
    end
    return 1
end

# What korvane lists: an id, and behind two blanks what it is.
function __korvane_listed
    command korvane $argv 2>/dev/null | string replace -rf '^(\S+)\s+(.*)' '$1\t$2'
end

function __korvane_tools
    printf '%s\t%s\n' \
        smart-scan 'Several tools together' \
        cache-cleaner 'Caches of programs and browsers' \
        browser-cache 'Caches of browsers' \
        developer 'What development tools can make again' \
        system-files 'Large extras of the system' \
        old-files 'What was not changed for long' \
        orphaned-files 'Leftovers of programs that are gone' \
        downloads 'What is in the Downloads folder' \
        attachments 'What mail and messages downloaded' \
        ios-backup 'Backups of phones and tablets' \
        custom-rules 'Places of your own choice' \
        trash 'The Bins of all disks' \
        time-machine 'Local snapshots' \
        icloud-cleanup 'Files kept in the cloud' \
        app-footprint 'What each program occupies' \
        duplicate-finder 'Identical files in a folder' \
        similar-images 'Pictures in a folder that look alike' \
        large-files 'The largest files in a folder' \
        uninstaller 'A program and what belongs to it'
end

function __korvane_command
    complete -c korvane -n __korvane_ends_at -a $argv[1] -d $argv[2]
end

# __korvane_group GROUP COMMAND DESCRIPTION…
function __korvane_group
    set -l group $argv[1]
    complete -c korvane -n "__korvane_ends_at $group" -s h -l help -d 'Describe the command'
    for i in (seq 2 2 (count $argv))
        complete -c korvane -n "__korvane_ends_at $group" -a $argv[$i] -d $argv[(math $i + 1)]
    end
end

# __korvane_option COMMAND OPTION ARGUMENTS-OF-COMPLETE…
function __korvane_option
    complete -c korvane -n "__korvane_at $argv[1]" -l $argv[2] $argv[3..]
end

function __korvane_leaf
    __korvane_option $argv[1] help -s h -d 'Describe the command'
    __korvane_option $argv[1] json -d 'Print one JSON document'
    __korvane_option $argv[1] no-progress -d 'Show no progress line'
end

complete -c korvane -f
complete -c korvane -n __korvane_ends_at -s h -l help -d 'Describe korvane'
complete -c korvane -n __korvane_ends_at -l version -d 'Print the version'

__korvane_command tools 'List the tools that can scan'
__korvane_command scan 'Find what can be removed; touches nothing'
__korvane_command clean 'Scan, show what will go, ask, and remove it'
__korvane_command bin 'The Bins of all disks'
__korvane_command check 'Would Korvane ever remove this? Touches nothing'
__korvane_command protect 'Paths that must never be removed'
__korvane_command restore 'Put items back from the Bin'
__korvane_command audit 'The log of everything removed and restored'
__korvane_command usage 'What the entries of a folder take'
__korvane_command window 'Open the window'
__korvane_command walk 'Visit a folder tree'
__korvane_command measure 'How much paths occupy'
__korvane_command find-folders 'Folders of given names, sized'
__korvane_command largest 'The largest files below a folder'
__korvane_command catalogue 'Every location that may ever be proposed, and why'
__korvane_command access 'Locations of the catalogue that cannot be read'
__korvane_command rules 'Places of your own choice to look at'
__korvane_command settings 'Read and change the preferences'
__korvane_command remove-privileged 'Delete with administrator rights'
__korvane_command update 'Look for a newer Korvane and install it'
__korvane_command demo 'The whole job on a sample home'

__korvane_group audit \
    list 'Show the operations, newest first' \
    export 'Save the operations as CSV or JSON' \
    statistics 'What was reclaimed, by day or week' \
    verify 'Check the hash chain' \
    acknowledge 'Record why the chain is broken' \
    folder 'Print the folder of the log files'
__korvane_group bin \
    list 'Show what each Bin holds' \
    empty 'Delete what is in the Bins, for good'
__korvane_group protect \
    list 'Show the protected paths' \
    add 'Protect a path and everything inside it' \
    remove 'Stop protecting a path'
__korvane_group rules \
    list 'Show your rules' \
    add 'Add a rule' \
    remove 'Drop a rule; removes no files' \
    preset 'Add a ready set of rules'
__korvane_group settings \
    get 'Print a setting' \
    set 'Change a setting'
__korvane_group update \
    check 'Say whether there is a newer release' \
    install 'Install the newest release and start it'

for leaf in tools scan clean 'bin list' 'bin empty' check 'protect list' 'protect add' \
        'protect remove' restore 'audit list' 'audit export' 'audit statistics' 'audit verify' \
        'audit acknowledge' 'audit folder' usage walk measure find-folders largest catalogue \
        access 'rules list' 'rules add' 'rules remove' 'rules preset' 'settings get' \
        'settings set' remove-privileged 'update check' 'update install' window demo
    __korvane_leaf $leaf
end

complete -c korvane -n '__korvane_ends_at window' -a '(__korvane_tools)'
complete -c korvane -n '__korvane_ends_at scan' -a '(__korvane_tools)'
complete -c korvane -n '__korvane_at clean' -a '(__korvane_tools)'
for command in scan clean
    set -l at "__korvane_at $command; and __korvane_with"
    complete -c korvane -n "$at duplicate-finder similar-images large-files" \
        -a '(__fish_complete_directories)'
    complete -c korvane -n "$at uninstaller" -F
    # A list is completed at its last comma.
    __korvane_option $command scopes -x -d 'What a Smart Scan looks for' \
        -a '(__fish_append , caches browsers oldFiles developer leftovers systemFiles)'
    __korvane_option $command minimum-bytes -x -d 'Leave smaller files out'
    __korvane_option $command limit -x -d 'At most so many files'
    __korvane_option $command threshold -x -d 'How many of 64 bits of two pictures may differ'
end
__korvane_option clean items -r -F -d 'Clean the items of a saved scan'
__korvane_option clean mode -x -a 'trash permanent' -d 'To the Bin, or for good'
__korvane_option clean select -x -a 'preselected all none' -d 'Which items'
__korvane_option clean path -r -F -d 'Also the item at this path'
for command in clean 'bin empty' remove-privileged
    __korvane_option $command yes -d 'Do not ask'
end

for command in check measure remove-privileged 'protect add' 'rules add' 'audit export'
    complete -c korvane -n "__korvane_at $command" -F
end
for command in 'bin empty' usage walk largest demo
    complete -c korvane -n "__korvane_at $command" -a '(__fish_complete_directories)'
end

__korvane_option 'protect add' note -x -d 'Text shown beside it'
complete -c korvane -n '__korvane_at protect remove' -a '(__korvane_listed protect list)'
__korvane_option restore all -d 'Everything that is still in the Bin'
complete -c korvane -n '__korvane_at restore' -a '(__korvane_listed restore)'

for command in 'audit list' 'audit export'
    __korvane_option $command query -x -d 'Only with this in a path or module'
    __korvane_option $command module -x -a '(__korvane_tools)' -d 'Only of this scanner'
end
__korvane_option 'audit statistics' period -x -a 'daily weekly' -d '30 days or 12 weeks'
__korvane_option 'audit acknowledge' reason -x -d 'What happened'

__korvane_option usage treemap -x -d 'Lay the sizes out in this room, like 800x600'
__korvane_option usage svg -r -F -d 'Draw the treemap into this file'
for command in usage walk
    __korvane_option $command include-hidden -d 'Hidden names too'
end
__korvane_option walk follow-symlinks -d 'Enter folders through links'
__korvane_option walk max-depth -x -d 'Deepest depth whose folders are entered'
__korvane_option walk prune -x -d 'Never enter folders of this name'
__korvane_option walk stop-after -x -d 'End after this many entries'
__korvane_option measure disk-usage -d 'Ask du instead'
__korvane_option find-folders in -x -a '(__fish_complete_directories)' -d 'Where to look'
__korvane_option largest minimum-bytes -x -d 'Leave out smaller ones'
__korvane_option largest limit -x -d 'How many at the most'
complete -c korvane -n '__korvane_ends_at catalogue' -a '(__korvane_listed catalogue)'
__korvane_option catalogue scanner -x -a '(__korvane_tools)' -d 'Only rows of this scanner'

__korvane_option 'rules add' id -x -d 'What the rule goes by'
__korvane_option 'rules add' name -x -d 'The category of what it finds'
__korvane_option 'rules add' note -x -d 'Why it is safe to remove'
__korvane_option 'rules add' risk -x -a 'low medium high' -d 'How risky (medium)'
__korvane_option 'rules add' minimum-age-days -x -d 'Only what was not changed for so many days'
__korvane_option 'rules add' enumerate-children -d 'Each thing in the folder is an item'
complete -c korvane -n '__korvane_ends_at rules remove' -a '(__korvane_listed rules list)'
complete -c korvane -n '__korvane_ends_at rules preset' -a linux

for command in get set
    complete -c korvane -n "__korvane_ends_at settings $command" -a korvane.deletionMode
end
complete -c korvane -n '__korvane_ends_at settings set korvane.deletionMode' -a 'trash permanent'
for command in check install
    __korvane_option "update $command" feed -x -d 'The https address to ask instead'
end

functions -e __korvane_command __korvane_group __korvane_option __korvane_leaf
