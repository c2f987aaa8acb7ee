#!/bin/sh
# The job that korvel-fleet runs on a board, with one ssh: `sh -s -- MODE TOKEN ...`, and this text as standard input.
#   collect TOKEN BOARD KEYWORD LIMIT INTERFACE...   probes, makes a package, sends its run file and the package
#   probe TOKEN BOARD INTERFACE...                   probes, sends a run file without a command
#   run TOKEN ARGUMENT...                            runs korvel with the arguments
# Standard output is a stream of lines, some of which announce bytes:
#   korvel-fleet/1 TOKEN    the first line; what shell startup files printed before it does not count
#   run LENGTH              the run file follows
#   package LENGTH SHA256   the package follows
#   failed CAUSE            or
#   end                     the last line
# In mode run, all after the first line is the output of korvel.
# A board has only a shell and small tools, such as those of busybox. Texts are kept in variables, because /tmp may be
# full. The job removes only what it made itself, and gives back under the old name what it had to rename.
# shellcheck disable=SC2154,SC2317 # CMake adds collection.sh, which assigns some variables; traps call functions
set -u
umask 077

PATH=${PATH:-/usr/bin:/bin}:/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin
lock_tries=60  # seconds
heartbeat_seconds=3  # a missing answer is reported after two
private=/tmp/korvel-fleet-$(id -u)
own=$private/$$  # the work files of earlier collections, while this job runs

@collection@
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

# One line without control characters, of bounded length.
one_line() { tr '[:cntrl:]' ' ' | head -c 400 | sed 's/  *$//'; }

# probe NAME COMMAND...: the line of the run file that holds the output of the command.
probe() {
    printf 'probe: %s: ' "$1"
    shift
    "$@" 2>&1 < /dev/null | one_line
    echo
}

# The newest result of a cycle in the log of the dispatchers. korvel makes directories even if it only prints.
logged_heartbeat() {
    missing=
    for folder in "$work/fuse" "$work"; do
        exists "$folder" || missing="$missing $folder"
    done
    korvel print dlog 2> /dev/null | sed -n '/Supervision: Starting/ h
        /Supervision: Heartbeat status:/ H
        $ { x; s/^[^\n]*//; s/.*Heartbeat status: *//p; }'
    # shellcheck disable=SC2086 # the names have no blanks
    [ -z "$missing" ] || rmdir $missing 2> /dev/null
}

# Supervision runs for ever while all is well, so it is ended after a cycle. It prints an answer that is an error, and
# only logs an answer that is missing.
heartbeat() {
    printed=$(timeout "$heartbeat_seconds" korvel supervision 2>&1)
    ended=$?
    line=$(printf '%s\n' "$printed" | sed -n 's/^Heartbeat status: *//p')
    [ -n "$line" ] || line=$(logged_heartbeat)
    case $ended:$line in
        124: | 143:) echo healthy ;;
        *) echo "unhealthy: ${line:-supervision ended with status $ended}" ;;
    esac
}

# The release in the program's ELF note.
release() {
    tr -c '[:print:]' '\n' < "$(command -v korvel)" | sed -n 's/.*"name":"korvel","version":"\([^"]*\)".*/\1/p' |
        head -n 1
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
        probe "getport $interface" korvel getport "$interface"
    done
    probe heartbeat heartbeat
}

# send_run COMMAND: sends the output of the command. The dot protects line feeds at its end.
send_run() {
    text=$("$1" && echo .) || give_up no-run "cannot describe the run"
    text=${text%.}
    answer "run $(printf '%s' "$text" | wc -c | tr -d ' ')"
    printf '%s' "$text"
}

# --- The files of a collection -----------------------------------------------------------------------------------

# Opens the lock that the package services of the board use, too: only one run at a time.
lock_packages() {
    [ -d "$directory" ] || give_up no-directory "$directory is missing"
    exec 9< "$directory"
    tries=$lock_tries
    until flock -n 9; do
        tries=$((tries - 1))
        [ "$tries" -gt 0 ] || give_up locked "another run held $directory for $lock_tries seconds"
        sleep 1
    done
}

is_job_alive() { kill -0 "$1" 2> /dev/null; }

# put_back FILE: renames the package that a job set aside, unless there is a new one.
put_back() { exists "${1%.before-fleet.*}" || mv "$1" "${1%.before-fleet.*}"; }

# take_back FOLDER: moves the work files that a job set aside back to the work directory.
take_back() {
    for file in "$1"/*; do
        ! exists "$file" || exists "$work/${file##*/}" || mv "$file" "$work/" || return 1
    done
    rmdir "$1"
} 2> /dev/null

# Cleans up after jobs that were killed.
settle_earlier_jobs() {
    for file in "$directory"/netfp_logs*.tgz.fleet.*; do
        ! exists "$file" || is_job_alive "${file##*.}" || rm -f "$file"
    done
    for file in "$directory"/netfp_logs*.tgz.before-fleet.*; do
        ! exists "$file" || put_back "$file"
    done
    for folder in "$private"/*; do
        ! exists "$folder" || is_job_alive "${folder##*/}" || take_back "$folder"
    done
}

prepare_private_directory() {
    mkdir -m 0700 "$private" 2> /dev/null
    is_own_directory "$private"
}

