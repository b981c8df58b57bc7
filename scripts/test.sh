#!/usr/bin/env bash
# Builds and runs the tests. Takes a fresh Debian 12 machine to the end by itself.
#   scripts/test.sh            the development build: every day, and what the README names
#   scripts/test.sh PRESET     another one of CMakePresets.json: release, asan-ubsan, tsan, coverage
# LVP_CONFIGURE may hold an option for cmake.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

preset=${1:-dev}
install_packages "${build_packages[@]}" "${test_packages[@]}"
[ "$preset" != asan-ubsan ] || install_packages "${sanitizer_packages[@]}"
cmake --preset "$preset" ${LVP_CONFIGURE:-}
cmake --build --preset "$preset"
ctest --preset "$preset"
