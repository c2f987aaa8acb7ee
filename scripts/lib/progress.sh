# shellcheck shell=bash
# Shows a long command as lines of progress. To be sourced.

# with_progress LOG TITLE COMMAND...
# Runs COMMAND, writes its output to LOG and shows the percentage that is done. If COMMAND fails, the function prints
# the end of LOG to standard error and returns 1.
with_progress() {
    local log=$1 title=$2 start=$SECONDS
    shift 2
    mkdir -p "$(dirname "$log")"
    echo "$title ..."
    if (set -o pipefail; "$@" < /dev/null 2>&1 | tee "$log" | show_percentages); then
        echo "  done in $((SECONDS - start)) s"
    else
        printf '  failed. The end of %s:\n' "$log" >&2
        tail -n 20 "$log" >&2
        return 1
    fi
}

# Reads a command's output. A terminal shows each percentage in place of the one before, a file shows the quarters.
show_percentages() {
    local line percent shown=0
    while IFS= read -r line; do
        percent=$(percentage_in "$line") || continue
        if [ -t 1 ]; then
            printf '\r  %3d %% ' "$percent"
        elif ((percent / 25 > shown && percent < 100)); then
            shown=$((percent / 25))
            echo "  $((shown * 25)) %"
        fi
    done
    [ ! -t 1 ] || printf '\r\e[K'
}

# The forms are those of ninja, make, and apt-get with APT::Status-Fd, which first downloads and then installs.
percentage_in() {
    if [[ $1 =~ ^\[([0-9]+)/([0-9]+)\] ]]; then
        echo $((100 * BASH_REMATCH[1] / BASH_REMATCH[2]))
    elif [[ $1 =~ ^\[\ *([0-9]+)%\] ]]; then
        echo "${BASH_REMATCH[1]}"
    elif [[ $1 =~ ^dlstatus:[^\ ]*:([0-9]+)\. ]]; then
        echo $((BASH_REMATCH[1] / 2))
    elif [[ $1 =~ ^pmstatus:[^\ ]*:([0-9]+)\. ]]; then
        echo $((50 + BASH_REMATCH[1] / 2))
    else
        return 1
    fi
}
