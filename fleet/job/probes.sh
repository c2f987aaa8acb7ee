# shellcheck shell=sh disable=SC2154 # collection.sh and limits.sh assign some variables
# What a board tells about itself: its release, its deployment, and the probes.

probe_seconds=10  # the master has one second, and another collection must not delay the log for long
heartbeat_seconds=3  # a missing answer is logged after two
ending_seconds=5  # a process that reports an error answers within two
begin_tries=30  # tenths of a second
probe_grace=2  # seconds
supervision_seconds=600  # longer than a collection; only if the job is killed, this limit ends supervision

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
# After a healthy cycle, supervision prints and logs nothing. So a cycle was healthy if supervision began, and the log has
# no trouble after the time that a missing answer needs. Other work can be done between start_supervision, await_begin and
# finish_heartbeat.

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

# The job may ignore TERM, but TERM ends supervision.
supervise() {
    trap - TERM
    exec korvel supervision > /dev/null 2>&1
}

# Supervision has begun when it has its netlink socket (protocol 2), whose port is the number of its process.
has_begun() { grep -q "^[^ ]* *2  *$command " /proc/net/netlink; }

# The sleep of some boards needs whole seconds.
nap() { sleep 0.1 2> /dev/null || { sleep 1 && tries=$((tries - 9)); }; }

start_supervision() { start_limited "$supervision_seconds" "$probe_grace" supervise; }

# Waits until supervision has begun. From then on, $cycle is a process that ends with the first cycle.
await_begin() {
    tries=$begin_tries
    begun=true
    until has_begun; do
        tries=$((tries - 1))
        if [ "$tries" -le 0 ] || ! is_running "$command"; then
            begun=false
            break
        fi
        nap
    done
    sleep "$heartbeat_seconds" > /dev/null 2>&1 9>&- &
    cycle=$!
}

# Supervision that ends at once prints why.
printed_trouble() {
    within "$ending_seconds" "$probe_grace" korvel supervision 2>&1 | sed -n 's/^Heartbeat status: *//p'
}

# Sets $heartbeat.
finish_heartbeat() {
    await "$cycle"
    end=by-itself
    ! is_running "$command" || end=stopped
    trouble=
    ! "$begun" || {
        kill -TERM "$command" 2> /dev/null  # it ends while the log is read
        trouble=$(dispatchers_log | logged_trouble)
    }
    ! is_running "$command" || stop "$command" "$probe_grace" || end=hung
    finish_limited
    supervision_status=$?
    [ "$begun:$end" != false:by-itself ] || trouble=$(printed_trouble)
    case $begun:$end:$trouble in
        *:by-itself: | *:by-itself:none) heartbeat="unhealthy: supervision ended with status $supervision_status" ;;
        *:hung: | *:hung:none) heartbeat='unknown: supervision hung' ;;
        false:stopped:) heartbeat='unknown: supervision did not begin' ;;
        true:stopped:) heartbeat='unknown: the log of the dispatchers does not show that supervision began' ;;
        *:stopped:none) heartbeat=healthy ;;
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

supervise_once() {
    start_supervision
    await_begin
    finish_heartbeat
}

heartbeat_line() { key "probe: heartbeat" "$(printf '%.400s' "$heartbeat")"; }

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
