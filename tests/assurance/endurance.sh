#!/usr/bin/env bash
# The archiver over more than 10,000 rotations without its pauses, and for two hours with them. Faults come and go. Needs the
# build of the preset release. tests/assurance/endurance/Endurance.cpp says what must hold. Exits 1 if it does not.
set -uo pipefail
cd "$(dirname "$0")/../.." || exit

status=0
# endure SHARE rotations|minutes N: with SHARE percent of what a log keeps between two reads.
endure() {
    printf '%s percent of the log between two reads, %s %s:\n' "$1" "$3" "$2"
    build-release/boardsim --bare --ffs-size 64M -- /opt/korvel/tests/endurance "$@" || status=1
}

endure 10 rotations 3400
endure 100 rotations 3400
endure 1000 rotations 3400
endure 50 minutes 120
exit "$status"
