#!/usr/bin/env bash
# Builds the Debian packages in build-packages/ and checks them with lintian, blhc and hardening-check.
#   scripts/package.sh [--check]    --check: also builds the packages a second time and compares the files; then
#                                   installs, uses, upgrades and removes them in a fresh root; needs to run as root
set -euo pipefail
cd "$(dirname "$0")/.."
umask 022
# shellcheck source=scripts/lib/progress.sh
. scripts/lib/progress.sh

case "$*" in
    '' | --check) ;;
    *)
        sed -n '2,4s/^# //p' "$0" >&2
        exit 2
        ;;
esac

# build_in FOLDER TITLE: copies the source to FOLDER. dpkg-buildpackage leaves the packages beside the copy.
build_in() {
    mkdir -p "$1/korvel-$version"
    tar --exclude=./.git --exclude='./build*' -cf - . | tar -xf - -C "$1/korvel-$version"
    with_progress "$1/build.log" "$2" build_package "$1/korvel-$version"
}

build_package() { cd "$1" && dpkg-buildpackage --no-sign; }

# The same source gives the same files, whatever the place, the time zone, the language and the user's umask.
build_again() {
    (
        umask 077
        export TZ=Asia/Kathmandu LC_ALL=C.UTF-8 HOME=/nonexistent DEB_BUILD_OPTIONS=parallel=1
        build_in "$folder/another-place" "Building the packages again, in another place"
    )
    (cd "$folder" && sha256sum ./*.deb ./*.dsc ./*.tar.xz) > "$folder/sums"
    (cd "$folder/another-place" && sha256sum --quiet --check "$folder/sums")
    echo "  the files are the same"
}

# debian/*.lintian-overrides names what is deliberate, with the reasons.
check_with_lintian() {
    echo "Checking the packages with lintian ..."
    lintian -EiI --pedantic --allow-root --fail-on error,warning "$folder/korvel_$version"_*.changes
    echo "  done"
}

# Every command has the options against attacks, and every program shows them. Two cannot be seen: Debian's start files have no
# marks for control flow, and a small library may call no function that _FORTIFY_SOURCE protects.
check_hardening() {
    echo "Checking the options against attacks with blhc and hardening-check ..."
    blhc --all "$folder/build.log"
    local package files
    for package in "${packages[@]}"; do dpkg-deb -x "$package" "$folder/root"; done
    mapfile -t files < <(find "$folder/root" -type f -exec sh -c 'head -c 4 "$1" | grep -q ELF' sh {} \; -print)
    hardening-check --quiet --nocfprotection --nofortify "${files[@]}"
    echo "  done, ${#files[@]} programs and libraries"
}

scripts/setup.sh build board report package
version=$(dpkg-parsechangelog -S Version)
folder=$PWD/build-packages
rm -rf "$folder"

build_in "$folder" "Building the packages"
check_with_lintian
packages=("$folder"/{korvel,korvel-host-platform,korvel-boardsim,korvel-report}_"$version"_*.deb)
check_hardening
if [ $# -eq 1 ]; then
    build_again
    scripts/check-packages.sh "${packages[@]}"
fi
printf '\nPackages:\n'
printf '  %s\n' "${packages[@]#"$PWD/"}"
