# shellcheck shell=sh disable=SC2013,SC2046,SC2086 # lists of numbers
# Ends programs that take too long. A board may lack `timeout`, and the one of busybox signals only the program itself.
# korvel ignores TERM while it makes a package: the programs that it started must end, so that it can go on without them.

was_ended=124  # the status of a program that ended within the grace time
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

# A process that ended is a zombie until its parent waits for it.
is_running() {
    key='' state=''
    while read -r key state _ && [ "$key" != State: ]; do :; done < "/proc/$1/status"
    case $key$state in
        State:[!XZ]) return 0 ;;
    esac
    return 1
} 2> /dev/null

# running PROCESS...: prints those that run.
running() {
    for process in "$@"; do
        ! is_running "$process" || echo "$process"
    done
}

# stop PID GRACE: TERM for the process and its descendants, then KILL for the rest. The status is 1 if there was a rest.
stop() {
    left=$2
    victims=$(tree "$1")
    kill -TERM $victims
    sleep 0.1  # most programs end at once; the sleep of some boards needs whole seconds, and fails
    while victims=$(running $victims) && [ -n "$victims" ]; do
        [ "$left" -gt 0 ] || break
        left=$((left - 1))
        sleep 1
    done
    [ -n "$victims" ] || return 0
    kill -KILL $victims $(tree "$1")
    return 1
} 2> /dev/null

# watch PID SECONDS GRACE: ends the process when the time is over. USR1 ends the watch: TERM may be ignored. USR1 may come
# as soon as the sleep has started, so the trap uses $! and not a variable that the next command sets.
watch() {
    earlier=$!
    trap '[ "$!" = "$earlier" ] || kill -KILL "$!"; exit 0' USR1
    sleep "$2" &
    wait "$!"
    trap '' USR1
    stop "$1" "$3" || exit "$was_killed"
    exit "$was_ended"
}

# start_limited SECONDS GRACE COMMAND...: runs the command in the background, as $command, for a limited time.
# Descriptors 4 and above are closed: nothing may keep a pipe or the lock.
start_limited() {
    seconds=$1 grace=$2
    shift 2
    "$@" < /dev/null 4>&- 5>&- 9>&- &
    command=$!
    # For a redirected function, the shell would keep copies of the descriptors. exec keeps none.
    { exec > /dev/null 2>&1 4>&- 5>&- 9>&-; watch "$command" "$seconds" "$grace"; } &
    watcher=$!
}

# Waits for the end of $command. Returns its status, or $was_ended or $was_killed.
finish_limited() {
    await "$command"
    result=$?
    kill -USR1 "$watcher" 2> /dev/null
    await "$watcher"
    watched=$?
    case $watched in
        "$was_ended" | "$was_killed") return "$watched" ;;
    esac
    return "$result"
}

# within SECONDS GRACE COMMAND...
within() {
    start_limited "$@"
    finish_limited
}
