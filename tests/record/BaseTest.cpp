// The working copy of a record.
#include "record/Base.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "lumivard/platform/store_contract/FailingStore.h"
#include "lumivard/platform/store_contract/LoggingStore.h"
#include "tests/support/Offsets.h"
#include "tests/support/RecordHelpers.h"
#include "tests/support/StoreFixture.h"

namespace {

namespace Record = lumivard::platform::data::Record;
namespace stored = lumivard::platform::test_support::stored;
using lumivard::platform::store_contract::FailingStore;
using lumivard::platform::store_contract::LoggingStore;
using lumivard::platform::test_support::makeRecord;
using lumivard::platform::test_support::StoreTest;
using tCall = LoggingStore::tCall;
using Record::Base;

using lumivard::platform::test_support::BADOFF;

std::string working(const Base& record) {
    return {record.bytes(), record.size()};
}

/// The bytes 0, 1, 2, ... of a record of that size.
std::string counted(unsigned int size) {
    std::string bytes(size, '\0');
    for (unsigned int i = 0; i < size; ++i) bytes[i] = static_cast<char>(i);
    return bytes;
}

class RecordBase : public StoreTest {};
LVP_ON_EACH_STORE(RecordBase);

TEST_P(RecordBase, IsZeroButForTheKindWhenNew) {
    const Base record(store(), std::uint64_t{28}, Record::kContainer);
    EXPECT_EQ(working(record), "\4" + std::string(27, '\0'));
    EXPECT_EQ(record.type(), Record::kContainer);
    EXPECT_EQ(record.capacity(), 32u);
}

TEST_P(RecordBase, DoesNotReachTheStoreBeforeTheFirstUpdate) {
    const Base record(store(), std::uint64_t{28}, Record::kContainer);
    EXPECT_EQ(record.offset(), BADOFF);
    EXPECT_EQ(store()->extent(), 0u);
}

TEST_P(RecordBase, IsCreatedByTheFirstUpdateWhateverHasChanged) {
    LoggingStore log(*store());
    Base record(&log, std::uint64_t{28}, Record::kTable);
    record.update(false);
    EXPECT_EQ(record.offset(), 0u);
    EXPECT_THAT(log.log(), testing::ElementsAre(LoggingStore::Entry{tCall::kCreate, 0, 28, false}));
}

TEST_P(RecordBase, IsReplacedByTheSecondUpdate) {
    LoggingStore log(*store());
    Base record(&log, std::uint64_t{28}, Record::kTable);
    record.update(true);
    log.clearLog();
    record.update(true);
    record.update(false);
    EXPECT_THAT(log.log(), testing::ElementsAre(LoggingStore::Entry{tCall::kUpdate, 0, 28, true},
                                                LoggingStore::Entry{tCall::kUpdate, 0, 28, false}));
}

TEST_P(RecordBase, LoadsAllBytesOfARecord) {
    makeRecord(store(), "x");
    const unsigned int offset = makeRecord(store(), counted(100));
    const Base record(store(), offset);
    EXPECT_EQ(working(record), counted(100));
    EXPECT_EQ(record.capacity(), 128u);
    EXPECT_EQ(record.offset(), offset);
}

TEST_P(RecordBase, IsEmptyForAnOffsetThatNamesNoRecord) {
    for (const unsigned int offset : {BADOFF, 77u}) {
        const Base record(store(), offset);
        EXPECT_EQ(record.size(), 0u);
        EXPECT_EQ(record.capacity(), 0u);
        EXPECT_EQ(record.bytes(), nullptr);
        EXPECT_EQ(record.type(), Record::kRoot);
        EXPECT_EQ(record.offset(), offset);
    }
}

TEST_P(RecordBase, LosesAChangeWithoutUpdate) {
    const unsigned int offset = makeRecord(store(), counted(12));
    { Base(store(), offset).shrink(0, 4); }
    EXPECT_EQ(stored::bytes(store(), offset), counted(12));
}

TEST_P(RecordBase, DoesNotSeeWhatTheStoreReceivesMeanwhile) {
    const unsigned int offset = makeRecord(store(), "abcd");
    Base first(store(), offset);
    Base second(store(), offset);
    second.grow(4);
    second.update(true);
    EXPECT_EQ(working(first), "abcd");
    first.update(true);
    EXPECT_EQ(stored::bytes(store(), offset), "abcd");
}

TEST_P(RecordBase, IsReadWhereItLiesOnlyUntilItIsChanged) {
    const unsigned int offset = makeRecord(store(), counted(12));
    Base record(store(), offset, Record::kInPlace);
    EXPECT_EQ(working(record), counted(12));
    if (auto* access = store()->access()) {
        EXPECT_EQ(record.bytes(), access->view(offset).data);
    }
    record.shrink(0, 4);
    EXPECT_EQ(working(record), counted(12).substr(4));
    EXPECT_EQ(stored::bytes(store(), offset), counted(12));
    record.update(true);
    EXPECT_EQ(stored::bytes(store(), offset), counted(12).substr(4));
}

TEST_P(RecordBase, GrowsOutOfItsPlace) {
    const unsigned int offset = makeRecord(store(), "abcd");
    Base record(store(), offset, Record::kInPlace);
    record.grow(200);
    EXPECT_EQ(working(record), "abcd" + std::string(200, '\0'));
    EXPECT_EQ(stored::bytes(store(), offset), "abcd");
}

TEST_P(RecordBase, IsEmptyInPlaceWhereThereIsNone) {
    for (const unsigned int offset : {777u, Base::BADOFF}) {
        const Base record(store(), offset, Record::kInPlace);
        EXPECT_EQ(record.size(), 0u);
        EXPECT_EQ(record.type(), Record::kRoot);
    }
}

TEST_P(RecordBase, RefusesASizeAbove32Bits) {
    EXPECT_THROW(Base(store(), std::uint64_t{1} << 32, Record::kOffsets), std::bad_alloc);
}

TEST_P(RecordBase, GivesItsBufferBackWhenTheStoreRefusesToRead) {
    const unsigned int offset = makeRecord(store(), counted(12));
    FailingStore refusing(*store());
    refusing.failAfter(0, FailingStore::kRead);
    EXPECT_THROW(Base(&refusing, offset), std::runtime_error);
}

TEST_P(RecordBase, StaysAsItIsWhenTheStoreRefusesToWrite) {
    FailingStore refusing(*store());
    refusing.failAfter(0, FailingStore::kAllChanges);
    Base record(&refusing, std::uint64_t{4}, Record::kOffsets);
    EXPECT_THROW(record.update(true), std::runtime_error);
    EXPECT_EQ(record.offset(), BADOFF);
    refusing.goOn();
    record.update(true);
    EXPECT_EQ(record.offset(), 0u);
}

class Grow : public StoreTest {};
LVP_ON_EACH_STORE(Grow);

TEST_P(Grow, StaysInItsBufferAsLongAsItFits) {
    Base record(store(), std::uint64_t{28}, Record::kTable);
    const char* buffer = record.bytes();
    EXPECT_TRUE(record.grow(4));
    EXPECT_EQ(record.bytes(), buffer);
    EXPECT_EQ(record.size(), 32u);
    EXPECT_EQ(record.capacity(), 32u);
}

TEST_P(Grow, MovesToTheNextSizeOfBuffer) {
    Base record(store(), std::uint64_t{28}, Record::kTable);
    EXPECT_TRUE(record.grow(8));
    EXPECT_EQ(record.size(), 36u);
    EXPECT_EQ(record.capacity(), 48u);
}

TEST_P(Grow, KeepsTheBytesAndAddsZeros) {
    Base record(store(), makeRecord(store(), counted(12)));
    record.grow(4);
    EXPECT_EQ(working(record), counted(12) + std::string(4, '\0'));
    record.grow(100);
    EXPECT_EQ(working(record), counted(12) + std::string(104, '\0'));
}

TEST_P(Grow, FillsAnEmptyRecord) {
    Base record(store(), BADOFF);
    EXPECT_TRUE(record.grow(9));
    EXPECT_EQ(working(record), std::string(9, '\0'));
    EXPECT_EQ(record.capacity(), 16u);
}

TEST_P(Grow, DoesNothingForNothing) {
    Base record(store(), makeRecord(store(), counted(12)));
    EXPECT_TRUE(record.grow(0));
    EXPECT_EQ(working(record), counted(12));
}

TEST_P(Grow, RefusesToOutgrow32Bits) {
    Base record(store(), makeRecord(store(), counted(12)));
    EXPECT_FALSE(record.grow(0xFFFFFFFFu));
    EXPECT_FALSE(record.grow(0xFFFFFFFFu - 11));
    EXPECT_EQ(working(record), counted(12));
    EXPECT_EQ(record.capacity(), 16u);
}

class Shrink : public StoreTest {};
LVP_ON_EACH_STORE(Shrink);

TEST_P(Shrink, MovesTheTailDownAndZeroesWhatFallsFree) {
    Base record(store(), makeRecord(store(), counted(12)));
    record.shrink(4, 4);
    EXPECT_EQ(working(record), counted(4) + "\x8\x9\xa\xb");
    EXPECT_EQ(std::string(record.bytes() + 8, 4), std::string(4, '\0'));
}

TEST_P(Shrink, MovesATailThatOverlapsWhereItGoes) {
    Base record(store(), makeRecord(store(), counted(16)));
    record.shrink(1, 1);
    EXPECT_EQ(working(record), counted(1) + counted(16).substr(2));
    EXPECT_EQ(record.bytes()[15], '\0');
}

TEST_P(Shrink, OnlyZeroesWhenTheLastBytesGo) {
    Base record(store(), makeRecord(store(), counted(12)));
    record.shrink(8, 4);
    EXPECT_EQ(working(record), counted(8));
    EXPECT_EQ(std::string(record.bytes() + 8, 4), std::string(4, '\0'));
}

TEST_P(Shrink, KeepsItsBuffer) {
    Base record(store(), makeRecord(store(), counted(100)));
    const char* buffer = record.bytes();
    record.shrink(0, 96);
    EXPECT_EQ(record.bytes(), buffer);
    EXPECT_EQ(record.capacity(), 128u);
    EXPECT_EQ(record.size(), 4u);
}

TEST_P(Shrink, DoesNothingForNothing) {
    Base record(store(), makeRecord(store(), counted(12)));
    record.shrink(4, 0);
    EXPECT_EQ(working(record), counted(12));
}

TEST_P(Shrink, NeverTouchesTheStoreAndNeitherDoesGrow) {
    const unsigned int offset = makeRecord(store(), counted(12));
    LoggingStore log(*store());
    Base record(&log, offset);
    log.clearLog();
    record.grow(40);
    record.shrink(0, 20);
    EXPECT_TRUE(log.log().empty());
}

class CloneOfARecord : public StoreTest {};
LVP_ON_EACH_STORE(CloneOfARecord);

TEST_P(CloneOfARecord, IsANewRecordInAnotherStore) {
    makeRecord(other(), "x");
    const Base record(store(), makeRecord(store(), counted(12)));
    const unsigned int copy = record.clone(other());
    EXPECT_NE(copy, 0u);
    EXPECT_EQ(stored::bytes(other(), copy), counted(12));
    EXPECT_EQ(record.offset(), 0u);
}

TEST_P(CloneOfARecord, MayStandInTheSameStore) {
    Base record(store(), makeRecord(store(), counted(12)));
    const unsigned int copy = record.clone(store());
    EXPECT_NE(copy, record.offset());
    EXPECT_EQ(stored::bytes(store(), copy), counted(12));
}

TEST_P(CloneOfARecord, TakesTheWorkingBytesAndLeavesANewRecordNew) {
    Base record(store(), std::uint64_t{4}, Record::kOffsets);
    const unsigned int copy = record.clone(store());
    EXPECT_EQ(stored::bytes(store(), copy), std::string("\3\0\0\0", 4));
    EXPECT_EQ(record.offset(), BADOFF);
}

class Peek : public StoreTest {};
LVP_ON_EACH_STORE(Peek);

TEST_P(Peek, TellsTheFirstByte) {
    for (const int kind : {0, 1, 2, 3, 4, 5, 77, 255}) {
        const unsigned int offset = makeRecord(store(), std::string(1, static_cast<char>(kind)) + "rest");
        EXPECT_EQ(Record::peek(store(), offset), kind);
    }
}

TEST_P(Peek, TellsARootWhereThereIsNoRecord) {
    EXPECT_EQ(Record::peek(store(), BADOFF), Record::kRoot);
    EXPECT_EQ(Record::peek(store(), 77), Record::kRoot);
    EXPECT_EQ(Record::peek(store(), makeRecord(store(), "")), Record::kRoot);
}

TEST_P(Peek, ReadsOneByteAndNothingElse) {
    const unsigned int offset = makeRecord(store(), "\4abc");
    LoggingStore log(*store());
    Record::peek(&log, offset);
    EXPECT_THAT(log.log(), testing::ElementsAre(LoggingStore::Entry{tCall::kRead, offset, 1, false}));
}

}  // namespace
