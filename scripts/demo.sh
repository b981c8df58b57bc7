#!/usr/bin/env bash
# The main job on real input: reads a document of 119 engineering materials into a store file, shows the file as a tree,
# writes it as a document again, and compares. Takes a fresh Debian 12 machine to the end by itself.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

install_packages "${build_packages[@]}"
echo "Building (build/demo) ..."
mkdir -p build
log=build/demo.log
{ cmake -S . -B build/demo -G Ninja -DCMAKE_BUILD_TYPE=Release -DLVP_DATA_TESTS=OFF &&
    cmake --build build/demo; } >"$log" 2>&1 || { cat "$log"; exit 1; }

tool=build/demo/tools/lvp-data
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

echo
echo "1. examples/data/materials.xml is read into a store file:"
"$tool" import examples/data/materials.xml "$work/materials.lvp"
echo "   $(wc -c <examples/data/materials.xml) bytes of text, $(wc -c <"$work/materials.lvp") bytes of store"

echo
echo "2. Another process opens the file and walks it (one group of $("$tool" tree "$work/materials.lvp" | grep -c '\[group\]')):"
"$tool" tree "$work/materials.lvp" Carbon

echo
echo "3. It is written as a document, that is read into a second store, and written again:"
"$tool" export "$work/materials.lvp" -o "$work/first.xml"
"$tool" import "$work/first.xml" "$work/second.lvp"
"$tool" export "$work/second.lvp" -o "$work/second.xml"
if cmp -s "$work/first.xml" "$work/second.xml"; then
    echo "   round trip: the same, byte for byte ($(wc -c <"$work/first.xml") bytes)"
else
    echo "   round trip: DIFFERENT"
    exit 1
fi
