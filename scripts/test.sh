#!/usr/bin/env bash
# Checks everything: formatting, scripts, clang++ with clang-tidy, and all tests, once with the sanitizers and once as
# shipped. Installs what the machine lacks. Only what changed is built again.
set -euo pipefail
cd "$(dirname "$0")/.."

step() {
    echo
    echo "== $*"
}

scripts/setup.sh build board test lint

step "Formatting and scripts"
find base src platform boardsim tests \( -name '*.?pp' -o -name '*.h' \) -print0 | xargs -0 clang-format --dry-run -Werror
shellcheck .ci/run scripts/*.sh systemd/libexec/* boardsim/commands/fp_linux_log_collect completions/korvel.bash \
    tests/support/privileged/*

build() {
    step "Building: $1"
    CMAKE_GENERATOR=Ninja cmake --preset "$1" > /dev/null
    cmake --build --preset "$1"
}

run() {
    step "Tests: $1"
    ctest --preset "$1" -j "$(($(nproc) * 3))"  # most of a test's time is waiting
}

build lint
build sanitizers
run sanitizers
build release
run release
