# shellcheck shell=sh disable=SC2034 # the scripts use the variables
# What the scripts that run a collection know about it: its files, and the run file that describes it.
# CMake puts this text in place of @collection@ in make-package, and in the job of korvel-fleet.

directory=/ffs/run/logs
work=/tmp/korvel
collected='fuse mmi ti linux netfp_logs_post_mortem.tgz'
errors_kept=1044480  # bytes of standard error; korvel-report reads up to 1 MiB of PACKAGE.run

user=$(id -u)

exists() { [ -e "$1" ] || [ -L "$1" ]; }

# gzip detects a truncated file. tar detects an archive that was truncated before its compression.
is_whole() { [ ! -L "$1" ] && gzip -t "$1" && gzip -dc "$1" | tar -tf - > /dev/null; } 2> /dev/null

# Whether $1 is a directory, not a link to one, and belongs to the user who runs this.
# shellcheck disable=SC3067 # the shells of boards know -O
is_own_directory() { [ -d "$1" ] && [ ! -L "$1" ] && [ -O "$1" ]; }

# Prints those of the collected files that exist.
earlier_files() {
    for name in $collected; do
        ! exists "$work/$name" || echo "$name"
    done
}

# korvel holds this lock while it collects, at most for a minute.
lock_collection() {
    tries=60
    until flock -n 8; do
        tries=$((tries - 1))
        [ "$tries" -gt 0 ] || return 1
        sleep 1
    done
}

# await PID: waits for a child process, also if signals interrupt the wait. Some shells print how it ended.
await() {
    while wait "$1"; awaited=$?; [ "$awaited" -gt 128 ] && kill -0 "$1"; do :; done
    return "$awaited"
} 2> /dev/null

now() { date -u +%Y-%m-%dT%H:%M:%SZ; }

# The zone of local times, by name if it has one, otherwise as an offset.
zone() {
    name=${TZ-}
    name=${name#:}
    [ -n "$name" ] || ! [ -f /etc/timezone ] || read -r name < /etc/timezone
    [ -n "$name" ] || name=$(readlink /etc/localtime)
    name=${name##*/zoneinfo/}
    case $name in
        '' | *[./]localtime | /* | .*)
            name=$(date +%z)
            printf "%s:%s\n" "${name%??}" "${name#???}"
            ;;
        *) echo "$name" ;;
    esac
}

# Those of the three files that exist, see fpdispatcher.conf(5).
deployment() {
    found=
    for flag in is_ant is_master; do
        ! exists "/rom/private/$flag" || found="$found $flag"
    done
    if [ -f /rom/config/deployment_type ]; then
        read -r word _ < /rom/config/deployment_type
        found="$found deployment_type=$word"
    fi
    found=${found:- no deployment_type}
    printf '%s\n' "${found# }"
}

# key NAME VALUE: one line, even if the value has several.
key() {
    case $2 in
        *[[:cntrl:]]*) printf '%s: %s\n' "$1" "$(printf %s "$2" | tr -d '[:cntrl:]')" ;;
        *) printf '%s: %s\n' "$1" "$2" ;;
    esac
}

digits='[0-9][0-9][0-9][0-9][0-9][0-9]'

# Prints the names without the directory, newest first. Sorts by file time, because a wrong clock leaves a wrong name.
plain_packages() {
    # shellcheck disable=SC2012,SC2086 # korvel chooses the names; the shell must expand the pattern
    (cd "$directory" && ls -td netfp_logs_${digits}_$digits.tgz 2> /dev/null)
}
