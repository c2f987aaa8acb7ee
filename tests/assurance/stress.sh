#!/usr/bin/env bash
# Runs the quick tests 20 times while other processes keep the processor, the memory and the disk busy. Needs the build of
# the preset release. Exits 1 if a test failed once.
set -uo pipefail
cd "$(dirname "$0")/../.." || exit

stress-ng --quiet --cpu 1 --vm 1 --vm-bytes 25% --hdd 1 --hdd-bytes 256M --temp-path build-prove &
load=$!
trap 'kill "$load"; wait "$load"' EXIT
ctest --preset release -j "$(nproc)" -LE 'slow|shuffled|script' --repeat until-fail:20
