# shellcheck shell=bash disable=SC2154
# Sizing and walking a big tree.
programs[gdu]=gdu

run_walk() {
    local tree=$work/tree entries=$((500000 / scale))
    step "making a tree of $entries entries"
    korvane-test-data tree "$tree" "$entries"
    step "sizing and walking it"
    measure sizing --warmup 1 \
        -n 'korvane measure' "korvane measure $tree" \
        -n 'du -s' "du -s $tree" \
        -n 'gdu -np' "gdu -np $tree"
    measure walking --warmup 1 \
        -n 'korvane walk' "korvane walk --include-hidden $tree" \
        -n 'find -printf' "find $tree -printf '%s %T@ %p\\n'"
    table sizing
    table walking
    peak korvane measure "$tree"
    peak korvane walk --include-hidden "$tree"
    rm -rf -- "$tree"
}
