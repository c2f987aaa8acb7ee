#!/usr/bin/env bash
# Installs the missing Debian packages for one or more purposes, as root or by sudo. scripts/packages.txt lists the
# purposes and their packages. NAME:ARCHITECTURE is a library for another processor.
#   scripts/setup.sh PURPOSE...
set -euo pipefail
cd "$(dirname "$0")/.."
# shellcheck source=scripts/lib/progress.sh
. scripts/lib/progress.sh

list=scripts/packages.txt
purposes=$(awk '!/^#/ && !seen[$2]++ { print $2 }' "$list" | paste -sd ' ')

refuse() {
    printf '%s\n' "$@" "usage: scripts/setup.sh PURPOSE..." "Purposes: $purposes" >&2
    exit 2
}

[ $# -gt 0 ] || refuse
for purpose; do
    case " $purposes " in *" $purpose "*) ;; *) refuse "Unknown purpose: $purpose" ;; esac
done

wanted="$*"
missing=()
while read -r package purpose; do
    case " $wanted " in *" $purpose "*) ;; *) continue ;; esac
    state=$(dpkg-query -W -f '${db:Status-Abbrev}' "$package" 2> /dev/null || true)
    case "$state" in ii*) ;; *) missing+=("$package") ;; esac
done < <(grep -v '^#' "$list")

if [ ${#missing[@]} -eq 0 ]; then
    exit 0
fi

as_root=(env DEBIAN_FRONTEND=noninteractive)
if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo > /dev/null; then
        echo "You are not root, and sudo is not installed. Ask for these packages: ${missing[*]}" >&2
        exit 1
    fi
    as_root=(sudo "${as_root[@]}")
fi

install_missing() {
    local package
    for package in "${missing[@]}"; do
        case "$package" in *:*) "${as_root[@]}" dpkg --add-architecture "${package##*:}" || return ;; esac
    done
    "${as_root[@]}" apt-get update -qq &&
        "${as_root[@]}" apt-get install -y -qq --no-install-recommends -o APT::Status-Fd=1 "${missing[@]}"
}

log=$(mktemp --tmpdir korvel-setup-XXXXXX.log)
with_progress "$log" "Installing ${missing[*]}" install_missing
rm "$log"
