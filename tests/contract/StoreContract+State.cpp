#include <memory>
#include <utility>
#include <vector>

#include "lumivard/platform/store_contract/StoreContract.h"

// What the examination asks of a store as a whole: its version, and its life beyond closing.

namespace lumivard::platform::store_contract {

using core::storage::datastore::IDataStore;

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
    LVP_SKIP_UNLESS_REOPENED();
    EXPECT_EQ(store().version(), 0xFFFFFFFFU);
}

TEST_P(StoreContract, VersionSurvivesReopeningWithoutAnyRecord) {
    store().version(6);
    LVP_SKIP_UNLESS_REOPENED();
    EXPECT_EQ(store().version(), 6U);
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
    LVP_SKIP_UNLESS_REOPENED();
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
    LVP_SKIP_UNLESS_REOPENED();
    EXPECT_EQ(contents(offset), "second, and longer!");
}

TEST_P(StoreContract, NewRecordsAfterReopeningGetOffsetsOfTheirOwn) {
    const unsigned int first = create("first");
    const unsigned int second = create("second");
    LVP_SKIP_UNLESS_REOPENED();
    const unsigned int third = create("third");
    EXPECT_NE(third, first);
    EXPECT_NE(third, second);
    EXPECT_EQ(contents(first), "first");
    EXPECT_EQ(contents(second), "second");
}

TEST_P(StoreContract, RecordsWithoutBytesSurviveReopening) {
    const unsigned int offset = store().create(nullptr, 0);
    LVP_SKIP_UNLESS_REOPENED();
    EXPECT_EQ(store().size(offset), 0U);
    append(offset, "there");
    EXPECT_EQ(contents(offset), "there");
}

TEST_P(StoreContract, AnOffsetWrittenIntoARecordLeadsToItsRecordAfterReopening) {
    const unsigned int target = create("target");
    const unsigned int list = store().create(&target, sizeof target);
    LVP_SKIP_UNLESS_REOPENED();
    unsigned int found = kBadOffset;
    store().read(list, &found, sizeof found);
    EXPECT_EQ(contents(found), "target");
}

TEST_P(StoreContract, ShorterContentsSurviveReopening) {
    const unsigned int shorter = create(pattern(9000));
    const unsigned int empty = create(pattern(9000));
    if (!flushAndReopen()) GTEST_SKIP() << "this store does not outlive its closing";
    update(shorter, "short");
    store().update(empty, nullptr, 0, true);
    ASSERT_TRUE(flushAndReopen());
    EXPECT_EQ(contents(shorter), "short");
    EXPECT_EQ(store().size(empty), 0U);
}

TEST_P(StoreContract, ExtentIsNotZeroWhenReopenedWithAllRecordsErased) {
    store().erase(create("root"));
    LVP_SKIP_UNLESS_REOPENED();
    EXPECT_NE(store().extent(), 0U);
}

TEST_P(StoreContract, EverythingSurvivesBeingReopenedTwiceWithoutAChange) {
    const unsigned int offset = create(pattern(100));
    store().version(8);
    LVP_SKIP_UNLESS_REOPENED();
    ASSERT_TRUE(flushAndReopen());
    EXPECT_EQ(contents(offset), pattern(100));
    EXPECT_EQ(store().version(), 8U);
}

}  // namespace lumivard::platform::store_contract
