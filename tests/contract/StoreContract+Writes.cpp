#include <exception>
#include <string>

#include "lumivard/platform/core/storage/datastore/IRecordAccess.h"
#include "lumivard/platform/store_contract/StoreContract.h"

// What the examination asks of a store that changes a few bytes of a record.

namespace lumivard::platform::store_contract {

void StoreContract::write(unsigned int offset, unsigned int position, const std::string& bytes, bool changed) {
    store().access()->write(offset, position, bytes.data(), static_cast<unsigned int>(bytes.size()), changed);
}

TEST_P(StoreContract, AWriteChangesExactlyItsBytesAtEachPositionAndLength) {
    LVP_SKIP_WITHOUT_ACCESS();
    std::string whole = pattern(20);
    const unsigned int offset = create(whole);
    for (unsigned int position = 0; position <= 20; ++position) {
        for (unsigned int size = 0; size <= 20 - position; ++size) {
            const std::string bytes = pattern(size, 100 * position + size + 2);
            whole.replace(position, size, bytes);
            write(offset, position, bytes);
            ASSERT_EQ(contents(offset), whole) << position << ", " << size;
        }
    }
}

TEST_P(StoreContract, AWriteGivesTheViewThatThereIsAfterIt) {
    LVP_SKIP_WITHOUT_ACCESS();
    auto* const access = store().access();
    const unsigned int offset = create("abcdefgh");
    access->view(offset);
    EXPECT_EQ(bytesOf(access->write(offset, 2, "CDE", 3, true)), "abCDEfgh");
    const auto view = access->write(offset, 7, "8", 1, false);
    EXPECT_EQ(bytesOf(view), "abCDEfg8");
    EXPECT_EQ(access->view(offset).data, view.data);
    EXPECT_EQ(bytesOf(access->write(offset, 8, "", 0, true)), "abCDEfg8");
}

TEST_P(StoreContract, AWriteToARecordThatWasJustBroughtInGivesItsView) {
    LVP_SKIP_WITHOUT_ACCESS();
    const unsigned int offset = create("refs=0");
    const unsigned int other = create("R=0");
    LVP_SKIP_UNLESS_REOPENED();
    auto* const access = store().access();
    EXPECT_EQ(bytesOf(access->write(offset, 5, "1", 1, false)), "refs=1");
    EXPECT_EQ(bytesOf(access->write(other, 2, "1", 1, true)), "R=1");
    EXPECT_EQ(shown(offset) + shown(other), "refs=1R=1");
}

TEST_P(StoreContract, BookkeepingMayComeAndGoAnyNumberOfTimes) {
    LVP_SKIP_WITHOUT_ACCESS();
    const unsigned int offset = create("refs=0");
    LVP_SKIP_UNLESS_REOPENED();
    for (int i = 0; i < 20; ++i) {
        write(offset, 5, "1", false);
        EXPECT_EQ(shown(offset) + contents(offset), "refs=1refs=1");
        write(offset, 5, "0", false);
        EXPECT_EQ(shown(offset) + contents(offset), "refs=0refs=0");
        if (i % 5 == 0) store().flush();
    }
    write(offset, 0, "R");
    write(offset, 5, "1", false);
    write(offset, 5, "0", false);
    EXPECT_EQ(shown(offset), "Refs=0") << "which is content";
    ASSERT_TRUE(flushAndReopen());
    EXPECT_EQ(shown(offset), "Refs=0");
}

TEST_P(StoreContract, AWriteLeavesOtherRecordsAlone) {
    LVP_SKIP_WITHOUT_ACCESS();
    const unsigned int before = create("before");
    const unsigned int offset = create("abcd");
    const unsigned int after = create("after");
    write(offset, 0, "ABCD");
    write(offset, 3, "!", false);
    EXPECT_EQ(contents(before), "before");
    EXPECT_EQ(contents(after), "after");
}

TEST_P(StoreContract, AWriteOutsideItsRecordThrowsAndChangesNothing) {
    LVP_SKIP_WITHOUT_ACCESS();
    auto* const access = store().access();
    const unsigned int offset = create("abcd");
    const unsigned int after = create("after");
    for (const bool changed : {true, false}) {
        EXPECT_THROW(write(offset, 4, "x", changed), std::exception);
        EXPECT_THROW(write(offset, 2, "xyz", changed), std::exception);
        EXPECT_THROW(write(offset, 5, "", changed), std::exception);
        EXPECT_THROW(write(offset, 1000, "x", changed), std::exception);
        EXPECT_THROW(write(offset, 0xFFFFFFFF, "xy", changed), std::exception) << "which ends at 1 in 32 bits";
        EXPECT_THROW(access->write(offset, 2, "x", 0xFFFFFFFF, changed), std::exception);
        EXPECT_EQ(contents(offset), "abcd");
        EXPECT_EQ(contents(after), "after");
    }
}

TEST_P(StoreContract, AWriteToNoRecordThrowsAndChangesNothing) {
    LVP_SKIP_WITHOUT_ACCESS();
    const unsigned int kept = create("kept");
    const unsigned int gone = erasedOffset(store());
    for (const unsigned int offset : {gone, kBadOffset, kBadOffset - 1}) {
        for (const bool changed : {true, false}) {
            EXPECT_THROW(write(offset, 0, "x", changed), std::exception) << offset;
            EXPECT_THROW(write(offset, 0, "", changed), std::exception) << offset;
        }
        EXPECT_EQ(store().size(offset), 0U) << offset;
    }
    EXPECT_EQ(contents(kept), "kept");
}

TEST_P(StoreContract, AWriteOfNoBytesChangesNothing) {
    LVP_SKIP_WITHOUT_ACCESS();
    auto* const access = store().access();
    const unsigned int offset = create("abcd");
    for (unsigned int position = 0; position <= 4; ++position) access->write(offset, position, nullptr, 0, true);
    EXPECT_EQ(contents(offset), "abcd");
    const unsigned int empty = create("");
    access->write(empty, 0, nullptr, 0, true);
    access->write(empty, 0, nullptr, 0, false);
    EXPECT_EQ(store().size(empty), 0U);
}

TEST_P(StoreContract, AWriteOfContentSurvivesReopening) {
    LVP_SKIP_WITHOUT_ACCESS();
    const unsigned int offset = create(pattern(3000));
    if (!flushAndReopen()) GTEST_SKIP() << "this store does not outlive its closing";
    write(offset, 2000, "written");
    ASSERT_TRUE(flushAndReopen());
    EXPECT_TRUE(contents(offset) == pattern(3000).replace(2000, 7, "written"));
}

TEST_P(StoreContract, AWriteOfBookkeepingIsReadBackLikeAnyOther) {
    LVP_SKIP_WITHOUT_ACCESS();
    const unsigned int offset = create("refs=0");
    write(offset, 5, "1", false);
    EXPECT_EQ(contents(offset), "refs=1");
    EXPECT_EQ(shown(offset), "refs=1");
}

TEST_P(StoreContract, AWriteOfBookkeepingGoesAlongWithContentWhenThatIsFlushed) {
    LVP_SKIP_WITHOUT_ACCESS();
    const unsigned int offset = create("refs=0");
    write(offset, 5, "1", false);
    write(offset, 0, "R");
    LVP_SKIP_UNLESS_BOOKKEEPING_IS_KEPT();
    LVP_SKIP_UNLESS_REOPENED();
    EXPECT_EQ(contents(offset), "Refs=1");
}

// --- changes

TEST_P(StoreContract, ChangesGrowByOneWithEachOperationOnContent) {
    LVP_SKIP_WITHOUT_ACCESS();
    const auto& access = *store().access();
    unsigned long long changes = access.changes();
    const unsigned int offset = create("abcd");
    EXPECT_EQ(access.changes(), ++changes) << "create";
    append(offset, "e");
    EXPECT_EQ(access.changes(), ++changes) << "append";
    update(offset, "ABCDE");
    EXPECT_EQ(access.changes(), ++changes) << "update";
    update(offset, "ABCDE");
    EXPECT_EQ(access.changes(), ++changes) << "update with the same bytes";
    write(offset, 1, "xy");
    EXPECT_EQ(access.changes(), ++changes) << "write";
    store().erase(offset);
    EXPECT_EQ(access.changes(), ++changes) << "erase";
}

TEST_P(StoreContract, ChangesStayThroughBookkeepingLookingAndFlushing) {
    LVP_SKIP_WITHOUT_ACCESS();
    const unsigned int offset = create("refs=0");
    const unsigned long long changes = store().access()->changes();
    update(offset, "refs=1", false);
    write(offset, 5, "2", false);
    EXPECT_EQ(contents(offset), shown(offset));
    store().extent();
    store().version();
    store().flush();
    delete store().lock();
    EXPECT_EQ(store().access()->changes(), changes);
}

TEST_P(StoreContract, ChangesStayWhenAnOperationThrows) {
    LVP_SKIP_WITHOUT_ACCESS();
    const unsigned int offset = create("abcd");
    const unsigned int gone = erasedOffset(store());
    const unsigned long long changes = store().access()->changes();
    failEachChange(gone);
    EXPECT_THROW(write(gone, 0, "x"), std::exception);
    EXPECT_THROW(write(offset, 4, "x"), std::exception);
    EXPECT_EQ(store().access()->changes(), changes);
}

}  // namespace lumivard::platform::store_contract
