#!/usr/bin/env bash
# Builds everything for the board's processor and runs the tests there, as far as an emulator of programs goes:
# the unit tests' programs and korvel itself are emulated, the simulated board's peers and the tests of the whole
# program are this machine's. What is left out, and why, is in tests/arm-left-out.txt. Installs what the machine
# lacks.
#   scripts/test-arm.sh [REGEX]     default: every test
set -euo pipefail
cd "$(dirname "$0")/.."

arm=build-arm          # everything, for the board's processor
board=build-arm-board  # korvel, for a board with libraries of its own
run=build-arm-run      # for this machine, but the programs that are emulated
sysroot=/usr/arm-linux-gnueabihf
left_out=tests/arm-left-out.txt
size_limit=$((300 * 1024))

step() {
    echo
    echo "== $*"
}

# The rows of the list of what is left out, without comments.
left_out_rows() { grep -v '^#' "$left_out"; }

build_for_arm() {
    step "Building for ARM: everything"
    CMAKE_GENERATOR=Ninja cmake --preset arm > /dev/null
    cmake --build --preset arm
}

# With the stand-ins in the place of a board's libraries: they have the same interface.
build_for_board() {
    step "Building for ARM: korvel for a board"
    install -D -t "$board/root/usr/lib" "$arm"/lib/korvel/*.so
    CMAKE_GENERATOR=Ninja cmake --preset arm -B "$board" -DKORVEL_TESTS=OFF -DKORVEL_BOARDSIM=OFF \
        -DKORVEL_PLATFORM=board -DKORVEL_PLATFORM_ROOT="$PWD/$board/root" > /dev/null
    cmake --build "$board"
    arm-linux-gnueabihf-strip -o "$board/korvel.stripped" "$board/bin/korvel"
    size=$(stat -c %s "$board/korvel.stripped")
    echo "The stripped program has $size bytes of at most $size_limit"
    [ "$size" -lt "$size_limit" ]
}

# Its own libraries get a folder of their own beside that of the emulated programs.
build_for_this_machine() {
    step "Building for this machine: the simulated board, and the tests of the whole program"
    CMAKE_GENERATOR=Ninja cmake --preset release -B "$run" -DCMAKE_INSTALL_LIBDIR=lib/native > /dev/null
    (cd "$arm/tests" && ls -d ./*_e2e_test) | xargs -n 1 basename |
        xargs cmake --build "$run" --target boardsim devmem
}

# Puts a program from the build for ARM into the place of its namesake: a script that has it emulated. A library
# to be loaded first, as for faked times, is the emulator's.
emulate() {
    install -D "$arm/$1" "$run/$1.arm"
    install /dev/stdin "$run/$1" << SCRIPT
#!/bin/sh
exec qemu-arm -L $sysroot -U LD_PRELOAD "\$0.arm" "\$@"
SCRIPT
}

emulate_programs() {
    emulate bin/korvel
    find "$arm/tests" -maxdepth 1 -type f -perm -u+x -printf '%f\n' | while read -r name; do
        case "$name" in *_e2e_test | boardsim_*) ;; *) emulate "tests/$name" ;; esac
    done
    cp -r "$arm/lib/korvel" "$run/lib"
    cp -r "$arm/tests/recording" "$arm/tests/hand-laid" "$run/tests"
}

count_of() { ctest --test-dir "$run" -N "$@" | sed -n 's/^Total Tests: //p'; }

build_for_arm
build_for_board
build_for_this_machine
emulate_programs
