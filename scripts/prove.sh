#!/usr/bin/env bash
# Runs the long tests, which look for faults that nobody thought of. docs/assurance.md describes them and their results.
#   scripts/prove.sh [--time MINUTES] [ROW...]     default: every row, without a limit
#   scripts/prove.sh --list                        prints the rows
# A row that passed is not repeated until the code changes, unless it is named. The rows system-calls, programs, kills, together,
# attacks and allocations go on where they were ended. Outputs are in build-prove. Exits 1 if a row failed or did not come to
# its end, 2 for wrong usage.
set -uo pipefail
cd "$(dirname "$0")/.." || exit

rows=(system-calls programs kills together attacks allocations disks full matrix fuzz memory sanitizers analysers
    endurance unsteady coverage stress arm board)
declare -A titles=(
    [system-calls]="every system call of korvel fails, in every scenario"
    [programs]="system calls of korvel and its programs fail together"
    [kills]="korvel and its programs are killed at every system call"
    [together]="several jobs of korvel at once, and steps of the clock"
    [attacks]="another user attacks every path in /tmp"
    [allocations]="every allocation of memory fails"
    [disks]="disks of 64 sizes, in every scenario that writes files"
    [full]="all tests; clang-tidy and the sanitizers on everything"
    [matrix]="korvel-report on packages of faulty boards"
    [fuzz]="korvel, boardsim and korvel-report with made-up inputs"
    [memory]="korvel's unit tests with Valgrind"
    [sanitizers]="clang's checks of integers, and of data races"
    [analysers]="cppcheck, scan-build, and g++ -fanalyzer"
    [endurance]="the archiver over 10,000 rotations, and for two hours in real time"
    [unsteady]="the end-to-end tests with short reads and writes, many signals, and wrong readiness"
    [coverage]="which lines and branches of src and report the tests run"
    [stress]="the quick tests, 20 times while processor, memory and disk are busy"
    [arm]="korvel for the board's processor, emulated"
    [board]="a whole emulated board: all C++ tests, the packages and the units"
)
declare -A minutes_of=(
    [system-calls]=240 [programs]=120 [kills]=150 [together]=60 [attacks]=90 [allocations]=60 [disks]=40 [full]=50
    [matrix]=20 [fuzz]=240 [memory]=30 [sanitizers]=20 [analysers]=15 [endurance]=150 [unsteady]=20 [coverage]=40
    [stress]=120 [arm]=30 [board]=90
)
declare -A commands=(
    [system-calls]="python3 -B tests/assurance/system_calls.py"
    [programs]="python3 -B tests/assurance/programs.py --sample 200"
    [kills]="python3 -B tests/assurance/kills.py --sample 700"
    [together]="python3 -B tests/assurance/together.py --sample 60"
    [attacks]="python3 -B tests/assurance/attacks.py --sample 150"
    [allocations]="python3 -B tests/assurance/allocations.py"
    [disks]="python3 -B tests/assurance/disks.py"
    [full]="scripts/test.sh --full"
    [matrix]="scripts/fault-matrix.sh"
    [fuzz]="scripts/fuzz.sh --runs 2000000"
    [memory]="tests/assurance/memory.sh"
    [sanitizers]="tests/assurance/sanitizers.sh"
    [analysers]="tests/assurance/analysers.sh"
    [endurance]="tests/assurance/endurance.sh"
    [unsteady]="tests/assurance/unsteady.sh"
    [coverage]="scripts/coverage.sh"
    [stress]="tests/assurance/stress.sh"
    [arm]="scripts/test-arm.sh"
    [board]="scripts/test-board.sh"
)

usage() {
    sed -n '3,4s/^# *//p' "$0" >&2
    exit 2
}

list() {
    for row in "${rows[@]}"; do
        printf '%-14s %s; about %d minutes\n' "$row" "${titles[$row]}" "${minutes_of[$row]}"
    done
    exit
}

limit=$((365 * 24 * 60))
chosen=()
while [ $# -gt 0 ]; do
    case $1 in
        --time)
            [[ ${2-} =~ ^[1-9][0-9]{0,5}$ ]] || usage
            limit=$2
            shift
            ;;
        --list) list ;;
        *)
            [ -n "${titles[$1]-}" ] || usage
            chosen+=("$1")
            ;;
    esac
    shift
done

build() {
    scripts/setup.sh build board report fleet test lint prove &&
        CMAKE_GENERATOR=Ninja cmake --preset release && cmake --build --preset release
}

# A result belongs to this state of the code.
state_of_code() { (git rev-parse HEAD && git diff HEAD) | sha256sum | cut -d ' ' -f 1; }

has_passed() { [ "$(cat "build-prove/$1.passed" 2> /dev/null)" = "$code" ]; }

# prove ROW: its output goes to the terminal and to a file.
prove() {
    local row=$1 seconds=$((limit * 60 - SECONDS))
    if [ "$seconds" -le 0 ]; then
        echo "  not begun: the time is over"
        return 1
    fi
    rm -f "build-prove/$row.passed"
    # shellcheck disable=SC2086 # the command is words
    timeout --foreground --kill-after 60 "$seconds" ${commands[$row]} 2>&1 | tee "build-prove/$row.log" || return 1
    echo "$code" > "build-prove/$row.passed"
}

# The rows that are still to be done.
todo=()
mkdir -p build-prove
code=$(state_of_code)
if [ ${#chosen[@]} -gt 0 ]; then
    todo=("${chosen[@]}")
else
    for row in "${rows[@]}"; do has_passed "$row" || todo+=("$row"); done
fi

if ! build > build-prove/build.log 2>&1; then
    tail -n 20 build-prove/build.log >&2
    exit 1
fi
status=0
summary=()
for number in "${!todo[@]}"; do
    row=${todo[$number]}
    left=0
    for later in "${todo[@]:number}"; do left=$((left + minutes_of[$later])); done
    printf '\n== %d of %d: %s; about %d minutes left\n' $((number + 1)) ${#todo[@]} "${titles[$row]}" "$left"
    start=$SECONDS result=passed
    prove "$row" || result=FAILED status=1
    summary+=("$(printf '%-14s %-7s %4d:%02d' "$row" "$result" $(((SECONDS - start) / 60)) $(((SECONDS - start) % 60)))")
done
printf '\n== Summary\n'
printf '%s\n' "${summary[@]}"
exit "$status"
