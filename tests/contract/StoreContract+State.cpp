#include <exception>
#include <memory>
#include <thread>
#include <vector>

#include "lumivard/platform/core/storage/datastore/IRecordAccess.h"
#include "tests/contract/StoreContract.h"

// What the examination asks of a store as a whole: its version, its guard, its life beyond closing, its further
// abilities.

namespace lumivard::platform::store_contract {

using core::storage::datastore::IDataStore;
using core::storage::datastore::IRecordAccess;

// --- version

TEST_P(StoreContract, VersionOfANewStoreIsZero) {
    EXPECT_EQ(store().version(), 0U);
}

TEST_P(StoreContract, VersionIsWhatWasSetLast) {
    for (const unsigned int number : {1U, 0U, 42U, 0xFFFFFFFFU}) {
        store().version(number);
        EXPECT_EQ(std::as_const(store()).version(), number);
    }
}

TEST_P(StoreContract, VersionStandsBesideTheRecords) {
    const unsigned int offset = create("root");
    store().version(9);
    EXPECT_EQ(contents(offset), "root");
    update(offset, "else");
    store().erase(offset);
    EXPECT_EQ(store().version(), 9U);
}

TEST_P(StoreContract, VersionSurvivesClosingAndReopening) {
    create("root");
    store().version(0xFFFFFFFF);
    SKIP_UNLESS_REOPENED();
    EXPECT_EQ(store().version(), 0xFFFFFFFFU);
}

TEST_P(StoreContract, VersionSurvivesReopeningWithoutAnyRecord) {
    store().version(6);
    SKIP_UNLESS_REOPENED();
    EXPECT_EQ(store().version(), 6U);
}

// --- lock

TEST_P(StoreContract, AGuardIsDeletedThroughItsInterface) {
    IDataStore::ILock* guard = store().lock();
    create("under the guard");
    if (guard) delete guard;
    EXPECT_EQ(contents(0), "under the guard");
}

TEST_P(StoreContract, TheGuardTakenTwiceOnOneThreadDoesNotDeadlock) {
    const std::unique_ptr<IDataStore::ILock> outer(store().lock());
    const std::unique_ptr<IDataStore::ILock> inner(store().lock());
    EXPECT_EQ(create("inside"), 0U);
}

TEST_P(StoreContract, TheOuterGuardHoldsWhenAnInnerOneIsGivenBack) {
    std::unique_ptr<IDataStore::ILock> outer(store().lock());
    if (!outer) GTEST_SKIP() << "this store needs no locking";
    delete store().lock();
    const unsigned int offset = create("a");
    std::thread other([&] {
        const std::unique_ptr<IDataStore::ILock> guard(store().lock());
        append(offset, "c");
    });
    append(offset, "b");
    outer.reset();
    other.join();
    EXPECT_EQ(contents(offset), "abc");
}

TEST_P(StoreContract, OperationsNeedNoGuardOnASingleThread) {
    const unsigned int offset = create("abcd");
    append(offset, "e");
    EXPECT_EQ(contents(offset), "abcde");
}

TEST_P(StoreContract, AGuardIsGivenBackOnUnwinding) {
    try {
        const std::unique_ptr<IDataStore::ILock> guard(store().lock());
        update(kBadOffset, "x");
        FAIL() << "nothing was thrown";
    } catch (const std::exception&) {
    }
    std::thread([&] {
        const std::unique_ptr<IDataStore::ILock> guard(store().lock());
        create("from another thread");
    }).join();
    EXPECT_EQ(contents(0), "from another thread");
}

TEST_P(StoreContract, TheGuardExcludesOtherThreads) {
    if (!std::unique_ptr<IDataStore::ILock>(store().lock())) GTEST_SKIP() << "this store needs no locking";
    constexpr unsigned int kThreads = 8;
    constexpr unsigned int kRounds = 500;
    const unsigned int zero = 0;
    const unsigned int counter = store().create(&zero, sizeof zero);
    std::vector<std::thread> threads;
    for (unsigned int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&] {
            for (unsigned int round = 0; round < kRounds; ++round) {
                const std::unique_ptr<IDataStore::ILock> guard(store().lock());
                unsigned int value = 0;
                store().read(counter, &value, sizeof value);
                ++value;
                store().update(counter, &value, sizeof value, true);
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    unsigned int value = 0;
    store().read(counter, &value, sizeof value);
    EXPECT_EQ(value, kThreads * kRounds);
}

// --- flush, and life beyond closing

TEST_P(StoreContract, FlushIsAllowedAtAnyTimeAndChangesNothingThatCanBeSeen) {
    store().flush();
    const unsigned int offset = create("abcd");
    store().version(2);
    store().flush();
    store().flush();
    EXPECT_EQ(contents(offset), "abcd");
    EXPECT_EQ(store().version(), 2U);
    EXPECT_NE(create("next"), offset);
}

TEST_P(StoreContract, FlushIsAllowedUnderTheGuard) {
    const std::unique_ptr<IDataStore::ILock> guard(store().lock());
    create("abcd");
    store().flush();
    EXPECT_EQ(contents(0), "abcd");
}

TEST_P(StoreContract, OffsetsAndContentsSurviveClosingAndReopening) {
    std::vector<unsigned int> offsets;
    for (unsigned int i = 0; i < 500; ++i) offsets.push_back(create(pattern(i * 7 % 3000, i)));
    SKIP_UNLESS_REOPENED();
    for (unsigned int i = 0; i < 500; ++i) {
        ASSERT_TRUE(contents(offsets[i]) == pattern(i * 7 % 3000, i)) << "record " << i;
    }
}

TEST_P(StoreContract, ReopeningShowsTheLastOfManyFlushes) {
    const unsigned int offset = create("first");
    store().flush();
    update(offset, "second, and longer");
    store().flush();
    append(offset, "!");
    SKIP_UNLESS_REOPENED();
    EXPECT_EQ(contents(offset), "second, and longer!");
}

TEST_P(StoreContract, NewRecordsAfterReopeningGetOffsetsOfTheirOwn) {
    const unsigned int first = create("first");
    const unsigned int second = create("second");
    SKIP_UNLESS_REOPENED();
    const unsigned int third = create("third");
    EXPECT_NE(third, first);
    EXPECT_NE(third, second);
    EXPECT_EQ(contents(first), "first");
    EXPECT_EQ(contents(second), "second");
}

TEST_P(StoreContract, RecordsWithoutBytesSurviveReopening) {
    const unsigned int offset = store().create(nullptr, 0);
    SKIP_UNLESS_REOPENED();
    EXPECT_EQ(store().size(offset), 0U);
    append(offset, "there");
    EXPECT_EQ(contents(offset), "there");
}

TEST_P(StoreContract, AnOffsetWrittenIntoARecordLeadsToItsRecordAfterReopening) {
    const unsigned int target = create("target");
    const unsigned int list = store().create(&target, sizeof target);
    SKIP_UNLESS_REOPENED();
    unsigned int found = kBadOffset;
    store().read(list, &found, sizeof found);
    EXPECT_EQ(contents(found), "target");
}

// --- Parts of records, where the store offers them

TEST_P(StoreContract, PartsOfRecordsAreThoseOfTheWhole) {
    IRecordAccess* access = store().access();
    if (!access) GTEST_SKIP() << "this store knows whole records only";
    const unsigned int offset = create("abcdefgh");
    std::string buffer = "........";
    EXPECT_EQ(access->read(offset, 2, buffer.data(), 3), 3U);
    EXPECT_EQ(buffer, "cde.....");
    EXPECT_EQ(access->read(offset, 6, buffer.data(), 100), 2U);
    EXPECT_EQ(buffer, "ghe.....");
    EXPECT_EQ(access->read(offset, 0, buffer.data(), kWhole), 8U);
    EXPECT_EQ(buffer, "abcdefgh");
}

TEST_P(StoreContract, PartsBeyondTheEndAreEmpty) {
    IRecordAccess* access = store().access();
    if (!access) GTEST_SKIP() << "this store knows whole records only";
    const unsigned int offset = create("abcd");
    char byte = '.';
    for (const unsigned int position : {4U, 5U, 0xFFFFFFFFU}) {
        EXPECT_EQ(access->read(offset, position, &byte, 1), 0U) << position;
    }
    EXPECT_EQ(access->read(offset, 0xFFFFFFFF, &byte, kWhole), 0U);
    EXPECT_EQ(access->read(offset, 0, &byte, 0), 0U);
    EXPECT_EQ(byte, '.');
}

TEST_P(StoreContract, PartsOfNoRecordAreEmpty) {
    IRecordAccess* access = store().access();
    if (!access) GTEST_SKIP() << "this store knows whole records only";
    char byte = '.';
    EXPECT_EQ(access->read(kBadOffset, 0, &byte, 1), 0U);
    EXPECT_EQ(access->read(erasedOffset(store()), 0, &byte, 1), 0U);
    EXPECT_EQ(access->read(store().create(nullptr, 0), 0, nullptr, 1), 0U);
    EXPECT_EQ(byte, '.');
}

}  // namespace lumivard::platform::store_contract
