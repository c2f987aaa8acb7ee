#!/usr/bin/env bash
# Runs the unit tests of korvel with Valgrind. Needs the build of the preset release. Exits 1 if Valgrind reports an error or
# lost memory. Tests that fail are not counted: Valgrind lacks system calls, and is too slow for tests of signals.
set -uo pipefail
cd "$(dirname "$0")/../.." || exit

programs=(base common netfp l2sct_board actions dump_actions util logcollection supervision archive main reset_qos_stats)
valgrind=(valgrind --leak-check=full --show-leak-kinds=definite --errors-for-leak-kinds=definite)
errors='ERROR SUMMARY: [1-9]'
status=0
mkdir -p build-prove
for program in "${programs[@]}"; do
    log=build-prove/memory-$program.log
    # The board has the build's directory as /opt/korvel.
    build-release/boardsim --bare -- "${valgrind[@]}" "/opt/korvel/tests/${program}_test" > "$log" 2>&1
    tests=$(grep -o '^[0-9]* tests ran' "$log") || status=1
    printf '%-16s %s, %d processes with errors\n' "$program" "${tests:-no tests ran}" "$(grep -c "$errors" "$log")"
    ! grep -q "$errors" "$log" || status=1
done
exit "$status"
