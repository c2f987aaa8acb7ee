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
    # shellcheck disable=SC2016 # for the shell on the board
    build/boardsim -- sh -ec 'for command; do printf "\nboard# %s\n" "$command"; eval "$command"; done' sh "$@"
}

echo
echo "== One-shot actions on a simulated board, and what they change there"
on_board \
    'korvel getport eth1' \
    'korvel mirrorport enable eth0 eth3' \
    'korvel portswap eth1 eth2' \
    'korvel addmulticastmac 01:00:5e:00:00:01 eth0 100' \
    'korvel print master' \
    'korvel loopbackport enable eth3' \
    'devmem 0x02090510' \
    'korvel -d iwf resetqosstats' \
    'head -n 4 /tmp/fuse/iwf/qosStats /tmp/fuse/sfn/qosStats' \
    'korvel mem_dump 0xeb700040 60' \
    'korvel desc_dump 0xeb6b6100' \
    'korvel add_interface eth4' \
    'korvel print proxy'

echo
echo "== Supervision: two healthy cycles of four seconds, then a dispatcher turns unhealthy"
on_board \
    'korvel -d all supervision &' \
    'sleep 6; cat /run/boardsim/received/sfn_dispatcher' \
    'echo 3 > /run/boardsim/heartbeat/sfn_dispatcher' \
    'wait $! || echo "exit status $?"'

echo
echo "== The archiver, following both logs while they grow"
on_board \
    'timeout 7 korvel archive || true' \
    'tail -n 4 /tmp/korvel/archive/*/runtime.log'

echo
echo "== Log collection"
on_board \
    'korvel -d all dump dinf' \
    'cd /tmp/korvel && find . -type f -printf "%6s  %p\n" | sort -k 2' \
    'korvel -d all pkg' \
    'tar -tvzf /ffs/run/logs/netfp_logs_*.tgz'
