# shellcheck shell=bash disable=SC2154
# Matching paths against the guard and the protected paths.
targets+=(korvane-match-benchmark)

run_match() {
    step "matching paths against the guard and 50 protected paths"
    korvane-match-benchmark --benchmark_repetitions=3 --benchmark_report_aggregates_only=true 2>/dev/null
}
