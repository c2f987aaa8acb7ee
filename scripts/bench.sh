#!/usr/bin/env bash
# Measures what Korvel costs on simulated boards whose logs are full: commands as ratios within one run, jobs
# that last while they have nothing to do. Prints a table of figures; fails where a limit is exceeded.
#   scripts/bench.sh [-v | --verbose]     verbose: also the build, and each measurement
set -euo pipefail
cd "$(dirname "$0")/.."

verbose=()
case "$*" in
    '') ;;
    -v | --verbose) verbose=(--verbose) ;;
    *)
        sed -n '4s/^# *//p' "$0" >&2
        exit 2
        ;;
esac

# What a command prints counts only where it fails.
prepare() {
    local output
    if [ ${#verbose[@]} -gt 0 ]; then
        "$@"
    elif ! output=$("$@" 2>&1); then
        printf '%s\n' "$output" >&2
        return 1
    fi
}

status=0
measure() { build-release/boardsim --full-logs "$@" || status=1; }

prepare scripts/setup.sh build board test bench
CMAKE_GENERATOR=Ninja prepare cmake --preset release -DKORVEL_BENCH=ON
prepare cmake --build --preset release --target korvel boardsim korvel_bench korvel_idle_bench

measure -- build-release/tests/korvel_bench --benchmark_enable_random_interleaving=true "${verbose[@]}"
# Nobody is left who writes to the logs.
measure --without iwf_dispatcher --without sfn_dispatcher --without netfp_server -- \
    build-release/tests/korvel_idle_bench archive
measure -- build-release/tests/korvel_idle_bench supervision
exit "$status"
