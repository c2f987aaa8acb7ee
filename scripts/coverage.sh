#!/usr/bin/env bash
# Measures which lines and branches of src and report the tests run, on simulated boards, too. Exits 1 if a line is not run
# that tests/coverage/not-run.txt does not list with a reason, or if less than 95 % of the branches are taken. Branches
# of exceptions are not counted. Installs missing packages. The figures of each line are in build-coverage/coverage.lcov.
#   scripts/coverage.sh [REGEX]     default: every test
set -uo pipefail
cd "$(dirname "$0")/.." || exit

tree=build-coverage
counters=$PWD/$tree/counters

compile() {
    scripts/setup.sh build board report fleet test lint prove &&
        CMAKE_GENERATOR=Ninja cmake --preset coverage > /dev/null && cmake --build --preset coverage
}

# Programs whose code counts, and all test programs: they contain the same code.
programs() {
    printf '%s\n' "$tree/bin/korvel" "$tree/bin/korvel-report"
    find "$tree/tests" -maxdepth 1 -type f -name '*_test' | sort
}

# Every program makes its file of counters. Programs that later run as other users can then write to it.
make_counters() {
    rm -rf "$counters"
    mkdir "$counters"
    chmod 1777 "$counters"
    for program in $(programs); do
        case $program in
            *_test) "$program" --gtest_list_tests ;;
            *) "$program" --help ;;
        esac > /dev/null
    done
    chmod a+rw "$counters"/*
}

# Tests that compare system calls fail, because the counters need some. They do not fail in the other builds. Tests of
# documents, packages and scripts run nothing else of korvel.
run_tests() {
    PATH=$PWD/tests/coverage:$PATH ctest --preset coverage -j "$(nproc)" --no-tests=error ${1+-R "$1"} \
        -E '^(assurance|build|completions|debian|docs|fleet|fuzz|install|man|systemd|waits)\.' > "$tree/tests.log" 2>&1
    sed -n '/tests passed/,$p' "$tree/tests.log"
}

evaluate() {
    local objects=()
    for program in $(programs); do objects+=(-object "$program"); done
    llvm-profdata merge -o "$tree/counters.profdata" "$counters"/*.profraw &&
        llvm-cov export "${objects[@]:1}" -instr-profile "$tree/counters.profdata" -format lcov \
            -ignore-filename-regex "(/usr/|$tree/|tests/)" > "$tree/coverage.lcov" &&
        python3 -B tests/coverage/coverage.py "$tree/coverage.lcov"
}

compile > "$tree.log" 2>&1 || {
    tail -n 20 "$tree.log" >&2
    exit 1
}
export LLVM_PROFILE_FILE=$counters/%m%c.profraw
make_counters
run_tests "$@"
unset LLVM_PROFILE_FILE
evaluate
