// The record of a primitive.
#include "record/Primitive.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/RecordHelpers.h"
#include "tests/support/StoreFixture.h"

namespace {

namespace Record = lumivard::platform::data::Record;
using lumivard::platform::test_support::hex;
using lumivard::platform::test_support::hexText;
using lumivard::platform::test_support::StoreTest;
using lumivard::platform::test_support::wide;

class RecordPrimitive : public StoreTest {};
LVP_ON_EACH_STORE(RecordPrimitive);

TEST_P(RecordPrimitive, HasThisFormatWhenNew) {
    const Record::Primitive record(store(), 12, L"p");
    EXPECT_EQ(record.size(), 52u);
    EXPECT_EQ(hex(store(), record.offset()),
              "01"          //  0 type
              "ffffffff"    //  1 parent
              "00000000"    //  5 refs
              "ffffffff"    //  9 locale
              "00"          // 13 flags
              "00000000"    // 14 reserved
              "00000000"    // 18 units
              "0c000000"    // 22 value kind
              "00000000"    // 26 length of the value locale
              "08000000"    // 30 length of the name
              "00000000"    // 34 length of the base
              "00000000"    // 38 length of the value
              "0000"        // 42 padding
              "70000000"    // 44 p
              "00000000");  //    terminator
}

TEST_P(RecordPrimitive, HasThisFormatWithAllItsFields) {
    Record::Primitive record(store(), 24, L"n");
    record.parent(0x01020304);
    record.refs(0x11121314);
    record.locale(0x21222324);
    record.flags(0x7F);
    record.units(0x31323334);
    record.arrays(Record::Primitive::kValue, "\1\2\3", 3);
    record.arrays(Record::Primitive::kBase, wide(L"bb").data(), 12);
    record.arrays(Record::Primitive::kValueLocale, wide(L"l").data(), 8);
    EXPECT_EQ(hex(store(), record.offset()),
              "01"
              "04030201"
              "14131211"
              "24232221"
              "7f"        // the entity header
              "00000000"  // 14 reserved
              "34333231"  // 18 units
              "18000000"  // 22 value kind
              "08000000"
              "08000000"
              "0c000000"
              "03000000"  // 26, 30, 34, 38 lengths
              "0000" +    // 42 padding
                  hexText(L"l") +
                  hexText(L"n") + hexText(L"bb") + "010203");
}

TEST_P(RecordPrimitive, FindsItsNameAt44AsLongAsItHasNoValueLocale) {
    Record::Primitive record(store(), 12, L"p");
    EXPECT_EQ(record.arrays(30), record.bytes() + 44);
    record.arrays(26, wide(L"en").data(), 12);
    EXPECT_EQ(record.arrays(30), record.bytes() + 56);
    EXPECT_EQ(record.name(), L"p");
}

TEST_P(RecordPrimitive, GivesBackWhatWasStored) {
    Record::Primitive made(store(), 0xFFFFFFFFu, L"name");
    made.units(7);
    made.arrays(Record::Primitive::kValueLocale, wide(L"de").data(), 12);

    const Record::Primitive record(store(), made.offset());
    EXPECT_EQ(record.valuetype(), 0xFFFFFFFFu);
    EXPECT_EQ(record.units(), 7u);
    EXPECT_EQ(record.text(Record::Primitive::kValueLocale), L"de");
    EXPECT_EQ(record.text(Record::Primitive::kName), L"name");
    EXPECT_EQ(record.children(), Record::Base::BADOFF);
}

class WriteValue : public StoreTest {
protected:
    /// A record with the value "abcdef" behind a name.
    std::string overwritten(std::uint64_t start, const std::string& data, bool& done) {
        Record::Primitive record(store(), 1, L"p");
        record.arrays(Record::Primitive::kValue, "abcdef", 6);
        done = record.writeValue(start, data.data(), data.size());
        const auto value = record.section(Record::Primitive::kValue);
        return {value.begin(), value.end()};
    }
};
LVP_ON_EACH_STORE(WriteValue);

TEST_P(WriteValue, ReplacesBytesInsideTheValue) {
    bool done = false;
    EXPECT_EQ(overwritten(0, "ABCDEF", done), "ABCDEF");
    EXPECT_TRUE(done);
    EXPECT_EQ(overwritten(4, "EF", done), "abcdEF");
    EXPECT_TRUE(done);
}

TEST_P(WriteValue, RefusesBytesThatDoNotLieInside) {
    bool done = true;
    EXPECT_EQ(overwritten(5, "FG", done), "abcdef");
    EXPECT_FALSE(done);
    EXPECT_EQ(overwritten(7, "H", done = true), "abcdef");
    EXPECT_FALSE(done);
    EXPECT_EQ(overwritten(0xFFFFFFFFFFFFFFFFull, "H", done = true), "abcdef");
    EXPECT_FALSE(done);
}

TEST_P(WriteValue, ReachesTheStoreAtOnceAndTakesNothingElseThere) {
    Record::Primitive record(store(), 1, L"p");
    record.arrays(Record::Primitive::kValue, "abc", 3);
    const std::string before = hex(store(), record.offset());
    record.writeValue(0, "ABC", 3);
    EXPECT_EQ(hex(store(), record.offset()), before.substr(0, before.size() - 6) + "414243");
}

}  // namespace
