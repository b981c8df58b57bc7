// The record at the top of a store.
#include "record/Root.h"

#include <gtest/gtest.h>

#include "tests/support/RecordHelpers.h"
#include "tests/support/StoreFixture.h"

namespace {

namespace Record = lumivard::platform::data::Record;
using lumivard::platform::test_support::hex;
using lumivard::platform::test_support::hexText;
using lumivard::platform::test_support::makeRecord;
using lumivard::platform::test_support::StoreTest;

const wchar_t* text(const char* bytes) {
    return reinterpret_cast<const wchar_t*>(bytes);
}

class RecordRoot : public StoreTest {};
LVP_ON_EACH_STORE(RecordRoot);

TEST_P(RecordRoot, HasThisFormat) {
    const Record::Root record(store(), L"root");
    EXPECT_EQ(record.offset(), 0u);
    EXPECT_EQ(record.size(), 44u);
    EXPECT_EQ(hex(store(), 0),
              "00"          //  0 type
              "ffffffff"    //  1 parent
              "00000000"    //  5 refs
              "ffffffff"    //  9 locale
              "00"          // 13 flags
              "ffffffff"    // 14 children
              "14000000"    // 18 name length
              "0000"        // 22 padding
              "72000000"    // 24 name: r
              "6f000000"    //    o
              "6f000000"    //    o
              "74000000"    //    t
              "00000000");  //    terminator
}

TEST_P(RecordRoot, Takes28BytesWithAnEmptyName) {
    const Record::Root record(store(), L"");
    EXPECT_EQ(record.size(), 28u);
    EXPECT_EQ(hex(store(), 0).substr(2 * 18),
              "04000000"
              "0000"
              "00000000");
}

TEST_P(RecordRoot, KeepsCharactersThatTake4Bytes) {
    const Record::Root record(store(), L"\x1F600");
    EXPECT_EQ(hex(store(), 0).substr(2 * 24), hexText(L"\x1F600"));
    EXPECT_EQ(Record::Root(store(), 0u).name(), L"\x1F600");
}

TEST_P(RecordRoot, GivesItsNameForAnyArray) {
    { const Record::Root made(store(), L"root"); }
    const Record::Root record(store(), 0u);
    for (const unsigned int section : {0u, 18u, 24u, 0xFFFFFFFFu}) EXPECT_STREQ(text(record.arrays(section)), L"root");
    EXPECT_EQ(record.arrays(0), record.bytes() + 24);
}

TEST_P(RecordRoot, HasNoArrayInARecordThatEndsBefore) {
    const Record::Root record(store(), makeRecord(store(), std::string(24, '\0')));
    EXPECT_EQ(record.arrays(0), nullptr);
    EXPECT_EQ(record.name(), L"");
}

}  // namespace
