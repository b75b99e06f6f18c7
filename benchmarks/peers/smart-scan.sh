# shellcheck shell=bash disable=SC2154
# A Smart Scan of a whole home folder, beside a plain listing of it.

run_smart-scan() {
    local entries=$((300000 / scale))
    step "making a home folder of $entries entries"
    # A third is what a Smart Scan measures, the rest is what it only looks through.
    mkdir -p "$HOME"/{Documents,Projects/site,Library/Caches}
    korvane-test-data tree "$HOME/Documents/archive" $((entries / 3))
    korvane-test-data tree "$HOME/Projects/work" $((entries / 3))
    korvane-test-data tree "$HOME/Projects/site/node_modules" $((entries / 6))
    korvane-test-data tree "$HOME/Library/Caches/app" $((entries / 6))
    step "scanning it"
    measure smart-scan --warmup 1 \
        -n 'find -printf' "find $HOME -printf '%s %T@ %p\\n'" \
        -n 'korvane scan smart-scan' "korvane scan smart-scan --json"
    table smart-scan
    peak korvane scan smart-scan
    rm -rf -- "$HOME"
    mkdir -p "$HOME/.cache"
}
