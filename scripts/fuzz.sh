#!/usr/bin/env bash
# Runs the fuzz targets of korvel and the simulated board (tests/fuzz) and of korvel-report (tests/report/fuzz) with
# libFuzzer, AddressSanitizer and UndefinedBehaviorSanitizer. Installs missing packages.
#   scripts/fuzz.sh [TARGET...] [--runs N | --until-dry MINUTES] [--fast]
# N is the number of inputs that each target gets, by default 100000, which takes some minutes. With --until-dry, a target
# ends when so many minutes brought no new edge of the program. Inputs that reached new code are kept in
# build-fuzz/corpus and used again by the next call. With --fast, the targets get the inputs without the sanitizers,
# which is two to four times as fast, and then the kept inputs with them. If a target fails, the message names the file
# with the input. The exit status is 1 if a target failed, 2 for wrong usage.
set -euo pipefail
cd "$(dirname "$0")/.."
# shellcheck source=scripts/lib/progress.sh
. scripts/lib/progress.sh

usage() {
    printf '%s\n' "$@" "usage: scripts/fuzz.sh [TARGET...] [--runs N | --until-dry MINUTES] [--fast]" \
        "Targets: ${all[*]}" >&2
    exit 2
}

# The folder of each target.
declare -A folder_of
all=()
for seeds in tests/fuzz/corpus/* tests/report/fuzz/corpus/*; do
    all+=("${seeds##*/}")
    folder_of[${seeds##*/}]=${seeds%/corpus/*}
done
runs=100000
dry=
fast=
targets=()
while [ $# -gt 0 ]; do
    case "$1" in
        --runs)
            [[ ${2-} =~ ^[0-9]+$ ]] || usage "--runs needs a number."
            runs=$2
            shift
            ;;
        --until-dry)
            [[ ${2-} =~ ^[1-9][0-9]{0,3}$ ]] || usage "--until-dry needs a number of minutes."
            dry=$2
            shift
            ;;
        --fast) fast=yes ;;
        *)
            [ -n "${folder_of[$1]-}" ] || usage "Unknown target: $1"
            targets+=("$1")
            ;;
    esac
    shift
done
[ ${#targets[@]} -gt 0 ] || targets=("${all[@]}")

build() {
    CMAKE_GENERATOR=Ninja cmake --preset "$1" && cmake --build --preset "$1"
}

# run_target PRESET TARGET OPTION...: runs libFuzzer once.
run_target() {
    local preset=$1 target=$2 folder=${folder_of[$2]}
    shift 2
    local corpus=build-fuzz/corpus/$target words=$folder/$target.dict
    local options=(-max_len=4096 -entropic=0 -timeout=10 -artifact_prefix="build-fuzz/$target-" "$@")
    [ ! -f "$words" ] || options+=(-dict="$words")
    mkdir -p "$corpus"
    # Freed memory is used again soon, because new memory costs more time than the run itself.
    GLIBC_TUNABLES=glibc.malloc.trim_threshold=268435456:glibc.malloc.mmap_threshold=134217728 \
        ASAN_OPTIONS=quarantine_size_mb=1:thread_local_quarantine_size_kb=64 \
        "build-$preset/tests/fuzz_$target" "$corpus" "$folder/corpus/$target" "${options[@]}" 2>&1
}

# fuzz PRESET TARGET RUNS: libFuzzer begins its lines with the number of the input. With 0 runs, it runs the kept inputs.
fuzz() {
    run_target "$1" "$2" -runs="$3" |
        awk -v runs="$3" '{ print } /^#/ && runs > 0 { printf "[%d/%d]\n", substr($1, 2), runs; fflush() }'
}

# fuzz_until_dry PRESET TARGET: rounds of so many minutes, until one ends with as many edges as it began with.
fuzz_until_dry() {
    local log=build-fuzz/$2-round.log edges
    while run_target "$1" "$2" -max_total_time=$((dry * 60)) > "$log" || { cat "$log" && return 1; }; do
        cat "$log"
        mapfile -t edges < <(sed -nE 's/^#[0-9]+\s+(INITED|DONE)\s+cov: ([0-9]+) .*/\2/p' "$log")
        [ "${edges[0]}" != "${edges[1]}" ] || return 0
    done
}

# Runs a target as the options say.
fuzz_as_asked() {
    local preset=fuzz${fast:+-fast}
    if [ -n "$dry" ]; then
        fuzz_until_dry "$preset" "$1"
    else
        fuzz "$preset" "$1" "$runs"
    fi
}

scripts/setup.sh build board report test lint
with_progress build-fuzz/build.log "Building the fuzz targets" build fuzz
if [ -n "$fast" ]; then
    with_progress build-fuzz/build.log "Building them without sanitizers" build fuzz-fast
fi
title=${dry:+"until $dry minutes bring no new edge"}
for target in "${targets[@]}"; do
    with_progress "build-fuzz/$target.log" "Fuzzing $target, ${title:-$runs inputs}" fuzz_as_asked "$target"
    if [ -n "$fast" ]; then
        with_progress "build-fuzz/$target.log" "Running its kept inputs with the sanitizers" fuzz fuzz "$target" 0
    fi
done
