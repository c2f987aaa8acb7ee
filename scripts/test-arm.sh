#!/usr/bin/env bash
# Builds everything for the board's processor and runs the tests with QEMU's user-mode emulator. korvel and the unit
# tests are emulated. The peers of the simulated board and the end-to-end tests are built for this machine.
# tests/arm-left-out.txt lists the skipped tests, each with a reason. Installs missing packages.
#   scripts/test-arm.sh [REGEX]     default: every test
set -euo pipefail
cd "$(dirname "$0")/.."

arm=build-arm          # all programs, for the board's processor
board=build-arm-board  # korvel, for a board with libraries of its own
run=build-arm-run      # what the tests run: programs of this machine, and emulated programs
sysroot=/usr/arm-linux-gnueabihf
list=tests/arm-left-out.txt
size_limit=$((220 * 1024))

step() {
    echo
    echo "== $*"
}

build_for_arm() {
    step "Building for ARM: everything"
    CMAKE_GENERATOR=Ninja cmake --preset arm > /dev/null
    cmake --build --preset arm
}

check_symbols() {
    step "The platform's symbols on ARM"
    NM=arm-linux-gnueabihf-nm KORVEL_BUILD=$PWD/$arm python3 -B tests/install/platform_symbols_test.py
}

# Links korvel with the stand-ins, which have the same interface as a board's libraries.
build_for_board() {
    step "Building for ARM: korvel for a board"
    install -D -t "$board/root/usr/lib" "$arm"/lib/korvel/*.so
    CMAKE_GENERATOR=Ninja cmake --preset arm -B "$board" -DKORVEL_TESTS=OFF -DKORVEL_BOARDSIM=OFF \
        -DKORVEL_PLATFORM=board -DKORVEL_PLATFORM_ROOT="$PWD/$board/root" > /dev/null
    cmake --build "$board"
    arm-linux-gnueabihf-strip -o "$board/korvel.stripped" "$board/bin/korvel"
    size=$(stat -c %s "$board/korvel.stripped")
    echo "The stripped korvel has $size bytes. The limit is $size_limit bytes."
    [ "$size" -lt "$size_limit" ]
}

# The libraries of this machine are in lib/native, because lib holds those of the emulated programs. Tests run
# stack_program as a process of the packet stack, so it is also built for this machine.
build_for_this_machine() {
    step "Building for this machine: the simulated board and the end-to-end tests"
    CMAKE_GENERATOR=Ninja cmake --preset release -B "$run" -DCMAKE_INSTALL_LIBDIR=lib/native > /dev/null
    local programs=("$arm"/tests/*_e2e_test)
    cmake --build "$run" --target boardsim devmem stack_program "${programs[@]##*/}"
}

# Replaces a program with a script that emulates its ARM version. The ARM version is patched to find the loader of
# Debian's cross compiler. LD_PRELOAD (e.g. libfaketime) applies to the emulator, so it is unset for the program.
emulate() {
    install -D "$arm/$1" "$run/$1.arm"
    patchelf --set-interpreter "$sysroot/lib/ld-linux-armhf.so.3" "$run/$1.arm"
    rm -f "$run/$1"
    cat > "$run/$1" << SCRIPT
#!/bin/sh
libraries="\${LD_LIBRARY_PATH:+\$LD_LIBRARY_PATH:}$sysroot/lib"
exec qemu-arm -0 "\${0##*/}" -E "LD_LIBRARY_PATH=\$libraries" -U LD_PRELOAD "\$0.arm" "\$@"
SCRIPT
    chmod +x "$run/$1"
}

emulate_programs() {
    emulate bin/korvel
    find "$arm/tests" -maxdepth 1 -type f -perm -u+x -printf '%f\n' | while read -r name; do
        case "$name" in *_e2e_test | boardsim_* | stack_program) ;; *) emulate "tests/$name" ;; esac
    done
    cp -r "$arm/lib/korvel" "$run/lib"
    cp -r "$arm/tests/recording" "$arm/tests/headerless" "$run/tests"
}

# Runs ctest on the C++ tests, except for tests whose names match $1. Skips Python tests, shuffled runs, and programs
# that were not built: the tests of the simulated board itself.
tests() { ctest --test-dir "$run" -LE 'script|shuffled' -E "$1|_NOT_BUILT\$" "${@:2}"; }

# Prints each reason with the number of its skipped tests.
report_left_out() {
    step "Skipped tests"
    local names row count reason="" total=0
    local -A counts
    names=$(tests '^$' -N | sed -n 's/^ *Test *#[0-9]*: //p')
    while IFS= read -r row; do
        case "$row" in
            "" | "#"*) ;;
            " "*)
                count=$(grep -cE "${row##* }" <<< "$names") || { echo "No test matches $row"; return 1; }
                counts[$reason]=$((${counts[$reason]:-0} + count))
                total=$((total + count))
                ;;
            *) reason=${row%:} ;;
        esac
    done < "$list"
    for reason in "${!counts[@]}"; do printf '%5d  %s\n' "${counts[$reason]}" "$reason"; done | sort -rn
    echo "Of $(wc -l <<< "$names") tests $total were skipped; $list names them."
}

scripts/setup.sh build board test arm
build_for_arm
check_symbols
build_for_board
build_for_this_machine
emulate_programs

step "Tests: emulated programs, native peers"
status=0
left_out=$(sed -n 's/^ \+//p' "$list" | paste -sd '|')
tests "$left_out" -R "${1:-.}" -j "$(($(nproc) * 3))" --output-on-failure || status=1
report_left_out || status=1
step "$([ "$status" -eq 0 ] && echo "All other tests passed" || echo "Failed")"
exit "$status"
