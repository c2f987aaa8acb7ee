# shellcheck shell=bash
# What the demos share: the build, and how they show commands. To be sourced after progress.sh.

# build_everything LOG
build_everything() {
    with_progress "$1" "Building Korvel, the simulated board and the reader of packages" build
}

build() {
    CMAKE_GENERATOR=Ninja cmake -B build -DKORVEL_BOARDSIM=ON -DKORVEL_REPORT=ON && cmake --build build
}

section() { printf '\n== %s\n' "$*"; }

# on_host NOTE COMMAND: runs a command on this machine, and shows it as if it were typed here.
on_host() {
    printf '\n# %s\n$ %s\n' "$1" "$2"
    eval "$2"
}
