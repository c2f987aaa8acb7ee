#!/usr/bin/env bash
# Runs the fuzz targets of korvel-report (tests/report/fuzz) with libFuzzer, AddressSanitizer and
# UndefinedBehaviorSanitizer. Installs missing packages.
#   scripts/fuzz.sh [TARGET...] [--runs N] [--fast]
# N is the number of inputs that each target gets, by default 100000, which takes some minutes. Inputs that reached new
# code are kept in build-fuzz/corpus and used again by the next call. With --fast, the targets get the N inputs without
# the sanitizers, which is two to four times as fast, and then the kept inputs with them. If a target fails, the message
# names the file with the input. The exit status is 1 if a target failed, 2 for wrong usage.
set -euo pipefail
cd "$(dirname "$0")/.."
# shellcheck source=scripts/lib/progress.sh
. scripts/lib/progress.sh

usage() {
    printf '%s\n' "$@" "usage: scripts/fuzz.sh [TARGET...] [--runs N] [--fast]" "Targets: ${all[*]}" >&2
    exit 2
}

seeds=tests/report/fuzz/corpus
mapfile -t all < <(ls "$seeds")
runs=100000
fast=
targets=()
while [ $# -gt 0 ]; do
    case "$1" in
        --runs)
            [[ ${2-} =~ ^[0-9]+$ ]] || usage "--runs needs a number."
            runs=$2
            shift
            ;;
        --fast) fast=yes ;;
        *)
            [ -d "$seeds/$1" ] || usage "Unknown target: $1"
            targets+=("$1")
            ;;
    esac
    shift
done
[ ${#targets[@]} -gt 0 ] || targets=("${all[@]}")

build() {
    CMAKE_GENERATOR=Ninja cmake --preset "$1" && cmake --build --preset "$1"
}

# fuzz PRESET TARGET RUNS: libFuzzer begins its lines with the number of the input. With 0 runs, it runs the kept inputs.
fuzz() {
    local preset=$1 target=$2 runs=$3
    local corpus=build-fuzz/corpus/$target words=tests/report/fuzz/$target.dict
    local options=(-runs="$runs" -max_len=4096 -entropic=0 -timeout=10 -artifact_prefix="build-fuzz/$target-")
    [ ! -f "$words" ] || options+=(-dict="$words")
    mkdir -p "$corpus"
    # Freed memory is used again soon, because new memory costs more time than the run itself.
    GLIBC_TUNABLES=glibc.malloc.trim_threshold=268435456:glibc.malloc.mmap_threshold=134217728 \
        ASAN_OPTIONS=quarantine_size_mb=1:thread_local_quarantine_size_kb=64 \
        "build-$preset/tests/fuzz_$target" "$corpus" "$seeds/$target" "${options[@]}" 2>&1 |
        awk -v runs="$runs" '{ print } /^#/ && runs > 0 { printf "[%d/%d]\n", substr($1, 2), runs; fflush() }'
}

scripts/setup.sh build board report test lint
with_progress build-fuzz/build.log "Building the fuzz targets" build fuzz
if [ -n "$fast" ]; then
    with_progress build-fuzz/build.log "Building them without sanitizers" build fuzz-fast
fi
for target in "${targets[@]}"; do
    with_progress "build-fuzz/$target.log" "Fuzzing $target, $runs inputs" fuzz "fuzz${fast:+-fast}" "$target" "$runs"
    if [ -n "$fast" ]; then
        with_progress "build-fuzz/$target.log" "Running its kept inputs with the sanitizers" fuzz fuzz "$target" 0
    fi
done
