#!/usr/bin/env bash
# Builds Korvel and shows it at work on a simulated board, in about half a minute. Installs missing packages first.
# scripts/record_demo.py makes a picture of the first three sections.
set -euo pipefail
cd "$(dirname "$0")/.."
# shellcheck source=scripts/lib/progress.sh
. scripts/lib/progress.sh
# shellcheck source=scripts/lib/demo.sh
. scripts/lib/demo.sh

# on_board [OPTION...] -- [NOTE COMMAND]...
# Runs the commands on one board, which boardsim's options describe. Shows each as if it were typed there.
on_board() {
    local options=()
    while [ "$1" != -- ]; do
        options+=("$1")
        shift
    done
    echo "\$ build/boardsim ${options[*]}" | sed 's/ $//'
    # shellcheck disable=SC2016 # for the shell on the board
    build/boardsim "${options[@]}" -- sh -ec '
        while [ $# -gt 0 ]; do
            printf "\n# %s\nboard# %s\n" "$1" "$2"
            eval "$2"
            shift 2
        done' sh "${@:2}"
}

# The words in single quotes are for the shell on the board.
# shellcheck disable=SC2016
show_everything() {
    section "1. A healthy board"
    on_board -- \
        'Which switch port is behind the interface eth1? The answer is port 2.' \
        'korvel getport eth1' \
        'Exchange the ports of eth1 and eth2. No output means success.' \
        'korvel portswap eth1 eth2' \
        'Ask again. Now port 3 is behind eth1.' \
        'korvel getport eth1'

    section "2. A board in trouble: the NetFP master is down"
    on_board --without netfp_master -- \
        'Exchange the ports again. Korvel cannot reach the socket of the NetFP master.' \
        'korvel portswap eth1 eth2 || echo "exit status $?"' \
        'Is the master running? No, it has no process. An operator restarts it.' \
        'pidof netfp_master || echo "no process"'

    section "3. A board in trouble: the SFN dispatcher does not answer"
    on_board --fault sfn_dispatcher=silent -- \
        'Clear the statistics of both dispatchers. Korvel waits 1.5 seconds for SFN, and gives up.' \
        'korvel -d all resetqosstats || echo "exit status $?"' \
        'Is the SFN dispatcher running? Yes, so it did not crash: it hangs.' \
        'pidof sfn_dispatcher > /dev/null && echo "it runs"'

    section "4. Supervision: a dispatcher becomes unhealthy"
    on_board -- \
        'Ask the dispatchers and netfp_proxy for a heartbeat every 4 seconds. No output: all are healthy.' \
        'korvel -d all supervision &' \
        'Wait 6 seconds, then show what the SFN dispatcher received and answered: status 0 is healthy.' \
        'sleep 6; cat /run/boardsim/log/sfn_dispatcher' \
        'Let the SFN dispatcher answer with status 3.' \
        'echo 3 > /run/boardsim/heartbeat/sfn_dispatcher' \
        'The next heartbeat comes within 2 seconds. Korvel reports the error and exits.' \
        'wait $! || echo "exit status $?"'

    section "5. Archive: the logs of a run"
    on_board -- \
        'Follow both logs in shared memory for 7 seconds, and write new entries to files.' \
        'timeout 7 korvel archive || true' \
        'Each entry has a time (UTC), a level and a text.' \
        'tail -n 2 /tmp/korvel/archive/*/runtime.log'
}

# The words in single quotes are commands.
# shellcheck disable=SC2016
read_package() {
    section "6. A package of a board in trouble"
    on_host 'Make a package. The process netfp_proxy dies while it writes its dump.' \
        'build/boardsim --fault netfp_proxy=dying -- sh -c "korvel pkg; cat /ffs/run/logs/*" > build/board.tgz'
    on_host 'Can the package be trusted? Which parts are missing, and why?' \
        'build/korvel-report check build/board.tgz || echo "exit status $?"'
    on_host 'What else is wrong?' \
        'build/korvel-report show build/board.tgz | sed -n "/^Findings/,+7p"'
    on_host 'Make a page of all that the package holds. Open it in a browser.' \
        'build/korvel-report html build/board.tgz -o build/board.html && ls "$PWD/build/board.html"'
}

next_steps() {
    section "What you have seen"
    cat << 'END'
  1     Actions change the switch. If they succeed, they print nothing but an answer.
  2, 3  Error lines and the exit status show which process fails, and how.
  4, 5  Supervision and archive work for as long as the board runs.
  6     A package holds logs, statistics and state in one file. korvel-report says what is wrong with it.
The boards left nothing on your machine.

What to type next:
  build/boardsim                            a shell on a board of your own; "exit" ends the board
  build/boardsim --fault netfp_proxy=dying  the same with a fault; build/boardsim --help lists all faults
  man -l man/korvel.1                       every keyword, message and exit status
  less docs/tour.md                         the tour: more commands, with explanations
  less docs/reading-a-package.md            how to read the package of section 6
END
}

scripts/setup.sh build board report
build_everything build/demo.log
show_everything
read_package
next_steps
