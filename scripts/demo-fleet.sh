#!/usr/bin/env bash
# Builds Korvel and shows how korvel-fleet asks eight simulated boards over ssh, in about 20 seconds. Two boards are
# in trouble, one is down. Installs missing packages first. All files are in build/demo-fleet.
set -euo pipefail
cd "$(dirname "$0")/.."
# shellcheck source=scripts/lib/progress.sh
. scripts/lib/progress.sh
# shellcheck source=scripts/lib/demo.sh
. scripts/lib/demo.sh

folder=build/demo-fleet

# scenario BOARD LINE...
scenario() { printf '%s\n' "${@:2}" > "$folder/$1.toml"; }

make_scenarios() {
    scenario board1 'traffic = "steady:600"'
    scenario board2 'traffic = "steady:600"' 'seed = 2'
    scenario board3 'traffic = "busy:600"'
    scenario board4 'traffic = "flood:640"'
    scenario board5 'traffic = "steady:600"' 'fault = ["sfn_dispatcher=silent", "sfn_dispatcher=netlink-silent"]'
    scenario board6 'traffic = "leak:600"'
    scenario board7 'traffic = "flapping:600"' 'deployment = "iwf"'
    scenario board8 'traffic = "steady:600"' 'deployment = "sfn-antenna"'
}

# The first entry stands for a board that is down: nobody listens at its address.
make_ssh_configuration() {
    ssh-keygen -q -t ed25519 -N '' -C demo -f "$folder/key"
    cat > "$folder/ssh_config" << END
Host board8
    ProxyCommand none
    HostName 127.0.0.1
    Port 1
Host board*
    User root
    IdentityFile $folder/key
    ProxyCommand build/boardsim --scenario $folder/%h.toml --ssh --authorized-keys $folder/key.pub
    StrictHostKeyChecking no
    UserKnownHostsFile /dev/null
    LogLevel ERROR
END
}

prepare() {
    rm -rf "$folder"
    mkdir "$folder"
    make_scenarios
    make_ssh_configuration
}

# The words in single quotes are commands.
# shellcheck disable=SC2016
show_boards() {
    section "1. Eight boards"
    on_host 'Each board has its own traffic. The SFN dispatcher of board5 does not answer. Board6 leaks memory.' \
        'grep -H . build/demo-fleet/board*.toml'
    on_host 'ssh reaches each board as it reaches any host. It starts an SSH server on a simulated board.' \
        'cat build/demo-fleet/ssh_config'
    on_host 'Ask one board: which switch port is behind the interface eth1?' \
        'ssh -F build/demo-fleet/ssh_config board1 korvel getport eth1'
}

# shellcheck disable=SC2016
ask_boards() {
    section "2. One question to all boards"
    on_host 'Ask the same of all boards. The same answer of several boards is shown once.' \
        "build/korvel-fleet run -w 'board[1-8]' --ssh 'ssh -F build/demo-fleet/ssh_config' -- getport eth1 ||
    echo \"exit status \$?\""
    on_host 'How are the boards? A dispatcher of board5 does not answer the heartbeat.' \
        "build/korvel-fleet probe -w 'board[5,8]' --ssh 'ssh -F build/demo-fleet/ssh_config' ||
    echo \"exit status \$?\""
}

# shellcheck disable=SC2016
collect() {
    section "3. A package from each board"
    on_host 'Ask all boards at once. Packages that are not whole and boards that fail are named, each with its cause.' \
        "build/korvel-fleet collect -w 'board[1-8]' --ssh 'ssh -F build/demo-fleet/ssh_config' \\
    -o build/demo-fleet/packages || echo \"exit status \$?\""
    on_host 'Each package has a file beside it that tells how it was made.' \
        'ls -C build/demo-fleet/packages'

    section "4. What is wrong?"
    on_host 'Why is the package of board5 not whole?' \
        'build/korvel-report check build/demo-fleet/packages/board5.tgz.incomplete |
    sed -n "/^Not/,/Cause/p" || echo "exit status $?"'
    on_host 'The package of board6 is whole. What does it say?' \
        'build/korvel-report show build/demo-fleet/packages/board6.tgz | sed -n "/^Findings/,+7p"'
    on_host 'How does it differ from the package of a healthy board? The heap is used up.' \
        'build/korvel-report diff build/demo-fleet/packages/board{1,6}.tgz |
    sed -n "/^ .* before/p; /iwf.HeapStats/,/bytes free/p" || echo "exit status $?"'

    section "5. Once more, only where a package is missing"
    on_host 'Board8 is up again: delete the entry that stands for a board that is down.' \
        'sed -i 1,4d build/demo-fleet/ssh_config'
    on_host 'Board5 is repaired, too.' \
        'sed -i /fault/d build/demo-fleet/board5.toml'
    on_host 'With --resume, only these two boards are asked.' \
        "build/korvel-fleet collect -w 'board[1-8]' --ssh 'ssh -F build/demo-fleet/ssh_config' \\
    -o build/demo-fleet/packages --resume"
}

# shellcheck disable=SC2016
show_all() {
    section "6. All packages together"
    on_host 'Add the packages to a store: one SQLite file.' \
        'build/korvel-report add build/demo-fleet/store.db build/demo-fleet/packages/*.tgz'
    on_host 'Which boards differ most from the others? Board3 has more traffic.' \
        'build/korvel-report trend --limit 3 build/demo-fleet/store.db'
    on_host 'What does the directory hold?' \
        'build/korvel-fleet status build/demo-fleet/packages'
    on_host 'All boards on one page. Open it in a browser.' \
        'ls "$PWD/build/demo-fleet/packages/index.html"'
}

next_steps() {
    section "What you have seen"
    cat << 'END'
  1     Real ssh meets a real SSH server on each simulated board, without a port on this machine.
  2     korvel-fleet asks many boards at once, and folds equal answers.
  3, 5  It checks each package on arrival. No board is dropped silently, and --resume asks only where one is missing.
  4     korvel-report tells what is wrong with a board, from its package alone.
  6     One directory holds all of it: a page for people, and packages for a store and for questions over many boards.
The boards themselves left nothing on your machine.
END
}

scripts/setup.sh build board report fleet
build_everything build/demo-fleet.log
prepare
show_boards
ask_boards
collect
show_all
next_steps
