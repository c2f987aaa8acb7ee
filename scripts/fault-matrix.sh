#!/usr/bin/env bash
# Checks korvel-report on packages of faulty boards. korvel makes them on simulated boards: each fault of boardsim, each
# peer left out, several sizes of disks, and parts that an earlier run left, with each kind of package. Each package is
# judged with its sidecar and without it. Prints a table of figures with their limits. Exits 1 if a figure misses its
# limit, 2 for wrong usage.
#   scripts/fault-matrix.sh [-v | --verbose] [PATTERN]
# PATTERN is a regular expression, and selects scenarios by name. --verbose also lists wrong causes that are not called
# certain.
set -euo pipefail
cd "$(dirname "$0")/.."
# shellcheck source=scripts/lib/progress.sh
. scripts/lib/progress.sh

arguments=()
for word in "$@"; do
    case $word in
        -v | --verbose) arguments+=(--verbose) ;;
        -*)
            sed -n '6s/^# *//p' "$0" >&2
            exit 2
            ;;
        *) arguments+=("$word") ;;
    esac
done

build() {
    CMAKE_GENERATOR=Ninja cmake --preset release &&
        cmake --build --preset release --target korvel boardsim korvel-report
}

scripts/setup.sh build board report
with_progress build-release/fault-matrix.log "Building" build
export KORVEL_BUILD=$PWD/build-release PYTHONDONTWRITEBYTECODE=1
python3 tests/report/matrix/fault_matrix.py ${arguments[@]+"${arguments[@]}"}
