#!/usr/bin/env bash
# The long forms of the proofs that docs/promises.md tells of: the same programs that every run of the tests starts, with
# more of everything. Each prints how often it tried, its seed (LVP_SEED repeats it), and what it found.
#   scripts/campaigns.sh             all of them, one after the other: some hours
#   scripts/campaigns.sh NAME...     these: operations, trees, threads, depth, calls, memory, kills, power, disk,
#                                    small-disk (as root), damage, flips, checker, documents, fuzz, records, servers
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

names=(operations trees threads depth calls memory kills power disk small-disk damage flips checker documents fuzz
    records servers)
[ $# -eq 0 ] || names=("$@")
tests=build/release/tests
sanitized=build/asan-ubsan/tests

# build PRESET TARGET...
build() {
    # Joined, since nothing stops a function that is part of a condition.
    install_packages "${build_packages[@]}" "${test_packages[@]}" "${sanitizer_packages[@]}" &&
        cmake --preset "$1" >/dev/null &&
        cmake --build --preset "$1" --target "${@:2}"
}

# run PROGRAM FILTER: some tests of a program, without a line for each.
run() {
    "$1" --gtest_brief=1 --gtest_filter="$2"
}

campaign() {
    case $1 in
        operations) build release lvp_test_model &&
            LVP_OPERATIONS=100000000 run $tests/model/lvp_test_model 'Store*:WriterAndReader*' ;;
        trees) build release lvp_test_model &&
            LVP_TREE_OPERATIONS=5000000 run $tests/model/lvp_test_model 'Tree*' ;;
        threads) build tsan lvp_test_threads &&
            LVP_THREAD_STEPS=20000 run build/tsan/tests/threads/lvp_test_threads '*' &&
            cmake -S . -B build/tsan-clang -G Ninja -DCMAKE_CXX_COMPILER=clang++-14 -DCMAKE_BUILD_TYPE=Debug \
                -DCMAKE_CXX_FLAGS_DEBUG="-O0 -g1" -DLVP_DATA_SANITIZE=thread >/dev/null &&
            cmake --build build/tsan-clang --target lvp_test_threads &&
            LVP_THREAD_STEPS=20000 run build/tsan-clang/tests/threads/lvp_test_threads '*' ;;
        depth) build release lvp_test_model &&
            LVP_LEVELS=1000000 run $tests/model/lvp_test_model 'Depth*' ;;
        calls) build release lvp_test_fault_calls &&
            LVP_CALLS_STRIDE=1 LVP_DISK_CALLS_STRIDE=1 run $tests/fault/calls/lvp_test_fault_calls '*' ;;
        memory) build release lvp_test_fault_allocations &&
            LVP_ALLOCATIONS_STRIDE=1 LVP_DEMO_ALLOCATIONS_STRIDE=1 \
                run $tests/fault/calls/lvp_test_fault_allocations '*' ;;
        kills) build release lvp_test_disk &&
            LVP_KILLS=5000 LVP_RACES=2000 LVP_DEAD_WRITERS=1000 LVP_COMPACTION_RACES=2000 LVP_KILLED_REPAIRS=5000 \
                run $tests/fault/disk/lvp_test_disk '*Killed*:DeadWriter*:*Race*' ;;
        power) build release lvp_test_disk &&
            LVP_POWER_CUTS=150000 run $tests/fault/disk/lvp_test_disk 'PowerCut*' ;;
        disk) build release lvp_test_disk &&
            LVP_FAULTY_LIVES=30 run $tests/fault/disk/lvp_test_disk '*FailingDisk*:LockFile*' ;;
        small-disk) build release lvp_test_disk && small_disk ;;
        damage) build asan-ubsan lvp_test_pages &&
            LVP_DAMAGED_FILES=200000 run $sanitized/fault/pages/lvp_test_pages '*EndInAnError*' ;;
        flips) build release lvp_test_pages &&
            LVP_FLIPS=100000 LVP_SOUND_FILES=1000 \
                run $tests/fault/pages/lvp_test_pages '*Silently*:SoundFiles*' ;;
        checker) build release lvp_test_check &&
            LVP_PLANTED=30000 LVP_REPAIRS=8000 LVP_BROKEN_OFF=30000 LVP_HOSTILE=15000 LVP_VERDICTS=6000 \
                run $tests/check/lvp_test_check '*' ;;
        documents) build asan-ubsan lvp_test_fuzz && run $sanitized/fuzz/lvp_test_fuzz '*' ;;
        fuzz) scripts/fuzz.sh 600 ;;
        records) build release lvp_test_measured_records &&
            LVP_MUTATED_RECORDS=6000000 run $tests/fuzz/lvp_test_measured_records '*' ;;
        servers) scripts/test-postgres.sh release --long --required ;;
        *) echo "There is no campaign of that name: $1" >&2 && exit 2 ;;
    esac
}

# A disk of half a megabyte, which fills up.
small_disk() {
    local folder status=0
    folder=$(mktemp -d)
    mount -t tmpfs -o size=512k tmpfs "$folder" || return
    LVP_SMALL_FILE_SYSTEM=$folder run $tests/fault/disk/lvp_test_disk 'SmallFileSystem*' || status=$?
    umount "$folder" && rmdir "$folder"
    return $status
}

failed=()
for name in "${names[@]}"; do
    echo "=== $name"
    campaign "$name" || failed+=("$name")
done
[ ${#failed[@]} -eq 0 ] || { echo "Failed: ${failed[*]}" >&2; exit 1; }
