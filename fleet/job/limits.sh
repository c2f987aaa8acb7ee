# shellcheck shell=sh disable=SC2013,SC2046,SC2086 # lists of numbers, and a waiter that has words
# Ends programs that take too long. A board may lack `timeout`, and the one of busybox signals only the program itself.
# korvel ignores TERM while it makes a package: the programs that it started must end, so that it can go on without them.

was_ended=124  # the status of a program that ended within the grace time
was_ended_early=125  # the same, but the waiter failed
was_killed=137

# Prints the process and its descendants.
tree() {
    echo "$1"
    for child in $(children "$1"); do
        tree "$child"
    done
}

# A kernel may not list children, but each process names its parent. That takes longer.
children() {
    if [ -e "/proc/$$/task/$$/children" ]; then
        for list in "/proc/$1"/task/*/children; do
            read -r numbers < "$list"
            echo "$numbers"
        done
    else
        grep -l "^PPid:[[:space:]]*$1\$" /proc/[0-9]*/status | sed 's,/proc/,,; s,/status,,'
    fi
} 2> /dev/null

# running PROCESS...: prints those that run.
running() {
    for process in "$@"; do
        ! [ -d "/proc/$process" ] || echo "$process"
    done
}

# stop PID GRACE: TERM for the process and its descendants, then KILL for the rest. The status is 1 if there was a rest.
stop() {
    left=$2
    victims=$(tree "$1")
    kill -TERM $victims
    sleep 0.1 2> /dev/null  # most programs end at once; the sleep of some boards needs whole seconds
    while victims=$(running $victims) && [ -n "$victims" ]; do
        [ "$left" -gt 0 ] || break
        left=$((left - 1))
        sleep 1
    done
    [ -n "$victims" ] || return 0
    kill -KILL $victims $(tree "$1")
    return 1
}

# watch PID GRACE WAITER...: ends the process when the waiter is over. USR1 ends the watch: TERM may be ignored.
watch() {
    process=$1 grace=$2
    shift 2
    waiter=
    trap '[ -z "$waiter" ] || kill -KILL $(tree "$waiter"); exit 0' USR1
    "$@" &
    waiter=$!
    result=$was_ended
    wait "$waiter" || result=$was_ended_early
    trap '' USR1
    stop "$process" "$grace" || result=$was_killed
    exit "$result"
}

# within GRACE WAITER COMMAND...: runs the command until the waiter is over, such as 'sleep 10'. Descriptors 4 and above
# are closed in the watcher: nothing but the command may keep a pipe or a lock.
within() {
    grace=$1 waiter=$2
    shift 2
    "$@" < /dev/null &
    command=$!
    watch "$command" "$grace" $waiter > /dev/null 2>&1 4>&- 5>&- 9>&- &
    watcher=$!
    await "$command"
    ended=$?
    kill -USR1 "$watcher" 2> /dev/null
    await "$watcher"
    watched=$?
    case $watched in
        "$was_ended" | "$was_ended_early" | "$was_killed") return "$watched" ;;
    esac
    return "$ended"
}
