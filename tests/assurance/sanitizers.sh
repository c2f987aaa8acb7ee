#!/usr/bin/env bash
# Runs the unit tests of korvel and of the stand-in libraries with sanitizers that scripts/test.sh does not use:
# - integer: overflows also of unsigned numbers, and conversions that change a value
# - thread: data races in the stand-in libraries, which programs with several threads use
# Exits 1 if a sanitizer reports something. Installs missing packages.
set -uo pipefail
cd "$(dirname "$0")/../.." || exit

declare -A options=(
    [integer]="-fsanitize=integer -fno-sanitize-recover=all -fsanitize-ignorelist=$PWD/tests/assurance/integer-ignored.txt"
    [thread]="-fsanitize=thread"
)
declare -A programs=(
    [integer]="base common netfp l2sct_board actions dump_actions util logcollection supervision archive main platform"
    [thread]="platform"
)

# compile KIND
compile() {
    local flags=${options[$1]} targets=(boardsim korvel)
    for program in ${programs[$1]}; do targets+=("${program}_test"); done
    CMAKE_GENERATOR=Ninja cmake -B "build-$1" -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_UNITY_BUILD=ON \
        -DCMAKE_CXX_FLAGS_DEBUG=-g1 -DCMAKE_CXX_FLAGS="$flags" -DCMAKE_EXE_LINKER_FLAGS="$flags" \
        -DCMAKE_SHARED_LINKER_FLAGS="$flags" -DKORVEL_BOARDSIM=ON -DKORVEL_REPORT=OFF -DKORVEL_TESTS=ON &&
        cmake --build "build-$1" --target "${targets[@]}"
}

# check KIND: the board has the build's directory as /opt/korvel.
check() {
    for program in ${programs[$1]}; do
        local log=build-prove/$1-$program.log
        "build-$1/boardsim" --bare -- "/opt/korvel/tests/${program}_test" > "$log" 2>&1
        local found
        found=$(grep -cE 'runtime error:|WARNING: ThreadSanitizer' "$log")
        printf '%-8s %-16s %s, %d findings\n' "$1" "$program" "$(grep -o '^[0-9]* tests ran' "$log" || echo 'no tests ran')" "$found"
        [ "$found" -eq 0 ] && grep -q 'tests ran' "$log" || status=1
    done
}

status=0
mkdir -p build-prove
scripts/setup.sh build board test lint || exit
for kind in integer thread; do
    if compile "$kind" > "build-prove/$kind-build.log" 2>&1; then
        check "$kind"
    else
        tail -n 20 "build-prove/$kind-build.log" >&2
        status=1
    fi
done
exit "$status"
