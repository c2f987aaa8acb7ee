#!/usr/bin/env bash
# Measures what Korvel costs on simulated boards whose logs are full: commands as ratios within one run, jobs
# that last while they have nothing to do. Fails where a limit is exceeded.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/setup.sh build board test bench
echo "== Building"
CMAKE_GENERATOR=Ninja cmake --preset release -DKORVEL_BENCH=ON > /dev/null
cmake --build --preset release --target korvel boardsim korvel_bench korvel_idle_bench

status=0
measure() { build-release/boardsim --full-logs "$@" || status=1; }

echo "== Measuring commands"
measure -- build-release/tests/korvel_bench \
    --benchmark_color=false --benchmark_enable_random_interleaving=true
echo
echo "== Measuring jobs that last"
# Nobody is left who writes to the logs.
measure --without iwf_dispatcher --without sfn_dispatcher --without netfp_server -- \
    build-release/tests/korvel_idle_bench archive
measure -- build-release/tests/korvel_idle_bench supervision
exit "$status"
