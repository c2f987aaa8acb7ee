#!/usr/bin/env bash
# Builds Korvel and shows it at work on a simulated board. Installs what the machine lacks.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh build board
echo "== Building"
CMAKE_GENERATOR=Ninja cmake -B build -DKORVEL_BOARDSIM=ON > /dev/null
cmake --build build

# Runs the commands of its arguments on one board, showing each as if it were typed there.
on_board() {
    build/boardsim -- sh -ec 'for command; do printf "\nboard# %s\n" "$command"; eval "$command"; done' sh "$@"
}

echo
echo "== On a simulated board"
on_board \
    'korvel getport eth1' \
    'korvel -d all dump dinf' \
    'cd /tmp/korvel && find . -type f -printf "%6s  %p\n" | sort -k 2' \
    'korvel -d all pkg' \
    'tar -tvzf /ffs/run/logs/netfp_logs_*.tgz'
