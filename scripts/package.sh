#!/usr/bin/env bash
# Builds the Debian packages in build-packages/ and has lintian look at them.
#   scripts/package.sh [--check]    --check: also builds them a second time, which must give the same files, and
#                                   installs, uses, upgrades and removes them in a fresh root; as root
set -euo pipefail
cd "$(dirname "$0")/.."
umask 022

step() {
    echo
    echo "== $*"
}

case "$*" in
    '' | --check) ;;
    *)
        sed -n '2,4s/^# //p' "$0" >&2
        exit 2
        ;;
esac

# build_in FOLDER: a copy of the source there, and the packages beside it, where dpkg-buildpackage leaves them.
build_in() {
    mkdir -p "$1/korvel-$version"
    tar --exclude=./.git --exclude='./build*' -cf - . | tar -xf - -C "$1/korvel-$version"
    if ! (cd "$1/korvel-$version" && dpkg-buildpackage --no-sign > "$1/build.log" 2>&1); then
        tail -n 20 "$1/build.log" >&2
        exit 1
    fi
}

# What a file is made of must not depend on where, when and by whom it is built.
build_again() {
    (
        umask 077
        export TZ=Asia/Kathmandu LC_ALL=C.UTF-8 HOME=/nonexistent DEB_BUILD_OPTIONS=parallel=1
        build_in "$folder/another-place"
    )
    (cd "$folder" && sha256sum ./*.deb ./*.dsc ./*.tar.xz) > "$folder/sums"
    (cd "$folder/another-place" && sha256sum --quiet --check "$folder/sums")
}

scripts/setup.sh build board package
version=$(dpkg-parsechangelog -S Version)
folder=$PWD/build-packages
rm -rf "$folder"

step "Building"
build_in "$folder"

step "lintian"
lintian -EviI --pedantic --allow-root --fail-on error,warning "$folder/korvel_$version"_*.changes

packages=("$folder"/{korvel,korvel-host-platform,korvel-boardsim}_"$version"_*.deb)
if [ $# -eq 1 ]; then
    step "Building again, elsewhere"
    build_again
    step "In a fresh root"
    scripts/check-packages.sh "${packages[@]}"
fi

step "Packages"
printf '%s\n' "${packages[@]}"
