#include <exception>
#include <thread>

#include "lumivard/platform/store_contract/StoreContract.h"

// What the examination asks of a store that is told to do what cannot be done.

namespace lumivard::platform::store_contract {

void StoreContract::failEachChange(unsigned int offset) {
    EXPECT_THROW(update(offset, "much longer than before"), std::exception);
    EXPECT_THROW(update(offset, "x", false), std::exception);
    EXPECT_THROW(append(offset, "x"), std::exception);
    EXPECT_THROW(store().erase(offset), std::exception);
}

TEST_P(StoreContract, UpdateOfAnOffsetThatNamesNoRecordThrowsAndChangesNothing) {
    const unsigned int kept = create("kept");
    const unsigned int gone = erasedOffset(store());
    for (const unsigned int offset : {gone, kBadOffset, kBadOffset - 1}) {
        EXPECT_THROW(update(offset, "x"), std::exception) << offset;
        EXPECT_TRUE(offset == kBadOffset || store().size(offset) == 0U) << offset;
    }
    EXPECT_EQ(contents(kept), "kept");
}

TEST_P(StoreContract, AppendToAnOffsetThatNamesNoRecordThrowsAndChangesNothing) {
    const unsigned int kept = create("kept");
    const unsigned int gone = erasedOffset(store());
    for (const unsigned int offset : {gone, kBadOffset, kBadOffset - 1}) {
        EXPECT_THROW(append(offset, "x"), std::exception) << offset;
        EXPECT_TRUE(offset == kBadOffset || store().size(offset) == 0U) << offset;
    }
    EXPECT_EQ(contents(kept), "kept");
}

TEST_P(StoreContract, EraseOfAnOffsetThatNamesNoRecordThrowsAndChangesNothing) {
    const unsigned int kept = create("kept");
    const unsigned int gone = erasedOffset(store());
    for (const unsigned int offset : {gone, kBadOffset, kBadOffset - 1}) {
        EXPECT_THROW(store().erase(offset), std::exception) << offset;
    }
    EXPECT_EQ(contents(kept), "kept");
}

TEST_P(StoreContract, AFailedOperationInAnEmptyStoreLeavesItEmpty) {
    EXPECT_THROW(update(0, "x"), std::exception);
    EXPECT_THROW(append(0, "x"), std::exception);
    EXPECT_THROW(store().erase(0), std::exception);
    EXPECT_EQ(store().extent(), 0U);
    EXPECT_EQ(create("root"), 0U);
}

TEST_P(StoreContract, ABookkeepingUpdateOfAnOffsetThatNamesNoRecordThrowsAndChangesNothing) {
    const unsigned int kept = create("kept");
    const unsigned int gone = erasedOffset(store());
    for (const unsigned int offset : {gone, kBadOffset, kBadOffset - 1}) {
        EXPECT_THROW(update(offset, "x", false), std::exception) << offset;
        EXPECT_EQ(store().size(offset), 0U) << offset;
    }
    EXPECT_EQ(contents(kept), "kept");
}

TEST_P(StoreContract, ARefusedChangeOfNoBytesThrowsLikeAnyOther) {
    const unsigned int gone = erasedOffset(store());
    EXPECT_THROW(store().update(gone, nullptr, 0, true), std::exception);
    EXPECT_THROW(store().append(gone, nullptr, 0), std::exception);
}

TEST_P(StoreContract, AnOperationThatThrowsLeavesTheStoreAsItWas) {
    const unsigned int first = create("first");
    const unsigned int second = create("");
    const unsigned int gone = erasedOffset(store());
    store().version(5);
    const unsigned long long extent = store().extent();
    failEachChange(gone);
    EXPECT_EQ(store().version(), 5U);
    EXPECT_EQ(store().extent(), extent);
    EXPECT_EQ(contents(first), "first");
    EXPECT_EQ(store().size(second), 0U);
    const unsigned int third = create("third");
    EXPECT_NE(third, first);
    EXPECT_NE(third, second);
    EXPECT_EQ(contents(third), "third");
}

TEST_P(StoreContract, NothingOfAnOperationThatThrewIsFoundAfterReopening) {
    const unsigned int kept = create("kept");
    const unsigned int gone = erasedOffset(store());
    store().version(5);
    failEachChange(gone);
    LVP_SKIP_UNLESS_REOPENED();
    EXPECT_EQ(store().version(), 5U);
    EXPECT_EQ(contents(kept), "kept");
    EXPECT_EQ(store().size(gone), 0U);
}

TEST_P(StoreContract, AnOperationThatThrowsHoldsNoGuard) {
    failEachChange(erasedOffset(store()));
    std::thread([&] { delete store().lock(); }).join();
    EXPECT_NE(create("after"), kBadOffset);
}

}  // namespace lumivard::platform::store_contract
