#!/usr/bin/env bash
# Tests the page that `lvp-data view` writes in a browser without a window: installs what it takes, puts the page
# together, and runs tests/view. Pictures of the page are left in build/PRESET/view/pages.
#   scripts/view-tests.sh                  with the tool of build/dev, which is built where it is not there
#   scripts/view-tests.sh BUILD [TEST...]  with that of another build; these tests only, as tests/view/tree.test.mjs
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

build=${1:-build/dev}
tests=("${@:2}")
[ ${#tests[@]} -ne 0 ] || tests=(tests/view/*.test.mjs)
work=$(realpath -m "$build")/view

install_packages "${view_packages[@]}"
# Who has them from elsewhere keeps them.
{ command -v node && command -v npm; } >/dev/null || install_packages "${node_packages[@]}"
if [ ! -x "$build/tools/lvp-data" ]; then
    install_packages "${build_packages[@]}" "${test_packages[@]}"
    cmake --preset dev >/dev/null
    cmake --build --preset dev --target lvp-data
fi

# Modules are fetched once for each list of them.
mkdir -p "$work/modules"
if ! cmp -s tests/view/package-lock.json "$work/modules/installed.json"; then
    cp tests/view/package.json tests/view/package-lock.json "$work/modules"
    npm ci --prefix "$work/modules" --ignore-scripts --no-audit --no-fund --loglevel=error
    cp tests/view/package-lock.json "$work/modules/installed.json"
fi

cmake -DPAGE=tools/view/page -DHTML="$work/page.html" -P tools/view/Embed.cmake
LVP_VIEW_WORK=$work LVP_VIEW_TOOL=$(realpath "$build/tools/lvp-data") \
    node --test "${tests[@]}"
