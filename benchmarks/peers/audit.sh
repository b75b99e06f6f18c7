# shellcheck shell=bash disable=SC2154
# Verifying a long log.

run_audit() {
    local entries=$((100000 / scale))
    step "verifying a log of $entries entries"
    korvane-test-data log "$HOME/.local/share" "$entries"
    measure verification --warmup 1 -n 'korvane audit verify' 'korvane audit verify'
    table verification
    peak korvane audit verify
    rm -rf -- "$HOME/.local"
}
