#!/usr/bin/env bash
# Measures time and memory on simulated boards with full logs: commands relative to others of the same run, and
# long-running jobs while idle. Prints a table of figures. Exits 1 if a figure exceeds its limit.
#   scripts/bench.sh [-v | --verbose]     also prints the build and each measurement
#   scripts/bench.sh --footprint          prints the size and memory tables of docs/footprint.md
#   scripts/bench.sh --report             measures korvel-report: large packages, many packages, then hostile ones
set -euo pipefail
cd "$(dirname "$0")/.."

verbose=()
mode=korvel
case "$*" in
    '') ;;
    -v | --verbose) verbose=(--verbose) ;;
    --footprint | --report) mode=${1#--} ;;
    *)
        sed -n '4,6s/^# *//p' "$0" >&2
        exit 2
        ;;
esac

# Runs a command. Unless verbose, prints the command's output only if it fails.
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

# Prints a table of the programs and libraries, with sizes in KiB.
print_sizes() {
    local file text stripped
    stripped=$(mktemp)
    echo '| File | Text (KiB) | Stripped file (KiB) |'
    echo '|---|---:|---:|'
    for file in korvel boardsim libexec/korvel/board/devmem lib*/{,*/}korvel/{libnetfpsmlog,libWENVASK}.so; do
        text=$(size "$file" | awk 'NR == 2 { print $1 }')
        strip -o "$stripped" "$file"
        echo "| \`${file##*/}\` | $((text / 1024)) | $(($(stat -c %s "$stripped") / 1024)) |"
    done
    rm "$stripped"
}

prepare scripts/setup.sh build board report test bench
CMAKE_GENERATOR=Ninja prepare cmake --preset release -DKORVEL_BENCH=ON

if [ "$mode" = report ]; then
    prepare cmake --build --preset release --target korvel boardsim korvel-report
    python3 tests/report/bench/report_bench.py build-release || status=1
    python3 tests/report/bench/store_bench.py build-release || status=1
    KORVEL_SOURCE=$PWD KORVEL_BUILD=$PWD/build-release python3 tests/report/program/hostile_test.py --whole || status=1
    exit "$status"
fi

prepare cmake --build --preset release --target korvel boardsim korvel_bench korvel_idle_bench korvel_footprint_bench

if [ "$mode" = footprint ]; then
    (cd build-release && shopt -s nullglob && print_sizes)
    echo
    measure -- build-release/tests/korvel_footprint_bench
    exit "$status"
fi

# The benchmarks take turns, so that a noisy moment of the machine affects all of them.
measure -- build-release/tests/korvel_bench --benchmark_enable_random_interleaving=true "${verbose[@]}"
# Without these peers nothing writes to the logs.
measure --without iwf_dispatcher --without sfn_dispatcher --without netfp_server -- \
    build-release/tests/korvel_idle_bench archive
measure -- build-release/tests/korvel_idle_bench supervision
exit "$status"
