#!/bin/sh
# The job that korvel-fleet runs on a board, with one ssh: `sh -s -- MODE TOKEN ...`, and this text as standard input.
#   collect TOKEN BOARD KEYWORD LIMIT INTERFACE...   probes, makes a package, sends its run file and the package
#   probe TOKEN BOARD INTERFACE...                   probes, sends a run file without a command
#   run TOKEN SECONDS ARGUMENT...                    runs korvel with the arguments, for a limited time
# Standard output is a stream of lines, some of which announce bytes:
#   korvel-fleet/1 TOKEN    the first line; what shell startup files printed before it does not count
#   run LENGTH              the run file follows
#   package LENGTH SHA256   the package follows
#   failed CAUSE            or
#   end                     the last line
# In mode run, all after the first line is the output of korvel.
# A board has only a shell and small tools, such as those of busybox. Texts are kept in variables, because /tmp may be
# full. The job removes only what it made itself, and gives back under the old name what it had to rename.
# shellcheck disable=SC2034,SC2154,SC2317 # CMake adds the parts, which share variables and call functions
set -u
umask 077

PATH=${PATH:-/usr/bin:/bin}:/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin
lock_tries=60  # seconds
probe_tools='date grep head id ls rmdir sed sleep tr wc'
newline='
'
collect_tools='cat find flock gzip mkdir mv rm sha256sum tar'

@collection@
@limits@
@probes@
@earlier@
@package@
say() { echo "korvel-fleet: $*" >&2; }

answer() { printf '%s\n' "$*"; }

# give_up CAUSE TEXT...
give_up() {
    cause=$1
    shift
    say "$@"
    answer "failed $cause"
    exit 1
}

need_korvel() { command -v korvel > /dev/null || give_up no-korvel "korvel is not installed: not found in $PATH"; }

# need_tools TOOL...: a missing tool would look like another failure. Without flock, the lock would seem to be held.
need_tools() {
    for tool in "$@"; do
        command -v "$tool" > /dev/null || give_up no-tool "$tool is not installed: not found in $PATH"
    done
    [ -d "/proc/$$" ] || give_up no-tool "/proc is not mounted"
}

need_find() { find / -prune -newer / > /dev/null 2>&1 || give_up no-tool "find does not know -newer"; }

# send_run TEXT: the text ends with a dot, which protects line feeds.
send_run() {
    text=${1%.}
    answer "run $(LC_ALL=C && echo "${#text}")"  # bytes, not characters
    printf '%s' "$text"
}

# Opens the lock that the package services of the board use, too: only one run at a time.
lock_packages() {
    [ -d "$directory" ] || give_up no-directory "$directory is missing"
    [ -r "$directory" ] || give_up no-directory "$directory cannot be read"
    exec 9< "$directory"
    tries=$lock_tries
    until flock -n 9; do
        tries=$((tries - 1))
        [ "$tries" -gt 0 ] || give_up locked "another run held $directory for $lock_tries seconds"
        sleep 1
    done
}

has_no_room() {
    df -Pk "$directory" 2> /dev/null | {
        read -r _ && read -r _ _ _ left_kib _ && [ "$left_kib" -lt 8 ]
    }
}

# run_value KEY: the value in the run file.
run_value() {
    value=$newline${run%%"$newline$newline"*}
    case $value in
        *"$newline$1: "*) value=${value#*"$newline$1: "} && echo "${value%%"$newline"*}" ;;
    esac
}

# After this, the package has no name: nothing is left if the job is killed, and the next job can have the lock.
open_package() {
    exec 7< "$made"
    rm -f "$made"
}

send_package() {
    [ "$size" -le "$limit" ] || give_up too-large "the package has $size bytes: more than the limit of $limit bytes"
    answer "package $size $(run_value sha256)"
    cat <&7
}

# finish CAUSE: the last line.
finish() {
    case $1 in
        hung) give_up hung "${hung#*: }" ;;
        no-room) give_up no-room "no room is left below $directory" ;;
    esac
    answer end
}

collect() {
    board=$1 keyword=$2 limit=$3
    shift 3
    need_korvel
    # shellcheck disable=SC2086 # the names have no blanks
    need_tools $probe_tools $collect_tools
    need_find
    made=$directory/netfp_logs_$$.tgz.fleet.$$
    trap '! exists "$made" || rm -f "$made"' EXIT
    trap 'exit 1' HUP INT TERM PIPE
    lock_packages
    run=$(make_package "$@") || {
        ! has_no_room || give_up no-room "no room is left below $directory"
        give_up no-package "the previous package cannot be renamed, or the collection was killed"
    }
    first=${run%%"$newline"*}
    run=${run#*"$newline"}
    cause=${first% *} size=${first#* }
    [ -z "$size" ] || open_package || size=
    exec 9<&-  # sending may take long
    send_run "$run"
    if [ -n "$size" ]; then
        send_package
    elif [ -z "$cause" ]; then
        give_up no-package "no package is known to be of this run: korvel ended with status $(run_value status)"
    fi
    finish "$cause"
}

probe_board() {
    board=$1
    shift
    need_korvel
    # shellcheck disable=SC2086 # the names have no blanks
    need_tools $probe_tools
    without_folders describe_and_probe "$@"
    send_run "$description$newline$newline."
    answer end
}

# korvel does not notice that a connection broke, and some of its commands never end.
run_command() {
    command -v korvel > /dev/null || exit 127
    limit=$1
    shift
    command -v sleep > /dev/null || exec korvel "$@"
    within "$limit" "$probe_grace" korvel "$@"
}

# The shell reads this text while it runs it, so nothing may read standard input, and nothing runs before all is read.
main() {
    mode=$1 token=$2
    shift 2
    answer "korvel-fleet/1 $token"
    case $mode in
        collect) collect "$@" ;;
        probe) probe_board "$@" ;;
        run) run_command "$@" ;;
    esac
}
main "$@" < /dev/null
exit
