#!/usr/bin/env bash
# Checks everything: formatting, scripts, clang++ with clang-tidy, and all tests, once with the sanitizers and once as
# shipped. Installs missing packages. Builds only what changed. A step that fails does not stop the others.
#   scripts/test.sh [--full]
# CI has 30 minutes on two processors. So these need --full: clang-tidy on the tests, clang-tidy and the sanitizers on
# korvel-report, and the shuffled runs as shipped.
# Prints a summary of all steps, what the failed tests printed, then ctest's closing lines once more. The exit status is 1
# if a step failed.
# shellcheck disable=SC2317 # step calls the functions
set -uo pipefail
cd "$(dirname "$0")/.." || exit

case "$*" in
    "")
        full=OFF
        left_out=(-LE shuffled)
        ;;
    --full)
        full=ON
        left_out=()
        ;;
    *)
        echo "usage: scripts/test.sh [--full]" >&2
        exit 2
        ;;
esac

trap 'exit 130' INT  # without this, Ctrl-C would end one step only

summary=()
status=0

# step NAME COMMAND...: runs COMMAND and notes its result and duration for the summary.
step() {
    local name=$1 start=$SECONDS result=passed
    shift
    printf '\n== %s\n' "$name"
    "$@" || result=FAILED
    note "$name" "$result" $((SECONDS - start))
    [ "$result" = passed ]
}

note() {
    summary+=("$(printf '%-20s  %-7s  %4d:%02d' "$1" "$2" $(($3 / 60)) $(($3 % 60)))")
    [ "$2" = passed ] || status=1
}

check_formatting() {
    find . -path './build*' -prune -o \( -name '*.?pp' -o -name '*.h' \) -print0 | xargs -0 clang-format --dry-run -Werror
}

check_scripts() {
    shellcheck .ci/run scripts/*.sh scripts/lib/*.sh systemd/libexec/* fleet/job.sh fleet/job/*.sh \
        boardsim/commands/fp_linux_log_collect completions/*.bash tests/support/privileged/* tests/assurance/*.sh \
        tests/assurance/unsteady/bwrap tests/coverage/bwrap \
        tests/board/boot tests/board/run-* tests/board/start-fastpath
}

# build PRESET [cmake option...]
build() {
    CMAKE_GENERATOR=Ninja cmake --preset "$@" > /dev/null && cmake --build --preset "$1"
}

# run_tests PRESET [ctest option...]
# Most of a test's time is waiting, so four times as many tests as processors run at once.
run_tests() {
    last_run=$runs/$1
    ctest --preset "$@" -j "$(($(nproc) * 4))" | tee "$last_run"
}

# Prints the last lines of each failed test once more, because CI may cut the beginning of its log.
print_failed_tests() {
    printf '\n== Failed tests: %s\n' "${1##*/}"
    awk -v most=40 '
        function print_last_lines(  line) {
            for (line = count > most ? count - most : 0; line < count; line++) print lines[line]
            count = 0
        }
        /^ *Start +[0-9]+: |^ *[0-9]+\/[0-9]+ Test +#[0-9]+: |% tests passed/ { print_last_lines(); failed = 0 }
        failed { lines[count++] = $0 }
        / Test +#[0-9]+: .*\*\*\*/ { failed = 1; print }' "$1"
}

# build_and_test PRESET CMAKE-OPTIONS [ctest option...]
build_and_test() {
    local preset=$1 cmake_options=$2
    shift 2
    # shellcheck disable=SC2086 # these are words
    if step "Build: $preset" build "$preset" $cmake_options; then
        step "Tests: $preset" run_tests "$preset" "$@"
    else
        note "Tests: $preset" "not run" 0
    fi
}

print_summary() {
    printf '\n== Summary\n%-20s  %-7s  %7s\n' Step Result Min:s
    printf '%s\n' "${summary[@]}"
    for run in "$runs"/*; do
        [ ! -f "$run" ] || grep -q '^100% tests passed' "$run" || print_failed_tests "$run"
    done
    printf '\n== The end of the last run of tests\n'
    sed -n '/% tests passed/,$p' "$last_run"
}

scripts/setup.sh build board report fleet test lint || exit 1
runs=$(mktemp -d)  # the output of each run of tests
last_run=/dev/null
trap 'rm -r "$runs"' EXIT

step "Formatting" check_formatting
step "Scripts" check_scripts
step "Build: lint" build lint -DKORVEL_REPORT=$full -DKORVEL_TESTS=$full
build_and_test sanitizers -DKORVEL_REPORT=$full
build_and_test release "" "${left_out[@]}"
print_summary
exit "$status"
