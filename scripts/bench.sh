#!/usr/bin/env bash
# Builds the workloads of this library and of its peers (build/release), runs them in turns, and tells the outcome:
# tables, the bars that are asked for, and the curves of growth, which all go into build/bench.
#   scripts/bench.sh                10,000, 100,000 and 1,000,000 properties: half an hour
#   scripts/bench.sh --quick        10,000 and 100,000, three rounds: minutes
#   scripts/bench.sh [--quick] N... other sizes
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

install_packages "${build_packages[@]}" "${test_packages[@]}" "${bench_packages[@]}"
cmake --preset release -DLVP_BENCH_PEERS=ON >/dev/null
cmake --build --preset release --target lvp_bench_ours lvp_bench_peers
python3 -B bench/run.py build/release/bench build/bench "$@"
python3 -B bench/report.py build/bench
