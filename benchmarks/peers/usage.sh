# shellcheck shell=bash disable=SC2154
# Listing a folder with the size of each entry.
programs[gdu]=gdu
programs[ncdu]=ncdu

run_usage() {
    local tree=$work/usage entries=$((500000 / scale))
    step "making a tree of $entries entries"
    korvane-test-data tree "$tree" "$entries"
    step "listing it with sizes"
    measure usage --warmup 1 \
        -n 'korvane usage' "korvane usage $tree" \
        -n 'korvane usage --svg' "korvane usage $tree --svg $work/usage.svg" \
        -n 'du -d1' "du -d1 $tree" \
        -n 'gdu -np' "gdu -np $tree" \
        -n 'ncdu -0xo' "ncdu -0xo /dev/null $tree"
    table usage
    peak korvane usage "$tree"
    peak ncdu -0xo /dev/null "$tree"
    rm -rf -- "$tree"
}
