#include "stores/core/RecordTable.h"

#include <string>

#include <gtest/gtest.h>

namespace lumivard::platform::stores {
namespace {

TEST(RecordTable, ANewSlotIsAway) {
    RecordTable table;
    EXPECT_EQ(table.at(5).place, RecordSlot::tPlace::kAway);
    EXPECT_EQ(table.at(5).bytes.size(), 0U);
}

TEST(RecordTable, SlotsNeverMoveSoThatNoWritePaysForThoseBefore) {
    RecordTable table;
    const RecordSlot* const first = &table.at(0);
    const RecordSlot* const last = &table.at(1023);
    for (unsigned int offset = 1024; offset < 200000; ++offset) table.at(offset);
    EXPECT_EQ(&table.at(0), first);
    EXPECT_EQ(&table.at(1023), last);
}

TEST(RecordTable, TheHighestOffsetHasASlot) {
    RecordTable table;
    table.heap().assign(table.at(0xFFFFFFFE).bytes, "x", 1);
    EXPECT_EQ(table.at(0xFFFFFFFE).bytes.size(), 1U);
    EXPECT_EQ(table.at(0xFFFFFFFD).bytes.size(), 0U);
}

TEST(RecordTable, ALookForAnOffsetMakesNoSlot) {
    RecordTable table;
    EXPECT_EQ(table.find(5), nullptr);
    EXPECT_EQ(table.find(0xFFFFFFFE), nullptr);
    RecordSlot& slot = table.at(5);
    EXPECT_EQ(table.find(5), &slot);
}

TEST(RecordTable, ARecordThatGetsAnotherBlockLeavesTheRestOfItsSlot) {
    RecordTable table;
    RecordSlot& slot = table.at(7);
    slot.place = RecordSlot::tPlace::kHere;
    slot.changed = slot.counted = true;
    for (const unsigned int size : {1U, 100U, 5000U, 3U, 0U}) {
        table.heap().assign(slot.bytes, std::string(size, 'x').data(), size);
        table.heap().append(slot.bytes, "more", 4);
        EXPECT_EQ(slot.place, RecordSlot::tPlace::kHere) << size;
        EXPECT_TRUE(slot.changed && slot.counted) << size;
    }
    table.heap().release(slot.bytes);
    EXPECT_EQ(slot.place, RecordSlot::tPlace::kHere);
    EXPECT_TRUE(slot.changed && slot.counted);
}

TEST(RecordTable, AForgottenOffsetIsAsBefore) {
    RecordTable table;
    RecordSlot& slot = table.at(7);
    table.heap().assign(slot.bytes, "x", 1);
    slot.place = RecordSlot::tPlace::kHere;
    slot.changed = slot.counted = true;
    table.forget(7);
    EXPECT_EQ(table.at(7).place, RecordSlot::tPlace::kAway);
    EXPECT_EQ(table.at(7).bytes.size(), 0U);
    EXPECT_FALSE(table.at(7).changed);
    EXPECT_FALSE(table.at(7).counted);
    table.forget(5000000);
}

TEST(RecordTable, LentContentsAreThoseOfALoanThatEndedForEver) {
    RecordTable table;
    table.at(7).place = RecordSlot::tPlace::kLent;
    table.at(7).loan = table.loan();
    table.at(8).place = RecordSlot::tPlace::kHere;
    table.at(8).loan = table.loan();
    EXPECT_NE(table.loan(), RecordSlot().loan) << "which was never lent";
    for (int i = 0; i < 200000; ++i) {
        table.endLoan();
        const bool lent = table.at(7).place == RecordSlot::tPlace::kLent;
        ASSERT_FALSE(lent && table.at(7).loan == table.loan()) << i;
        ASSERT_NE(table.at(8).loan, table.loan()) << i;
        ASSERT_NE(table.loan(), RecordSlot().loan) << i;
    }
    EXPECT_EQ(table.at(8).place, RecordSlot::tPlace::kHere);
}

}  // namespace
}  // namespace lumivard::platform::stores
