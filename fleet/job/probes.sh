# shellcheck shell=sh disable=SC2154 # collection.sh and limits.sh assign some variables
# What a board tells about itself: its release, its deployment, and the probes.

probe_seconds=10  # the master has one second, and another collection must not delay the log for long
cycle_seconds=7  # each of three answers may take almost two
timeout_seconds=2  # after this time without an answer, korvel asks again
ending_seconds=5  # a process that reports an error answers within two
probe_grace=2  # seconds
supervision_seconds=600  # only if the job is killed, this limit ends supervision

# One line without control characters, of bounded length.
one_line() { tr '[:cntrl:]' ' ' 2> /dev/null | head -c 400 | sed 's/  *$//'; }

# probe NAME COMMAND...: the line of the run file that holds the output of the command.
probe() {
    printf 'probe: %s: ' "$1"
    shift
    "$@" 2>&1 < /dev/null | one_line
    echo
}

getport() {
    within "$probe_seconds" "$probe_grace" korvel getport "$1"
    case $? in
        "$was_ended" | "$was_killed") echo "korvel hung: it was ended after $probe_seconds seconds" ;;
    esac
}

# --- The heartbeat -----------------------------------------------------------------------------------------------
# After a healthy cycle, supervision sleeps for four seconds, and prints and logs nothing. After another one, it ends or asks
# again. So a board is healthy if supervision sleeps before a request can have timed out. Later, or if the kernel does not
# tell where a process waits, the log decides.

dispatchers_log() { within "$probe_seconds" "$probe_grace" korvel print dlog 2> /dev/null; }

# What supervision logged after its last start: the newest result of a cycle, a request that failed, or "none". Nothing
# if the log cannot be read.
logged_trouble() {
    sed -n '/Supervision: Starting/ h
        /Supervision: Heartbeat status:/ H
        /Supervision: Error while sending/ H
        $ {
            x
            /Supervision: Starting/ !d
            s/^[^\n]*//
            s/^$/none/
            s/.*Supervision: //
            s/^Heartbeat status: *//
            p
        }'
}

# Supervision that ends at once prints why.
printed_trouble() {
    within "$ending_seconds" "$probe_grace" korvel supervision 2>&1 | sed -n 's/^Heartbeat status: *//p'
}

uptime_seconds() { read -r uptime _ < /proc/uptime && uptime=${uptime%.*}; }

elapsed() { uptime_seconds && elapsed=$((uptime - started)); }

supervise() { exec korvel supervision > /dev/null 2>&1; }

start_supervision() {
    uptime_seconds
    started=$uptime
    start_limited "$supervision_seconds" "$probe_grace" supervise
}

# Supervision has begun when it has its netlink socket (protocol 2), whose port is the number of its process.
has_begun() { grep -q "^[^ ]* *2  *$command " /proc/net/netlink; }

# Sets $nap to what identifies the sleep of supervision, and $is_told if the kernel tells where it waits. The time that it has
# run is a part of $nap: the log may make it sleep, too, but not for long.
look() {
    place='' run='' nap=''
    read -r place < "/proc/$command/wchan"
    read -r run < "/proc/$command/schedstat"
    case $place in
        '' | 0) ;;  # also if it runs
        *sleep*) is_told=true nap="$place $run" ;;
        *) is_told=true ;;
    esac
} 2> /dev/null

# Whether supervision sleeps. Waits until it does, it ends, or the time is over.
falls_asleep() {
    elapsed=0 nap='' is_told=false
    while is_running "$command"; do
        earlier=$nap
        look
        elapsed
        [ -z "$nap" ] || [ "$nap" != "$earlier" ] || return 0
        [ "$elapsed" -lt "$cycle_seconds" ] || return 1
        sleep 0.1 2> /dev/null || sleep 1  # the sleep of some boards needs whole seconds
    done
    return 1
}

# Sets $cycle to healthy, quiet (not unhealthy if nothing was logged), endless, ended, or none.
await_cycle() {
    cycle=endless
    if falls_asleep; then
        cycle=quiet
        [ "$elapsed" -ge "$timeout_seconds" ] || cycle=healthy
    elif ! is_running "$command"; then
        cycle=ended
        return
    fi
    "$is_told" || cycle=quiet
    has_begun || cycle=none
}

# Sets $heartbeat. Other work can be done between start_supervision and this.
finish_heartbeat() {
    await_cycle
    kill -KILL "$command" 2> /dev/null  # it has nothing to clean up, and the job may ignore TERM
    finish_limited
    supervision_status=$?
    trouble=
    case $cycle in
        ended) trouble=$(printed_trouble) ;;
        quiet | endless) trouble=$(dispatchers_log | logged_trouble) ;;
    esac
    case $cycle:$trouble in
        healthy: | quiet:none) heartbeat=healthy ;;
        ended:) heartbeat="unhealthy: supervision ended with status $supervision_status" ;;
        none:) heartbeat='unknown: supervision did not begin' ;;
        *:) heartbeat='unknown: the log of the dispatchers does not show that supervision began' ;;
        endless:none) heartbeat="unknown: supervision needed more than $cycle_seconds seconds for a cycle" ;;
        *) heartbeat="unhealthy: $trouble" ;;
    esac
}

# korvel makes directories even if it only prints.
without_folders() {
    missing=
    for folder in "$work/fuse" "$work"; do
        exists "$folder" || missing="$missing $folder"
    done
    "$@"
    set -- "$?"
    # shellcheck disable=SC2086 # the names have no blanks
    [ -z "$missing" ] || rmdir $missing 2> /dev/null
    return "$1"
}

# --- The description ---------------------------------------------------------------------------------------------

# The release in the program's ELF note, which is near the beginning of the program.
release() {
    LC_ALL=C tr -c ' -~' '\n' < "$(command -v korvel)" 2> /dev/null |
        sed -n '/.*"name":"korvel","version":"\([^"]*\)".*/ { s//\1/p; q; }'
}

# describe_board BOARD
describe_board() {
    key format 1
    key board "$1"
    release=$(release)
    [ -z "$release" ] || key korvel "$release"
    key zone "$(zone)"
    key deployment "$(deployment)"
    read -r kernel < /proc/sys/kernel/osrelease
    key kernel "$kernel"
}

# probe_interfaces INTERFACE...
probe_interfaces() {
    for interface in "$@"; do
        probe "getport $interface" getport "$interface"
    done
}

# --- All together ------------------------------------------------------------------------------------------------

# Sets $description to the lines of the run file that are known before korvel makes a package.
describe_and_probe() {
    start_supervision
    description=$(describe_board "$board" && probe_interfaces "$@")
    finish_heartbeat
    description=$description$newline$(key "probe: heartbeat" "$(printf '%.400s' "$heartbeat")")
}
