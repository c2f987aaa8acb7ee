#!/usr/bin/env bash
# Measures what Korvel costs, as ratios within one run, on a simulated board whose logs are full.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh build board test bench
echo "== Building"
CMAKE_GENERATOR=Ninja cmake --preset release -DKORVEL_BENCH=ON > /dev/null
cmake --build --preset release --target korvel boardsim korvel_bench
echo "== Measuring"
exec build-release/boardsim --full-logs -- build-release/tests/korvel_bench \
    --benchmark_color=false --benchmark_enable_random_interleaving=true
