#!/usr/bin/env bash
# Builds the benchmarks (build/release) and runs them; arguments go to the benchmark program.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

install_packages "${build_packages[@]}" "${test_packages[@]}"
cmake --preset release >/dev/null
cmake --build --preset release --target lvp_bench
exec build/release/bench/lvp_bench "$@"
