#!/usr/bin/env bash
# Tests korvel on a whole emulated board: two processors for 32-bit ARM, their own kernel, systemd, disks. All C++ tests
# run there, those of tests/arm-left-out.txt among them. Then the Debian packages are installed, and used with systemd.
# Needs root: the script makes a root file system for ARM, in a user namespace. It installs missing packages.
#   scripts/test-board.sh [tests [FILTER] | units]     default: both parts; FILTER is a filter of GoogleTest
# build-board-arm keeps kernel and root file system for the next run. Remove it to make them again.
# shellcheck disable=SC2317 # with_progress calls functions
set -euo pipefail
cd "$(dirname "$0")/.."
umask 022
# shellcheck source=scripts/lib/progress.sh
. scripts/lib/progress.sh
# shellcheck source=scripts/lib/machine.sh
. scripts/lib/machine.sh

arm=build-arm
parts=${1:-tests units}
filter=${2:-*}

usage() {
    sed -n '5s/^# *//p' "$0" >&2
    exit 2
}

case "$#-$parts" in 0-* | [12]-tests | 1-units) ;; *) usage ;; esac
if [ "$(id -u)" -ne 0 ]; then
    echo "This script must run as root: sudo $0 $*" >&2
    exit 1
fi

# Uses ccache if it is there.
build_tests() {
    local launcher=()
    ! command -v ccache > /dev/null || launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
    CMAKE_GENERATOR=Ninja cmake --preset arm -DCMAKE_UNITY_BUILD=ON "${launcher[@]}" && cmake --build --preset arm
}

# The machine sees the programs and the sources at the same paths as this machine, because ctest knows the paths.
make_tree_disk() {
    rm -rf "$machine/tree"
    mkdir "$machine/tree"
    tar --exclude=./.git --exclude='./build*' -cf - . | tar -xf - -C "$machine/tree"
    tar --exclude='*.o' --exclude='*.a' --exclude='*.gch' -cf - "$arm" | tar -xf - -C "$machine/tree"
    make_disk tree "$machine/tree" 256
    rm -rf "$machine/tree"
}

# GoogleTest takes one list of tests that are left out, after a hyphen.
whole_filter() {
    local left_out
    left_out=$(sed -n 's/^ \+//p' tests/board/left-out.txt | paste -sd ':')
    case $filter in
        *-*) echo "$filter:$left_out" ;;
        *) echo "$filter-$left_out" ;;
    esac
}

run_tests() {
    with_progress "$machine/build.log" "Building all tests for ARM" build_tests && make_tree_disk || return
    begin_job run-tests
    printf '%s\n' "$PWD" "$(whole_filter)" > "$share/settings"
    local status=0
    with_progress "$machine/tests.log" "Running the tests on the emulated board" run_machine 7200 tree || status=1
    report_tests
    return "$status"
}

# The failed tests, the programs that did not come to their end, and the number of tests.
report_tests() {
    local results=("$share"/results/*_test)
    grep -ahE '^\[  FAILED  \] ' "${results[@]}" | sort -u
    grep -aLE '^exit status [01]$' "${results[@]}" "$share"/results/*.part 2> /dev/null | sed 's/^/Not at its end: /'
    cat "${results[@]}" | awk '
        /^\[       OK \] / { passed++ }
        /^\[  FAILED  \] [A-Za-z0-9_\/]+\.[A-Za-z0-9_\/]+$/ { failed++ }
        END { printf "%d tests passed, %d failed.\n", passed, failed }'
}

# The profile leaves out korvel-report, which is for workstations.
build_packages() {
    local version folder=$PWD/$machine/packages
    version=$(dpkg-parsechangelog -S Version)
    rm -rf "$folder"
    mkdir -p "$folder/korvel-$version"
    tar --exclude=./.git --exclude='./build*' -cf - . | tar -xf - -C "$folder/korvel-$version"
    # Without -d, it asks for the build-essential of ARM, which cannot run here. scripts/setup.sh installs what is needed.
    cd "$folder/korvel-$version" && dpkg-buildpackage --no-sign -B -d -aarmhf -Ppkg.korvel.board
}

# The demo without its build, and without the sections of korvel-report.
demo_of_the_board() { sed '/^scripts\/setup.sh/,$d; /scripts\/lib/d; /^cd /d' scripts/demo.sh; }

run_units() {
    local status=0
    with_progress "$machine/packages.log" "Building the packages for ARM" build_packages || return
    begin_job run-units
    rm -rf "$machine/flash"
    mkdir -p "$share/packages" "$machine/flash/run/logs"
    cp "$machine"/packages/korvel{,-boardsim,-host-platform}_*_armhf.deb "$share/packages"
    cp tests/board/{fastpath.service,fastpath.target,start-fastpath} "$share"
    { cat scripts/lib/demo.sh; demo_of_the_board; echo show_everything; } > "$share/demo.sh"
    make_disk flash "$machine/flash" 64
    with_progress "$machine/units.log" "Using the packages on the emulated board" run_machine 1800 flash || status=1
    tr -d '\r' < "$machine/units.log" | grep -aE '^  (passed|FAILED)'
    check_flash && return "$status"
}

# The package of the power-off was written after the job. The flash is read without mounting it.
check_flash() {
    local out=$machine/logs package
    rm -rf "$out"
    mkdir "$out"
    debugfs -R "rdump /run/logs $out" "$machine/flash.img" 2> "$machine/debugfs.log"
    package=$out/logs/netfp_logs_shutdown.tgz
    if gzip -t "$package" && tar -tzf "$package" > "$machine/shutdown.list" && grep -q '^status: 0$' "$package.run"; then
        echo "  passed  a package at power-off, with $(wc -l < "$machine/shutdown.list") files"
    else
        echo "  FAILED  a package at power-off"
        return 1
    fi
}

scripts/setup.sh build board test arm package emulated
make_machine
status=0
for part in $parts; do
    case $part in
        tests) run_tests || status=1 ;;
        units) run_units || status=1 ;;
    esac
done
[ "$status" -eq 0 ] && echo "All passed in $((SECONDS / 60)) minutes" || echo "Failed"
exit "$status"
