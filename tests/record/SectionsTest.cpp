// How the sections of a record are found and replaced.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "lumivard/platform/store_contract/LoggingStore.h"
#include "record/Container.h"
#include "record/Primitive.h"
#include "record/Table.h"
#include "tests/support/RecordHelpers.h"
#include "tests/support/StoreFixture.h"

namespace {

namespace Record = lumivard::platform::data::Record;
namespace stored = lumivard::platform::test_support::stored;
using lumivard::platform::store_contract::LoggingStore;
using lumivard::platform::test_support::hex;
using lumivard::platform::test_support::makeRecord;
using lumivard::platform::test_support::StoreTest;
using lumivard::platform::test_support::wide;
using Record::Container;
using Record::Primitive;
using Record::Table;

/// The offset of a section's first byte in its record.
template <class Kind>
auto place(const Kind& record, unsigned int section) {
    return record.arrays(section) - record.bytes();
}

template <class Kind>
bool put(Kind& record, unsigned int section, const wchar_t* text) {
    const std::string bytes = wide(text);
    return record.arrays(section, bytes.data(), bytes.size());
}

class Sections : public StoreTest {};
LVP_ON_EACH_STORE(Sections);

TEST_P(Sections, OfANewRecordAreEmptyButForTheName) {
    const Container record(store(), L"abc");
    EXPECT_EQ(record.section(19).size(), 16u);
    EXPECT_EQ(record.section(23).size(), 0u);
    EXPECT_EQ(record.section(27).size(), 0u);
    EXPECT_EQ(place(record, 19), 32);
    EXPECT_EQ(place(record, 23), 48);
    EXPECT_EQ(place(record, 27), 48);
}

TEST_P(Sections, MoveAlongBehindOneThatIsFilled) {
    Container record(store(), L"abc");
    EXPECT_TRUE(put(record, 23, L"base"));
    EXPECT_STREQ(record.text(19).c_str(), L"abc");
    EXPECT_EQ(place(record, 27), 32 + 16 + 20);
}

TEST_P(Sections, MoveAlongBehindANameThatGrowsAndShrinks) {
    Container record(store(), L"abc");
    put(record, 23, L"base");
    put(record, 27, L"info");
    for (const wchar_t* name : {L"a longer name", L"x", L""}) {
        EXPECT_TRUE(put(record, 19, name));
        EXPECT_EQ(stored::bytes(store(), record.offset()).substr(32), wide(name) + wide(L"base") + wide(L"info"));
    }
}

TEST_P(Sections, AreTheFirstOneForANumberThatNamesNone) {
    Container container(store(), L"abc");
    put(container, 23, L"base");
    for (const unsigned int section : {0u, 18u, 20u, 26u, 38u, 0xFFFFFFFFu}) EXPECT_EQ(place(container, section), 32);

    Table table(store(), L"t");
    for (const unsigned int section : {0u, 19u, 38u}) EXPECT_EQ(place(table, section), 36);

    Primitive primitive(store(), 12, L"p");
    put(primitive, 26, L"en");
    for (const unsigned int section : {0u, 19u, 27u}) EXPECT_EQ(place(primitive, section), 44);
}

TEST_P(Sections, AreEmptiedByNothing) {
    Container record(store(), L"abc");
    put(record, 23, L"base");
    put(record, 27, L"info");
    EXPECT_TRUE(record.arrays(23, nullptr, 0));
    EXPECT_EQ(record.section(23).size(), 0u);
    EXPECT_EQ(stored::bytes(store(), record.offset()).substr(32), wide(L"abc") + wide(L"info"));
}

TEST_P(Sections, AreZeroWithoutASource) {
    Primitive record(store(), 1, L"p");
    EXPECT_TRUE(record.arrays(38, nullptr, 100));
    EXPECT_EQ(stored::bytes(store(), record.offset()).substr(52), std::string(100, '\0'));
}

TEST_P(Sections, StandInTheirOrderWhateverTheOrderOfFilling) {
    Primitive record(store(), 24, L"p");
    record.arrays(38, "12345", 5);
    put(record, 34, L"T");
    put(record, 26, L"en");
    EXPECT_EQ(place(record, 26), 44);
    EXPECT_EQ(place(record, 30), 56);
    EXPECT_EQ(place(record, 34), 64);
    EXPECT_EQ(place(record, 38), 72);
    EXPECT_EQ(stored::bytes(store(), record.offset()).substr(44), wide(L"en") + wide(L"p") + wide(L"T") + "12345");
}

TEST_P(Sections, CarryAChangeOfTheHeaderAlong) {
    Container record(store(), L"abc");
    record.flags(Record::kHidden);
    record.kind(2);
    put(record, 23, L"base");
    EXPECT_EQ(stored::byte(store(), record.offset(), 13), Record::kHidden);
    EXPECT_EQ(stored::byte(store(), record.offset(), 18), 2);
}

TEST_P(Sections, AreWrittenOnceAsAChange) {
    const unsigned int offset = Container(store(), L"abc").offset();
    LoggingStore log(*store());
    Container record(&log, offset);
    log.clearLog();
    put(record, 27, L"i");
    EXPECT_THAT(log.log(), testing::ElementsAre(LoggingStore::Entry{LoggingStore::tCall::kUpdate, offset, 56, true}));
    EXPECT_EQ(record.size(), 56u);
    EXPECT_EQ(record.capacity(), 64u);
}

TEST_P(Sections, MayBeFilledFromTheRecordItself) {
    Container record(store(), L"abc");
    EXPECT_TRUE(record.arrays(27, record.arrays(19), 16));
    EXPECT_EQ(record.text(19), L"abc");
    EXPECT_EQ(record.text(27), L"abc");
}

TEST_P(Sections, RefuseToOutgrow32Bits) {
    Container record(store(), L"abc");
    const std::string before = hex(store(), record.offset());
    EXPECT_FALSE(record.arrays(27, nullptr, 0xFFFFFFFFu));
    EXPECT_FALSE(record.arrays(27, nullptr, 0xFFFFFFFFu - 47));
    EXPECT_FALSE(record.arrays(27, nullptr, std::uint64_t{1} << 32));
    EXPECT_EQ(hex(store(), record.offset()), before);
    EXPECT_EQ(record.text(19), L"abc");
}

TEST_P(Sections, ThatDoNotExistAreNotReplaced) {
    Container record(store(), L"abc");
    const std::string before = hex(store(), record.offset());
    EXPECT_FALSE(put(record, 18, L"x"));
    EXPECT_FALSE(put(record, 30, L"x"));
    EXPECT_EQ(hex(store(), record.offset()), before);
}

/// A container's record with sections of those stated lengths, and 8 bytes behind the header.
std::string claiming(unsigned int name, unsigned int base, unsigned int info) {
    std::string bytes(40, '\0');
    bytes[0] = 4;
    bytes[32] = 'x';
    std::memcpy(bytes.data() + 19, &name, 4);
    std::memcpy(bytes.data() + 23, &base, 4);
    std::memcpy(bytes.data() + 27, &info, 4);
    return bytes;
}

TEST_P(Sections, EndWithTheRecordWhateverLengthTheyClaim) {
    constexpr unsigned int kHuge = 0xFFFFFFFFu;
    for (const auto& bytes : {claiming(kHuge, kHuge, kHuge), claiming(9, kHuge, 8), claiming(kHuge, 8, 8)}) {
        const Container record(store(), makeRecord(store(), bytes));
        EXPECT_EQ(record.name(), L"x");
        EXPECT_EQ(record.section(19).size(), 8u);
        EXPECT_EQ(record.section(23).size(), 0u);
        EXPECT_EQ(record.section(27).size(), 0u);
        EXPECT_EQ(place(record, 27), 40);
    }
}

TEST_P(Sections, GetTheirTrueLengthWhenOneIsReplaced) {
    Container record(store(), makeRecord(store(), claiming(0xFFFFFFFFu, 0xFFFFFFFFu, 5)));
    EXPECT_TRUE(put(record, 27, L"i"));
    EXPECT_EQ(record.size(), 48u);
    EXPECT_EQ(stored::word(store(), record.offset(), 19), 8u);
    EXPECT_EQ(stored::word(store(), record.offset(), 23), 0u);
    EXPECT_EQ(stored::word(store(), record.offset(), 27), 8u);
    EXPECT_EQ(record.text(27), L"i");
}

TEST_P(Sections, OfARecordShorterThanItsHeaderAreNotThere) {
    for (unsigned int size = 0; size < 32; ++size) {
        const std::string bytes = claiming(8, 0, 0).substr(0, size);
        Container record(store(), makeRecord(store(), bytes));
        EXPECT_EQ(record.arrays(19), nullptr);
        EXPECT_EQ(record.text(27), L"");
        EXPECT_FALSE(put(record, 27, L"i"));
        EXPECT_EQ(stored::bytes(store(), record.offset()), bytes);
    }
}

TEST_P(Sections, HoldATextUpToItsTerminator) {
    Container record(store(), L"");
    record.arrays(27, (wide(L"one") + wide(L"two")).data(), 32);
    EXPECT_EQ(record.text(27), L"one");
    record.arrays(27, wide(L"one").data(), 12);
    EXPECT_EQ(record.text(27), L"one");
    record.arrays(27, wide(L"one").data(), 11);
    EXPECT_EQ(record.text(27), L"on");
}

}  // namespace