# move_collected FROM TO
move_collected() {
    for name in $collected; do
        ! exists "$1/$name" || mv "$1/$name" "$2/" || return 1
    done
} 2> /dev/null

# The package would include files of an earlier collection that korvel does not overwrite.
set_earlier_files_aside() {
    [ -n "$(earlier_files)" ] || return 0
    # shellcheck disable=SC2094 # the descriptor is for the lock
    prepare_private_directory && is_own_directory "$work" && mkdir "$own" &&
        (lock_collection && move_collected "$work" "$own") 8< "$work" 9>&-
}

# Removes the work files of this run, and brings the earlier ones back. Removes nothing if somebody collects at the same
# time, or if files of an earlier collection are among them.
clear_work() {
    ! "$mixed" || return 0
    exists "$made" && is_own_directory "$work" && [ -z "$(find "$work" -newer "$made")" ] || return 0
    for name in $collected; do
        rm -rf "${work:?}/$name"
    done
    ! exists "$own" || take_back "$own"
} 2> /dev/null

# The name of the package that KEYWORD makes; for plain packages, the one that was not there before.
name_of_package() {
    case $1 in
        pkg) new_plain_package ;;
        pkg-trs) echo netfp_logs.tgz ;;
        pkg-sup) echo netfp_logs_sup.tgz ;;
        pkg-pm) echo netfp_logs_post_mortem.tgz ;;
        pkg-sdown) echo netfp_logs_shutdown.tgz ;;
    esac
}

new_plain_package() {
    for name in $(plain_packages); do
        case $before in *"$name"*) continue ;; esac
        echo "$name"
        return
    done
}

# Prints up to errors_kept bytes, and reads the rest.
limited() {
    head -c "$errors_kept"
    cat > /dev/null
}

# Sets errors and status. The status goes around the pipe, and follows the text on a line of its own.
run_korvel() {
    began=$(now)
    errors=$({
        status=$({
            { korvel "$keyword" 2>&1 > /dev/null 4>&- 5>&- 9>&-; echo "$?" >&4; } | tr -d '\000' | limited >&5
        } 4>&1)
        printf '\n%s' "$status"
    } 5>&1)
    ended=$(now)
    status=${errors##*"$newline"}
    errors=${errors%"$newline"*}
}

newline='
'

# Runs korvel. The new package gets the name $made, and a previous one of the same name has its name again.
make_package() {
    before=$(plain_packages)
    fixed=$(name_of_package "$keyword")
    aside=
    if [ -n "$fixed" ] && exists "$directory/$fixed"; then
        aside=$directory/$fixed.before-fleet.$$
        mv "$directory/$fixed" "$aside" || give_up no-room "cannot rename the previous package"
    fi
    run_korvel
    package=$(name_of_package "$keyword")
    [ -z "$package" ] || ! exists "$directory/$package" || mv "$directory/$package" "$made"
    [ -z "$aside" ] || put_back "$aside"
}

clean_up() {
    rm -f "$made"
    [ -z "${aside-}" ] || ! exists "$aside" || put_back "$aside"
    ! exists "$own" || take_back "$own"
    rmdir "$private" 2> /dev/null
}

describe_run() {
    printf '%s\n' "$description"
    key command "korvel $keyword"
    key status "$status"
    key began "$began"
    key ended "$ended"
    [ -z "$checksum" ] || key sha256 "$checksum"
    printf '\n%s' "$errors"
}

describe_board_only() { printf '%s\n\n' "$description"; }

has_no_room() {
    df -Pk "$directory" 2> /dev/null | {
        read -r _ && read -r _ _ _ left_kib _ && [ "$left_kib" -lt 8 ]
    }
}

send_package() {
    size=$(wc -c < "$made" | tr -d ' ')
    [ "$size" -le "$limit" ] || give_up too-large "the package has $size bytes: more than the limit of $limit bytes"
    answer "package $size $checksum"
    cat "$made"
}

collect() {
    board=$1 keyword=$2 limit=$3
    shift 3
    need_korvel
    made=$directory/netfp_logs_$$.tgz.fleet.$$
    trap clean_up EXIT
    trap 'exit 1' HUP INT TERM PIPE
    description=$(describe_board "$board" && probes "$@")
    lock_packages
    settle_earlier_jobs
    mixed=false
    set_earlier_files_aside || {
        mixed=true
        say "cannot move the files of an earlier collection: the package contains them"
    }
    make_package
    checksum=
    ! exists "$made" || checksum=$(sha256sum < "$made" | cut -d ' ' -f 1)
    no_room=false
    ! has_no_room || no_room=true
    clear_work
    exec 9<&-  # sending may take long
    send_run describe_run
    exists "$made" || give_up no-package "korvel made no package: it ended with status $status"
    send_package
    if "$no_room" && ! is_whole "$made"; then
        give_up no-room "no room is left below $directory"
    fi
    answer end
}

probe_board() {
    board=$1
    shift
    need_korvel
    description=$(describe_board "$board" && probes "$@")
    send_run describe_board_only
    answer end
}

run_command() {
    command -v korvel > /dev/null || exit 127
    exec korvel "$@"
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
