# shellcheck shell=bash disable=SC2154
# Moving many items to the Bin.
programs[gio]=libglib2.0-bin
programs[trash-put]=trash-cli

run_bin() {
    local folder=$HOME/.cache/bench count=$((10000 / scale)) sample=$((200 / scale)) bin=$HOME/.local
    [ "$sample" -gt 0 ] || sample=1
    step "moving $count items to the Bin"
    local files="rm -rf $folder $bin && korvane-test-data files $folder $count"
    bash -c "$files"
    korvane-test-data items "$work/items.json" "$folder"
    printf '%s\0' "$folder"/* >"$work/names"
    head -z -n "$sample" "$work/names" >"$work/sample"
    measure binning --prepare "bash -c '$files'" \
        -n 'korvane clean --mode trash' \
        "korvane clean --items $work/items.json --mode trash --select all --yes" \
        -n 'gio trash, one call' "xargs -0 -n $count -s 2000000 -a $work/names gio trash" \
        -n "trash-put, $sample calls" "xargs -0 -n 1 -a $work/sample trash-put"
    table binning
    jq -r --argjson factor "$((count / sample))" --argjson count "$count" \
        '.results | "trash-put, one call an item, scaled from the sample to \($count) items: " +
         "\(.[2].median * $factor * 10 | round / 10) s, " +
         "\(.[2].median * $factor / .[0].median | round)x"' "$work/binning.json"
    rm -rf -- "$folder" "$bin"

    count=$((100000 / scale))
    step "emptying a Bin of $count files"
    files="rm -rf $bin && mkdir -p $bin/share/Trash/info &&
           korvane-test-data files $bin/share/Trash/files $count && sync"
    measure emptying --prepare "bash -c '$files'" \
        -n 'rm -rf' "rm -rf $bin/share/Trash" \
        -n 'korvane bin empty' "korvane bin empty --yes"
    table emptying
    rm -rf -- "$bin"
}
