#!/usr/bin/env bash
# The main job on real input: reads a document of 119 engineering materials and their schemas into a store file, shows the
# file as a tree, writes it as a document again, and compares. Then validation, copies and structs. Takes a fresh Debian 12
# machine to the end by itself.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

# What it builds is a part of what the tests need.
install_packages "${build_packages[@]}" "${test_packages[@]}"
echo "Building (build/dev) ..."
mkdir -p build
log=build/demo.log
{ cmake --preset dev ${LVP_CONFIGURE:-} && cmake --build --preset dev --target lvp-data; } >"$log" 2>&1 || { cat "$log"; exit 1; }

tool=build/dev/tools/lvp-data
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

schemas=examples/data/schemas.xml
motion=examples/data/motion-schemas.xml

echo
echo "1. examples/data/materials.xml is read into a store file, with the schemas that its materials name:"
"$tool" import examples/data/materials.xml "$work/materials.lvp" --schemas $schemas
echo "   $(wc -c <examples/data/materials.xml) bytes of text, $(wc -c <"$work/materials.lvp") bytes of store"

echo
echo "2. Another process opens the file and walks it (one group of $("$tool" tree "$work/materials.lvp" | grep -c '\[group\]')):"
"$tool" tree "$work/materials.lvp" Carbon

echo
echo "3. It is written as a document, that is read into a second store, and written again:"
"$tool" export "$work/materials.lvp" -o "$work/first.xml"
"$tool" import "$work/first.xml" "$work/second.lvp" --schemas $schemas
"$tool" export "$work/second.lvp" -o "$work/second.xml"
if cmp -s "$work/first.xml" "$work/second.xml"; then
    echo "   round trip: the same, byte for byte ($(wc -c <"$work/first.xml") bytes)"
else
    echo "   round trip: DIFFERENT"
    exit 1
fi

echo
echo "4. A material is held against its schemas, and so is the group that it stands in:"
"$tool" validate "$work/materials.lvp" Carbon.Graphite "Mechanical;Thermal" --schemas $schemas
"$tool" validate "$work/materials.lvp" Carbon Thermal --schemas $schemas || [ $? -eq 1 ]

echo
echo "5. It is copied to another place, and from there into the second store:"
"$tool" cp "$work/materials.lvp" Carbon.Graphite Gas.Copy
"$tool" mv "$work/materials.lvp" Gas.Copy Gas.Moved --to "$work/second.lvp"
"$tool" tree "$work/second.lvp" Gas.Moved | sed -n 1,3p

echo
echo "6. Structs: a robot's hand is one of three poses, read from examples/data/motion.xml and written again:"
"$tool" schema Gripper --schemas $motion
"$tool" import examples/data/motion.xml "$work/motion.lvp" --schemas $motion
"$tool" export "$work/motion.lvp" arm.hand --schemas $motion
echo
