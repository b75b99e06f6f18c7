# bash completion for korvane                              -*- shell-script -*-

# The options of a command, beside those that every command has.
_korvane_options() {
    case $1 in
    scan) echo --scopes --minimum-bytes --limit --threshold ;;
    clean) echo --scopes --minimum-bytes --limit --threshold --items --mode --select --path --yes ;;
    'bin empty' | remove-privileged) echo --yes ;;
    'protect add') echo --note ;;
    restore) echo --all ;;
    'audit list' | 'audit export') echo --query --module ;;
    'audit statistics') echo --period ;;
    'audit acknowledge') echo --reason ;;
    usage) echo --treemap --svg --include-hidden ;;
    walk) echo --include-hidden --follow-symlinks --max-depth --prune --stop-after ;;
    measure) echo --disk-usage ;;
    find-folders) echo --in ;;
    largest) echo --minimum-bytes --limit ;;
    catalogue) echo --scanner ;;
    'rules add') echo --id --name --note --risk --minimum-age-days --enumerate-children ;;
    'update check' | 'update install') echo --feed ;;
    esac
}

_korvane_tools='smart-scan cache-cleaner browser-cache developer system-files old-files orphaned-files
    downloads attachments ios-backup custom-rules trash time-machine icloud-cleanup app-footprint
    duplicate-finder similar-images large-files uninstaller'

_korvane_screens="home $_korvane_tools disk-usage bin restore audit protected-paths catalogue settings"

_korvane_words() {
    mapfile -t COMPREPLY < <(compgen -W "$1" -- "$cur")
}

# Readline itself completes file names: it knows how to quote them.
_korvane_files() {
    compopt -o default
}

_korvane_folders() {
    compopt -o dirnames
}

# Succeeds for an option that takes a value, and offers its values.
_korvane_value() {
    case $1 in
    --mode) _korvane_words 'trash permanent' ;;
    --select) _korvane_words 'preselected all none' ;;
    --period) _korvane_words 'daily weekly' ;;
    --risk) _korvane_words 'low medium high' ;;
    --module | --scanner) _korvane_words "$_korvane_tools" ;;
    --items | --svg | --path) _korvane_files ;;
    --in) _korvane_folders ;;
    --scopes)
        local before='' scope
        [[ $cur != *,* ]] || before=${cur%,*},
        for scope in caches browsers oldFiles developer leftovers systemFiles; do
            [[ ,$before != *,$scope,* && $before$scope == "$cur"* ]] && COMPREPLY+=("$before$scope")
        done
        compopt -o nospace
        ;;
    --minimum-bytes | --limit | --threshold | --max-depth | --stop-after | --minimum-age-days) ;;
    --query | --reason | --note | --name | --id | --prune | --treemap | --feed) ;;
    *) return 1 ;;
    esac
}

# What the command itself lists first on each line: ids.
_korvane_listed() {
    _korvane_words "$(command korvane "$@" 2>/dev/null | awk '/^[^ ]/ { print $1 }')"
}

# What a word that is no option may be; the words before it are in `given`.
_korvane_argument() {
    case $1 in
    scan)
        case ${given[0]-} in
        '') _korvane_words "$_korvane_tools" ;;
        duplicate-finder | similar-images | large-files) _korvane_folders ;;
        uninstaller) _korvane_files ;;
        esac
        ;;
    clean)
        _korvane_words "$_korvane_tools"
        case " ${given[*]} " in
        *' uninstaller '*) _korvane_files ;;
        *' duplicate-finder '* | *' similar-images '* | *' large-files '*) _korvane_folders ;;
        esac
        ;;
    check | measure | remove-privileged | 'protect add' | 'rules add') _korvane_files ;;
    window) _korvane_words "$_korvane_screens" ;;
    'audit export') [ "${#given[@]}" -gt 0 ] || _korvane_files ;;
    'bin empty') _korvane_folders ;;
    usage | walk | largest | demo) [ "${#given[@]}" -gt 0 ] || _korvane_folders ;;
    catalogue) [ "${#given[@]}" -gt 0 ] || _korvane_listed catalogue ;;
    restore) _korvane_listed restore ;;
    'protect remove') _korvane_listed protect list ;;
    'rules remove') _korvane_listed rules list ;;
    'rules preset') _korvane_words linux ;;
    'settings get') _korvane_words korvane.deletionMode ;;
    'settings set')
        case ${given[0]-} in
        '') _korvane_words korvane.deletionMode ;;
        korvane.deletionMode) _korvane_words 'trash permanent' ;;
        esac
        ;;
    esac
}

_korvane() {
    # "--mode=trash" arrives as three words.
    local cur=$2 prev=$3 command=${COMP_WORDS[1]-} first=2 i
    if [[ $cur == = ]]; then
        cur=''
    elif [[ $prev == = ]]; then
        prev=${COMP_WORDS[COMP_CWORD - 2]}
    fi

    if [ "$COMP_CWORD" -eq 1 ]; then
        if [[ $cur == -* ]]; then
            _korvane_words '--help --version'
        else
            _korvane_words 'tools scan clean bin check protect restore audit usage walk measure
                find-folders largest catalogue access rules settings remove-privileged update window demo'
        fi
        return
    fi

    local commands=''
    case $command in
    audit) commands='list export statistics verify acknowledge folder' ;;
    bin) commands='list empty' ;;
    protect) commands='list add remove' ;;
    rules) commands='list add remove preset' ;;
    settings) commands='get set' ;;
    update) commands='check install' ;;
    esac
    if [ -n "$commands" ]; then
        if [ "$COMP_CWORD" -eq 2 ]; then
            [[ $cur != -* ]] || commands=--help
            _korvane_words "$commands"
            return
        fi
        command+=" ${COMP_WORDS[2]}"
        first=3
    fi

    _korvane_value "$prev" && return
    if [[ $cur == -* ]]; then
        _korvane_words "--help --json --no-progress $(_korvane_options "$command")"
        return
    fi
    local given=()
    for ((i = first; i < COMP_CWORD; i++)); do
        case ${COMP_WORDS[i]} in
        --yes | --all | --json | --no-progress | --include-hidden | --follow-symlinks) ;;
        --disk-usage | --enumerate-children) ;;
        --*)
            [ "${COMP_WORDS[i + 1]-}" != = ] || ((i++))
            ((i++))
            ;;
        *) given+=("${COMP_WORDS[i]}") ;;
        esac
    done
    _korvane_argument "$command"
}

complete -F _korvane korvane
