#!/usr/bin/env bash
# Installs packages in a new root file system, upgrades them, uses them as an unprivileged user, and removes them.
# Fails if a file is left behind. Must run as root.
#   scripts/check-packages.sh DEB...
# shellcheck disable=SC2016 # a shell in the new root expands the single-quoted texts
set -euo pipefail

names=(korvel korvel-boardsim korvel-host-platform korvel-report)
version=$(dpkg-deb --field "$1" Version)

if [ "$(id -u)" -ne 0 ]; then
    echo "This script must run as root: sudo $0 $*" >&2
    exit 1
fi

work=$(mktemp -d)
root=$work/root
trap 'rm -rf --one-file-system "$work"' EXIT

# in_root COMMAND...: runs a command in the new root, in PID and mount namespaces of its own. Does not use chroot,
# because the kernel allows no user namespaces in a chroot.
in_root() {
    unshare --mount --pid --fork --kill-child sh -euc '
        root=$1
        shift
        mount --bind "$root" "$root"
        mount -t proc proc "$root/proc"
        mount --rbind /dev "$root/dev"
        mount -t tmpfs tmpfs "$root/run"
        cd "$root"
        pivot_root . mnt
        cd /
        umount -l /mnt
        export PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8
        exec "$@"' sh "$root" "$@" < /dev/null
}

as_user() { in_root runuser -u nobody -- "$@"; }

# expect WANTED COMMAND...: fails unless the command's whole output is WANTED.
expect() {
    local wanted=$1 got
    shift
    got=$("$@" 2>&1) || true
    if [ "$got" != "$wanted" ]; then
        printf '%s\nwanted: %s\ngot:    %s\n' "$*" "$wanted" "$got" >&2
        exit 1
    fi
}

apt() {
    if ! in_root env DEBIAN_FRONTEND=noninteractive apt-get -qq -y --no-install-recommends "$@" &> "$work/apt.log"; then
        cat "$work/apt.log" >&2
        exit 1
    fi
}

# Lists all files, without the logs, caches and backups of apt and dpkg.
files() {
    find "$root" -xdev -path "$root/var/log/*" -o -path "$root/var/cache/*" -o -path "$root/var/lib/apt/*" \
        -o -path "$root/var/lib/dpkg/*-old" -o -printf '/%P\n' | sort
}

# Includes the packages' dependencies, so that later changes are only the packages' own.
make_root() {
    # shellcheck source=/dev/null
    . /etc/os-release
    mmdebstrap --quiet --variant=minbase \
        --include=bash-completion,bubblewrap,clustershell,libarchive13,libnettle8,libre2-9,libseccomp2,libsqlite3-0 \
        --include=libtomlplusplus3,man-db,openssh-client,procps,python3,systemd \
        "$VERSION_CODENAME" "$root"
}

# Copies the packages, and makes copies with a lower version number as an earlier release.
lay_out_releases() {
    local package
    mkdir -p "$root/release/$version" "$root/release/0.9"
    cp "$@" "$root/release/$version"
    for package in "$@"; do
        dpkg-deb --raw-extract "$package" "$work/package"
        sed -i -E "s/^Version: .*/Version: 0.9/; s/\(= [^)]*\)/(= 0.9)/g" "$work/package/DEBIAN/control"
        dpkg-deb --root-owner-group --build "$work/package" "$root/release/0.9" > "$work/dpkg-deb.log"
        rm -rf "$work/package"
    done
}

install_release() {
    local packages=("$root/release/$1"/*.deb)
    apt install "${packages[@]#"$root"}"
    expect "$(printf "%s $1\n" "${names[@]}")" in_root dpkg-query -W -f '${Package} ${Version}\n' "${names[@]}"
}

use_as_user() {
    as_user man -P cat korvel | grep 'control and diagnostics of a base-station board'
    expect 'getport' as_user bash -c '
        . /usr/share/bash-completion/bash_completion
        _completion_loader korvel
        COMP_LINE="korvel getp" COMP_POINT=11 _korvel
        echo "${COMPREPLY[@]}"'
    as_user korvel --help | grep '^  Log Collection:'
    as_user boardsim --bare -- man korvel-package | grep 'packages of a board'
    expect '2' as_user boardsim -- korvel getport eth1
    as_user boardsim -- korvel -d all print | grep '^### sfn Socket Service Info #'
    as_user man -P cat korvel-report | grep 'read, check, compare and clean packages'
    as_user sh -c 'boardsim -- sh -c "korvel pkg; cat /ffs/run/logs/*" 2> /dev/null | korvel-report check -' |
        grep '^-: whole'
    as_user man -P cat korvel-fleet | grep 'many boards'
    expect "korvel-fleet $version" as_user korvel-fleet --version
    as_user sh -c 'cd /tmp && korvel-fleet collect -w board -o packages --ssh false
        grep -o "<li>board: the job did not start" packages/index.html && rm -r packages'
}

check_units() {
    expect '' in_root sh -c 'systemd-analyze verify /lib/systemd/system/*korvel*'
    expect $'disabled\ndisabled\ndisabled\ndisabled' in_root systemctl is-enabled \
        tmp-korvel.mount korvel-archive.service korvel-supervision.service korvel-shutdown-package.service
}

echo "Making the root file system"
make_root
files > "$work/before"

echo "Installing an earlier release, upgrading"
lay_out_releases "$@"
install_release 0.9
install_release "$version"

echo "Using the packages"
use_as_user
check_units

echo "Removing the packages"
apt remove "${names[@]}"
expect 'gone' in_root sh -c 'test -e /usr/bin/korvel || test -e /usr/bin/boardsim || echo gone'
apt purge korvel  # dpkg has already forgotten the other two, which have no postrm script
rm -rf "$root/release"
files > "$work/after"
diff "$work/before" "$work/after"
echo "  done, and no file is left behind"
