#!/usr/bin/env bash
# Runs clang-tidy over the tests, which takes some twenty minutes on two cores.
#   scripts/tidy-tests.sh [REGEX]     default: every file below tests/
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh build board test lint
CMAKE_GENERATOR=Ninja cmake --preset lint > /dev/null
cmake --build --preset lint
exec run-clang-tidy -quiet -p build-lint "${1:-/tests/}"
