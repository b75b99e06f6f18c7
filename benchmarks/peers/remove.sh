# shellcheck shell=bash disable=SC2154
# Removing big trees for good.

run_remove() {
    # 85 in 100 entries of a tree are files.
    local folder=$HOME/.cache/bench files=$((200000 / scale)) entries
    entries=$((files * 100 / 85))
    step "removing trees of $files files in $((entries - files)) folders"
    local make="korvane-test-data tree $folder/tree $entries"
    mkdir "$folder"
    $make
    korvane-test-data items "$work/tree.json" "$folder"
    rm -rf -- "$folder/tree"
    measure removal --warmup 1 --prepare "$make" \
        -n 'korvane clean --mode permanent' \
        "korvane clean --items $work/tree.json --mode permanent --select all --yes" \
        -n 'rm -rf' "rm -rf $folder/tree"
    table removal
    rm -rf -- "$folder" "$HOME/.local"
}
