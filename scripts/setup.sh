#!/usr/bin/env bash
# Installs the Debian packages that are missing for one purpose or several, as root or by sudo. The purposes, and the
# packages for each, are in packages.txt. NAME:ARCHITECTURE is a library for another processor.
#   scripts/setup.sh PURPOSE...
set -euo pipefail
cd "$(dirname "$0")"

purposes=$(awk '!/^#/ && !seen[$2]++ { print $2 }' packages.txt | paste -sd ' ')

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
done < <(grep -v '^#' packages.txt)

if [ ${#missing[@]} -eq 0 ]; then
    exit 0
fi
echo "== Installing: ${missing[*]}"
as_root=()
if [ "$(id -u)" -ne 0 ]; then
    if ! command -v sudo > /dev/null; then
        echo "Neither root nor sudo. Have these packages installed: ${missing[*]}" >&2
        exit 1
    fi
    as_root=(sudo)
fi
export DEBIAN_FRONTEND=noninteractive
for package in "${missing[@]}"; do  # a library for another processor than this machine's
    case "$package" in *:*) "${as_root[@]}" dpkg --add-architecture "${package##*:}" ;; esac
done
"${as_root[@]}" apt-get update -qq
"${as_root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
