// The record of a node, group or link.
#include "record/Container.h"

#include <gtest/gtest.h>

#include "tests/support/RecordHelpers.h"
#include "tests/support/StoreFixture.h"

namespace {

namespace Record = lumivard::platform::data::Record;
using lumivard::platform::test_support::hex;
using lumivard::platform::test_support::hexText;
using lumivard::platform::test_support::StoreTest;
using lumivard::platform::test_support::wide;

class RecordContainer : public StoreTest {};
LVP_ON_EACH_STORE(RecordContainer);

TEST_P(RecordContainer, HasThisFormatWhenNew) {
    const Record::Container record(store(), L"abc");
    EXPECT_EQ(record.size(), 48u);
    EXPECT_EQ(hex(store(), record.offset()),
              "04"          //  0 type
              "ffffffff"    //  1 parent
              "00000000"    //  5 refs
              "ffffffff"    //  9 locale
              "00"          // 13 flags
              "ffffffff"    // 14 children
              "00"          // 18 kind
              "10000000"    // 19 length of the name
              "00000000"    // 23 length of the base list
              "00000000"    // 27 length of the info text
              "00"          // 31 padding
              "61000000"    // 32 a
              "62000000"    //    b
              "63000000"    //    c
              "00000000");  //    terminator
}

TEST_P(RecordContainer, HasThisFormatWithAllItsFields) {
    Record::Container record(store(), L"n");
    record.parent(0x01020304);
    record.refs(0x11121314);
    record.locale(0x21222324);
    record.flags(0x7F);
    record.children(0x31323334);
    record.kind(2);
    record.arrays(Record::Container::kInfo, wide(L"i").data(), 8);
    record.arrays(Record::Container::kBase, wide(L"bb").data(), 12);
    EXPECT_EQ(hex(store(), record.offset()),
              "04"
              "04030201"
              "14131211"
              "24232221"
              "7f"        // the entity header
              "34333231"  // 14 children
              "02"        // 18 kind
              "08000000"
              "0c000000"
              "08000000"  // 19, 23, 27 lengths
              "00" +      // 31 padding
                  hexText(L"n") +
                  hexText(L"bb") + hexText(L"i"));
}

TEST_P(RecordContainer, GivesBackWhatWasStored) {
    Record::Container made(store(), L"name");
    made.kind(255);
    made.children(12);
    made.arrays(Record::Container::kInfo, wide(L"info").data(), 20);

    const Record::Container record(store(), made.offset());
    EXPECT_EQ(record.kind(), 255);
    EXPECT_EQ(record.children(), 12u);
    EXPECT_EQ(record.name(), L"name");
    EXPECT_EQ(record.text(Record::Container::kName), L"name");
    EXPECT_EQ(record.text(Record::Container::kBase), L"");
    EXPECT_EQ(record.text(Record::Container::kInfo), L"info");
}

TEST_P(RecordContainer, MayHaveAnEmptyName) {
    const Record::Container record(store(), L"");
    EXPECT_EQ(record.size(), 36u);
    EXPECT_EQ(record.section(Record::Container::kName).size(), 4u);
}

}  // namespace
