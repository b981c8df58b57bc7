// The record of a table.
#include "record/Table.h"

#include <gtest/gtest.h>

#include "tests/support/RecordHelpers.h"
#include "tests/support/StoreFixture.h"

namespace {

namespace Record = lumivard::platform::data::Record;
using lumivard::platform::test_support::hex;
using lumivard::platform::test_support::hexText;
using lumivard::platform::test_support::StoreTest;
using lumivard::platform::test_support::wide;

class RecordTable : public StoreTest {};
LVP_ON_EACH_STORE(RecordTable);

TEST_P(RecordTable, HasThisFormatWhenNew) {
    const Record::Table record(store(), L"t1");
    EXPECT_EQ(record.size(), 48u);
    EXPECT_EQ(hex(store(), record.offset()),
              "02"          //  0 type
              "ffffffff"    //  1 parent
              "00000000"    //  5 refs
              "ffffffff"    //  9 locale
              "00"          // 13 flags
              "ffffffff"    // 14 children
              "00000000"    // 18 reserved
              "ffffffff"    // 22 defaults
              "0c000000"    // 26 length of the name
              "00000000"    // 30 length of the base list
              "0000"        // 34 padding
              "74000000"    // 36 t
              "31000000"    //    1
              "00000000");  //    terminator
}

TEST_P(RecordTable, HasThisFormatWithAllItsFields) {
    Record::Table record(store(), L"n");
    record.parent(0x01020304);
    record.refs(0x11121314);
    record.locale(0x21222324);
    record.flags(0x7F);
    record.children(0x31323334);
    record.defaults(0x41424344);
    record.arrays(Record::Table::kBase, wide(L"bb").data(), 12);
    EXPECT_EQ(hex(store(), record.offset()),
              "02"
              "04030201"
              "14131211"
              "24232221"
              "7f"        // the entity header
              "34333231"  // 14 children
              "00000000"  // 18 reserved
              "44434241"  // 22 defaults
              "08000000"
              "0c000000"  // 26, 30 lengths
              "0000" +    // 34 padding
                  hexText(L"n") +
                  hexText(L"bb"));
}

TEST_P(RecordTable, GivesBackWhatWasStored) {
    Record::Table made(store(), L"name");
    made.children(12);
    made.defaults(13);
    made.arrays(Record::Table::kBase, wide(L"a;b").data(), 16);

    const Record::Table record(store(), made.offset());
    EXPECT_EQ(record.children(), 12u);
    EXPECT_EQ(record.defaults(), 13u);
    EXPECT_EQ(record.name(), L"name");
    EXPECT_EQ(record.text(Record::Table::kBase), L"a;b");
}

}  // namespace
