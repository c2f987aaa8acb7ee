#!/usr/bin/env bash
# Installs the packages in a fresh root, upgrades them, uses them without privilege and removes them. Fails if a file
# is left behind. Needs to run as root.
#   scripts/check-packages.sh DEB...
# shellcheck disable=SC2016 # the words in single quotes are for a shell in the fresh root
set -euo pipefail

names=(korvel korvel-boardsim korvel-host-platform)
version=$(dpkg-deb --field "$1" Version)

if [ "$(id -u)" -ne 0 ]; then
    echo "Only root can make a fresh root. Type: sudo $0 $*" >&2
    exit 1
fi

work=$(mktemp -d)
root=$work/root
trap 'rm -rf --one-file-system "$work"' EXIT

# in_root COMMAND...: runs COMMAND as the first process of a machine whose file system is the fresh root. chroot would
# not do: inside it, the kernel refuses user namespaces to users without privilege.
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

as_somebody() { in_root runuser -u nobody -- "$@"; }

# expect WANTED COMMAND...: fails unless the whole output of COMMAND is WANTED.
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

# Lists all files, except the records that apt and dpkg keep of their own work.
files() {
    find "$root" -xdev -path "$root/var/log/*" -o -path "$root/var/cache/*" -o -path "$root/var/lib/apt/*" \
        -o -path "$root/var/lib/dpkg/*-old" -o -printf '/%P\n' | sort
}

# The root already has the dependencies. So all files that come and go belong to the packages.
make_root() {
    # shellcheck source=/dev/null
    . /etc/os-release
    mmdebstrap --quiet --variant=minbase \
        --include=bash-completion,bubblewrap,libseccomp2,libtomlplusplus3,man-db,procps,systemd "$VERSION_CODENAME" "$root"
}

# Lays out the packages as they are, and with a lower number as an earlier release.
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

use_as_somebody() {
    as_somebody man -P cat korvel | grep 'control and diagnostics of a base-station board'
    expect 'getport' as_somebody bash -c '
        . /usr/share/bash-completion/bash_completion
        _completion_loader korvel
        COMP_LINE="korvel getp" COMP_POINT=11 _korvel
        echo "${COMPREPLY[@]}"'
    as_somebody korvel --help | grep '^  Log Collection:'
    as_somebody boardsim --bare -- man korvel-package | grep 'packages of a board'
    expect '2' as_somebody boardsim -- korvel getport eth1
    as_somebody boardsim -- korvel -d all print | grep '^### sfn Socket Service Info #'
}

look_at_units() {
    expect '' in_root sh -c 'systemd-analyze verify /lib/systemd/system/*korvel*'
    expect $'disabled\ndisabled\ndisabled\ndisabled' in_root systemctl is-enabled \
        tmp-korvel.mount korvel-archive.service korvel-supervision.service korvel-shutdown-package.service
}

echo "Making a fresh root (about a minute) ..."
make_root
files > "$work/before"

echo "Installing an earlier release, and upgrading it ..."
lay_out_releases "$@"
install_release 0.9
install_release "$version"

echo "Using the packages without privilege ..."
use_as_somebody
look_at_units

echo "Removing the packages ..."
apt remove "${names[@]}"
expect 'gone' in_root sh -c 'test -e /usr/bin/korvel || test -e /usr/bin/boardsim || echo gone'
apt purge korvel  # dpkg forgets a removed package without a postrm script, as the other two are
rm -rf "$root/release"
files > "$work/after"
diff "$work/before" "$work/after"
echo "  done, and no file is left behind"
