#!/usr/bin/env bash
# Makes the pages of the public interfaces, in build/api/html, and fails where a header leaves a public member without a
# word. Takes a fresh Debian 12 machine to the end by itself.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

install_packages "${build_packages[@]}" doxygen
cmake -S . -B build/api-docs -G Ninja -DLVP_DATA_TESTS=OFF >/dev/null
cmake --build build/api-docs --target lvp_api_docs
rm -rf build/api
mv build/api-docs/api build/api
echo "The pages begin with build/api/html/index.html"
