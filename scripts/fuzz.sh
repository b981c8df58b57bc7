#!/usr/bin/env bash
# Builds the fuzzers and lets each of them look for inputs that make the library fail.
#   scripts/fuzz.sh                        a short run: 30 seconds for each
#   scripts/fuzz.sh SECONDS                so long for each
#   scripts/fuzz.sh SECONDS TARGET...      for these only: document, records, text, units, paths, pages
# LVP_FUZZ_PRESET=asan-ubsan takes the build of the tests under the address sanitizer, which is slower, but may be there.
# What is found is left in build/PRESET/crashes, and the script fails. The corpus in tests/fuzz is read and not changed;
# with FUZZ_KEEP=1 what covers something new is added to it.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

preset=${LVP_FUZZ_PRESET:-fuzz}
targets=(document records text units paths pages)
seconds=${1:-30}
[ $# -le 1 ] || targets=("${@:2}")

install_packages "${build_packages[@]}" "${test_packages[@]}" "${sanitizer_packages[@]}"
cmake --preset "$preset"
cmake --build --preset "$preset" --target lvp_fuzz

build=build/$preset
corpus=tests/fuzz/corpus
work=$(mktemp -d)
seed=${LVP_SEED:-$RANDOM$RANDOM}
trap 'rm -rf "$work"' EXIT
# Where memory came from is told in a few lines: each more costs a twentieth of the executions.
export ASAN_OPTIONS=allocator_may_return_null=0:malloc_context_size=3 UBSAN_OPTIONS=print_stacktrace=1

# Memory in megabytes and the seconds for one input are generous: what breaks them is out of all proportion.
# How rare what an input covers is, is not counted: that takes three times as long as the inputs themselves.
limits=(-rss_limit_mb=2048 -malloc_limit_mb=512 -timeout=25 -entropic=0)

# run TARGET SECONDS: prints what was tried, and fails where something was found.
run() {
    local target=$1 log=$work/$1.log crashes=$build/crashes/$1 status=0 dictionary=()
    mkdir -p "$work/$target" "$crashes"
    [ ! -e "$corpus/$target" ] || cp -r "$corpus/$target/." "$work/$target"
    [ ! -e "tests/fuzz/$target.dict" ] || dictionary=("-dict=tests/fuzz/$target.dict")
    "$build/tests/fuzz/lvp_fuzz_$target" "${limits[@]}" "${dictionary[@]}" -seed="$seed" \
        -max_total_time="$2" -print_final_stats=1 -artifact_prefix="$crashes/" "$work/$target" >"$log" 2>&1 || status=$?
    echo "$target: $(sed -n 's/^stat::number_of_executed_units: *//p' "$log") executions in $2 s," \
        "LVP_SEED=$seed, $(find "$crashes" -type f -newer "$work/$target.begin" | wc -l) finds"
    [ "$status" -eq 0 ] || {
        grep -aE '^(==|SUMMARY|Test unit|artifact|.*what\(\)|.*ERROR)' "$log" | head -20
        return 1
    }
}

# A fault that was planted has to be found, or nothing that follows means anything.
"$build/tests/fuzz/lvp_fuzz_planted" -seed=1 -runs=200000 -artifact_prefix="$work/" >"$work/planted.log" 2>&1 && {
    echo "The fuzzer does not find the planted fault: it is of no use as it is built." >&2
    exit 1
}
grep -q 'AddressSanitizer: heap-buffer-overflow' "$work/planted.log" || {
    cat "$work/planted.log"
    exit 1
}
echo "planted: found after $(grep -aoE '^#[0-9]+' "$work/planted.log" | tail -1) executions"

# look TARGET: leaves a mark where something was found.
look() {
    touch "$work/$1.begin"
    run "$1" "$seconds" || touch "$work/failed"
    [ "${FUZZ_KEEP:-}" != 1 ] || "$build/tests/fuzz/lvp_fuzz_$1" -merge=1 "$corpus/$1" "$work/$1" 2>/dev/null
}

# One on each processor.
for target in "${targets[@]}"; do
    [ "$(jobs -rp | wc -l)" -lt "$(nproc)" ] || wait -n || :
    look "$target" &
done
wait
[ ! -e "$work/failed" ] || {
    echo "Keep what was found in $build/crashes under tests/fuzz/crashes/TARGET, where every build replays it."
    echo "Once more: $build/tests/fuzz/lvp_fuzz_TARGET FILE"
    exit 1
}
