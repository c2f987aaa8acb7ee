#!/usr/bin/env bash
# Runs static analysers that scripts/test.sh does not use, on the product and the simulated board: cppcheck, clang's scan-build,
# and g++ -fanalyzer. cppcheck.txt lists what cppcheck reports although it is right. Exits 1 if one reports something.
set -uo pipefail
cd "$(dirname "$0")/../.." || exit

status=0
mkdir -p build-prove

# judge NAME: the analyser succeeded, and its log has no finding.
judge() {
    local findings
    findings=$(grep -cE '(warning|error|performance|portability): ' "$1.log")
    printf '%-16s %d findings\n' "${1##*/}" "$findings"
    [ "$findings" -eq 0 ] && [ "$2" -eq 0 ] || status=1
}

# All folders with headers, as -I options.
includes() { find "$@" -name '*.hpp' -printf '-I%h\n' | sort -u; }

run_cppcheck() {
    mapfile -t options < <(includes src base platform boardsim report)
    cppcheck --std=c++20 --language=c++ "${options[@]}" --enable=warning,performance,portability --quiet -j "$(nproc)" \
        --error-exitcode=1 -D_GNU_SOURCE -DKORVEL_PLATFORM_EXPORT= --suppressions-list=tests/assurance/cppcheck.txt \
        src base platform boardsim report/*/ > build-prove/cppcheck.log 2>&1
    judge build-prove/cppcheck $?
}

# This release of g++ does not follow the constructors of C++, and takes what they set for unset or lost.
run_gcc() {
    mapfile -t options < <(includes src base platform)
    find src platform -name '*.cpp' -print0 | xargs -0 -P "$(nproc)" -I{} g++ -std=c++20 -O1 -D_FILE_OFFSET_BITS=64 \
        -D_TIME_BITS=64 "${options[@]}" -fanalyzer -Wno-analyzer-use-of-uninitialized-value -Wno-analyzer-malloc-leak \
        -c {} -o /dev/null > build-prove/gcc-analyzer.log 2>&1
    judge build-prove/gcc-analyzer $?
}

run_scan_build() {
    rm -rf build-scan
    local scan=(scan-build --status-bugs -o build-prove/scan-build)
    {
        CMAKE_GENERATOR=Ninja "${scan[@]}" cmake -B build-scan -DCMAKE_BUILD_TYPE=Debug -DCMAKE_UNITY_BUILD=ON -DKORVEL_REPORT=OFF \
            -DKORVEL_BOARDSIM=ON && "${scan[@]}" cmake --build build-scan
    } > build-prove/scan-build.log 2>&1
    judge build-prove/scan-build $?
}

run_cppcheck
run_gcc
run_scan_build
exit "$status"
