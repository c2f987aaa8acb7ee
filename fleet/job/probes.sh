# shellcheck shell=sh disable=SC2154 # collection.sh and limits.sh assign some variables
# What a board tells about itself: its release, its deployment, and the probes.

probe_seconds=10  # the master has one second, and another collection must not delay the log for long
heartbeat_seconds=3  # a missing answer is logged after two
begin_tries=3  # seconds
probe_grace=2  # seconds

# One line without control characters, of bounded length.
one_line() { tr '[:cntrl:]' ' ' | head -c 400 | sed 's/  *$//'; }

# probe NAME COMMAND...: the line of the run file that holds the output of the command.
probe() {
    printf 'probe: %s: ' "$1"
    shift
    "$@" 2>&1 < /dev/null | one_line
    echo
}

getport() {
    within "$probe_grace" "sleep $probe_seconds" korvel getport "$1"
    case $? in
        "$was_ended" | "$was_killed") echo "korvel hung: it was ended after $probe_seconds seconds" ;;
    esac
}

# --- The heartbeat -----------------------------------------------------------------------------------------------
# Supervision prints an answer that is an error, and only logs an answer that is missing. After a healthy cycle, it
# prints and logs nothing. So a cycle was healthy if the log shows that supervision began, and nothing else in the time
# that a missing answer needs.

dispatchers_log() { within "$probe_grace" "sleep $probe_seconds" korvel print dlog 2> /dev/null; }

last_start() { sed -n '/Supervision: Starting/ h; $ { x; p; }'; }

has_begun() { [ "$(dispatchers_log | last_start)" != "$earlier_start" ]; }

# What supervision logged after its last start: the newest result of a cycle, or a request that failed.
logged_trouble() {
    sed -n '/Supervision: Starting/ h
        /Supervision: Heartbeat status:/ H
        /Supervision: Error while sending/ H
        $ { x; s/^[^\n]*//; s/.*Supervision: //; s/^Heartbeat status: *//p; t
            /./ p; }'
}

# Waits until supervision has begun, and then for one cycle. Fails if nothing shows that it began.
one_cycle() {
    tries=$begin_tries
    until has_begun; do
        tries=$((tries - 1))
        [ "$tries" -gt 0 ] || return 1
        sleep 1
    done
    sleep "$heartbeat_seconds"
}

supervise_once() {
    earlier_start=$(dispatchers_log | last_start)
    printed=$(within "$probe_grace" one_cycle korvel supervision 2>&1)
    ended=$?
    line=$(printf '%s\n' "$printed" | sed -n 's/^Heartbeat status: *//p')
    log=$(dispatchers_log)
    [ -n "$line" ] || [ "$(printf '%s\n' "$log" | last_start)" = "$earlier_start" ] ||
        line=$(printf '%s\n' "$log" | logged_trouble)
    case $ended:$line in
        "$was_ended":) echo healthy ;;
        "$was_killed":) echo "unknown: supervision hung" ;;
        "$was_ended_early":) echo "unknown: the log of the dispatchers does not show that supervision began" ;;
        *) echo "unhealthy: ${line:-supervision ended with status $ended}" ;;
    esac
}

# korvel makes directories even if it only prints.
heartbeat() {
    missing=
    for folder in "$work/fuse" "$work"; do
        exists "$folder" || missing="$missing $folder"
    done
    supervise_once
    # shellcheck disable=SC2086 # the names have no blanks
    [ -z "$missing" ] || rmdir $missing 2> /dev/null
}

# --- The description ---------------------------------------------------------------------------------------------

# The release in the program's ELF note, which is at the beginning of the program.
release() {
    head -c 65536 "$(command -v korvel)" | tr -c '[:print:]' '\n' |
        sed -n 's/.*"name":"korvel","version":"\([^"]*\)".*/\1/p' | head -n 1
}

# describe_board BOARD
describe_board() {
    key format 1
    key board "$1"
    release=$(release)
    [ -z "$release" ] || key korvel "$release"
    key zone "$(zone)"
    key deployment "$(deployment)"
    key kernel "$(uname -r)"
}

# probes INTERFACE...
probes() {
    for interface in "$@"; do
        probe "getport $interface" getport "$interface"
    done
    probe heartbeat heartbeat
}
