// Lists of offsets.
#include "record/Offsets.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "lumivard/platform/store_contract/LoggingStore.h"
#include "record/Container.h"
#include "tests/support/Offsets.h"
#include "tests/support/RecordHelpers.h"
#include "tests/support/StoreFixture.h"

namespace {

namespace Record = lumivard::platform::data::Record;
namespace stored = lumivard::platform::test_support::stored;
using lumivard::platform::store_contract::LoggingStore;
using lumivard::platform::test_support::hex;
using lumivard::platform::test_support::makeRecord;
using lumivard::platform::test_support::StoreTest;
using Record::Offsets;
using testing::ElementsAre;

using lumivard::platform::test_support::BADOFF;

class RecordOffsets : public StoreTest {
protected:
    /// A new stored list of those entries.
    unsigned int list(const std::vector<unsigned int>& entries) {
        Offsets list(store());
        list.add(entries);
        return list.offset();
    }

    std::vector<unsigned int> entries(unsigned int list) { return Offsets(store(), list).get(); }
};
LVP_ON_EACH_STORE(RecordOffsets);

TEST_P(RecordOffsets, AreFourBytesWhenNew) {
    const Offsets record(store());
    EXPECT_EQ(hex(store(), record.offset()),
              "03"
              "000000");
    EXPECT_EQ(record.items(), 0u);
    EXPECT_TRUE(record.get().empty());
}

TEST_P(RecordOffsets, TakeSeveralEntriesAtOnceAtAnyPlace) {
    const unsigned int offset = list({1, 2, 3});
    LoggingStore logged(*store());
    const unsigned int more[] = {7, 8};
    EXPECT_TRUE(Offsets(&logged, offset).set(2, more));
    EXPECT_EQ(logged.count(LoggingStore::tCall::kUpdate), 1u);
    EXPECT_THAT(entries(offset), ElementsAre(1, 2, 7, 8));
    EXPECT_TRUE(Offsets(store(), offset).set(5, more));
    EXPECT_THAT(entries(offset), ElementsAre(1, 2, 7, 8, 0, 7, 8));
}

TEST_P(RecordOffsets, HaveThisFormatWithEntries) {
    Offsets record(store());
    EXPECT_TRUE(record.add(0x01020304));
    EXPECT_TRUE(record.add(0x11121314));
    EXPECT_EQ(hex(store(), record.offset()),
              "03"
              "000000"
              "04030201"
              "14131211");
}

TEST_P(RecordOffsets, GiveTheirEntriesInOrder) {
    const Offsets record(store(), list({7, 0, 7, BADOFF}));
    EXPECT_EQ(record.items(), 4u);
    EXPECT_THAT(record.get(), ElementsAre(7, 0, 7, BADOFF));
    EXPECT_EQ(record.get(0), 7u);
    EXPECT_EQ(record.get(1), 0u);
}

TEST_P(RecordOffsets, HaveNothingPastTheEnd) {
    const Offsets record(store(), list({7}));
    EXPECT_EQ(record.get(1), BADOFF);
    EXPECT_EQ(record.get(0xFFFFFFFFu), BADOFF);
}

TEST_P(RecordOffsets, SetAnEntryInPlace) {
    Offsets record(store(), list({1, 2, 3}));
    EXPECT_TRUE(record.set(1, 9));
    EXPECT_THAT(entries(record.offset()), ElementsAre(1, 9, 3));
}

TEST_P(RecordOffsets, GrowWithZerosToAnEntryPastTheEnd) {
    Offsets record(store());
    EXPECT_TRUE(record.set(5, 9));
    EXPECT_EQ(record.items(), 6u);
    EXPECT_THAT(entries(record.offset()), ElementsAre(0, 0, 0, 0, 0, 9));
    EXPECT_TRUE(record.set(6, 8));
    EXPECT_THAT(entries(record.offset()), ElementsAre(0, 0, 0, 0, 0, 9, 8));
}

TEST_P(RecordOffsets, HaveZerosInAGapWhereEntriesWereRemoved) {
    Offsets record(store(), list({1, 2, 3}));
    record.removeVal(3);
    record.removeVal(2);
    record.set(3, 9);
    EXPECT_THAT(entries(record.offset()), ElementsAre(1, 0, 0, 9));
}

TEST_P(RecordOffsets, RefuseToOutgrow32Bits) {
    Offsets record(store(), list({1, 2}));
    const std::string before = hex(store(), record.offset());
    for (const unsigned int index : {0xFFFFFFFFu, 0x80000000u, 0x3FFFFFFFu, 0x3FFFFFFEu}) {
        EXPECT_FALSE(record.set(index, 9)) << index;
    }
    EXPECT_EQ(hex(store(), record.offset()), before);
    EXPECT_EQ(record.items(), 2u);
}

TEST_P(RecordOffsets, AddManyEntriesAtOnce) {
    Offsets record(store(), list({1}));
    EXPECT_TRUE(record.add(std::vector<unsigned int>{2, 3}));
    EXPECT_TRUE(record.add(std::vector<unsigned int>{}));
    EXPECT_THAT(entries(record.offset()), ElementsAre(1, 2, 3));
}

TEST_P(RecordOffsets, RemoveTheFirstMatchOnly) {
    Offsets record(store(), list({5, 7, 6, 7}));
    EXPECT_TRUE(record.removeVal(7));
    EXPECT_THAT(entries(record.offset()), ElementsAre(5, 6, 7));
    EXPECT_TRUE(record.removeVal(7));
    EXPECT_THAT(entries(record.offset()), ElementsAre(5, 6));
    EXPECT_FALSE(record.removeVal(7));
}

TEST_P(RecordOffsets, RemoveTheOnlyEntry) {
    Offsets record(store(), list({5}));
    EXPECT_TRUE(record.removeVal(5));
    EXPECT_EQ(hex(store(), record.offset()), "03000000");
}

TEST_P(RecordOffsets, WriteNothingWhenThereIsNothingToRemove) {
    const unsigned int empty = list({});
    const unsigned int filled = list({1, 2});
    LoggingStore log(*store());
    EXPECT_FALSE(Offsets(&log, empty).removeVal(0));
    EXPECT_FALSE(Offsets(&log, filled).removeVal(0));
    EXPECT_EQ(log.count(LoggingStore::tCall::kUpdate), 0u);
}

TEST_P(RecordOffsets, WriteEachChangeOnceAsAChange) {
    const unsigned int offset = list({1, 2});
    LoggingStore log(*store());
    Offsets record(&log, offset);
    record.set(0, 3);
    record.add(4);
    record.add({5, 6});
    record.removeVal(2);
    EXPECT_EQ(log.updates(true).size(), 4u);
    EXPECT_EQ(log.updates(false).size(), 0u);
}

TEST_P(RecordOffsets, AreAsManyAsFitWholly) {
    for (const unsigned int size : {1u, 2u, 3u, 4u, 5u, 7u}) {
        const Offsets record(store(), makeRecord(store(), std::string("\3xxxyyy").substr(0, size)));
        EXPECT_EQ(record.items(), 0u) << size;
        EXPECT_TRUE(record.get().empty()) << size;
        EXPECT_EQ(record.get(0), BADOFF) << size;
    }
    EXPECT_EQ(Offsets(store(), makeRecord(store(), std::string("\3xxxyyyyzzz"))).items(), 1u);
}

TEST_P(RecordOffsets, ThatAreDamagedTakeEntriesAllTheSame) {
    for (const unsigned int size : {1u, 2u, 3u, 4u, 5u, 7u}) {
        Offsets record(store(), makeRecord(store(), std::string("\3\0\0\0yyy", 7).substr(0, size)));
        EXPECT_FALSE(record.removeVal(1));
        EXPECT_TRUE(record.add(9)) << size;
        EXPECT_THAT(entries(record.offset()), ElementsAre(9)) << size;
    }
}

TEST_P(RecordOffsets, AreEmptyInARecordOfAnotherKindWhichTheyLeaveAlone) {
    const unsigned int offset = Record::Container(store(), L"some name").offset();
    const std::string before = hex(store(), offset);
    Offsets record(store(), offset);
    EXPECT_EQ(record.items(), 0u);
    EXPECT_EQ(record.get(0), BADOFF);
    EXPECT_FALSE(record.removeVal(0));
    EXPECT_FALSE(record.set(0, 9));
    EXPECT_FALSE(record.add(9));
    EXPECT_FALSE(record.add(std::vector<unsigned int>{9}));
    EXPECT_EQ(hex(store(), offset), before);
}

TEST_P(RecordOffsets, AreEmptyWhereThereIsNoRecord) {
    for (const unsigned int offset : {BADOFF, 77u}) {
        Offsets record(store(), offset);
        EXPECT_EQ(record.items(), 0u);
        EXPECT_FALSE(record.removeVal(0));
        EXPECT_FALSE(record.add(9));
    }
    EXPECT_EQ(store()->extent(), 0u);
}

class OffsetsAt : public RecordOffsets {};
LVP_ON_EACH_STORE(OffsetsAt);

TEST_P(OffsetsAt, GivesOneEntryOfAStoredList) {
    const unsigned int offset = list({7, 8, 9});
    EXPECT_EQ(Offsets::at(store(), offset, 0), 7u);
    EXPECT_EQ(Offsets::at(store(), offset, 2), 9u);
}

TEST_P(OffsetsAt, GivesNothingPastTheEnd) {
    const unsigned int offset = list({7, 8, 9});
    for (const unsigned int index : {3u, 0x3FFFFFFFu, 0x40000000u, 0xFFFFFFFFu}) {
        EXPECT_EQ(Offsets::at(store(), offset, index), BADOFF) << index;
    }
    EXPECT_EQ(Offsets::at(store(), makeRecord(store(), "\3\1\1\1yyy"), 0), BADOFF);
}

TEST_P(OffsetsAt, GivesNothingForWhatIsNoList) {
    EXPECT_EQ(Offsets::at(store(), BADOFF, 0), BADOFF);
    EXPECT_EQ(Offsets::at(store(), 77, 0), BADOFF);
    const unsigned int container = Record::Container(store(), L"name").offset();
    for (const unsigned int index : {0u, 1u, 5u}) EXPECT_EQ(Offsets::at(store(), container, index), BADOFF);
}

}  // namespace
