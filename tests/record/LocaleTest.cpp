// The record of localized names.
#include "record/Locale.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "lumivard/platform/store_contract/LoggingStore.h"
#include "record/Container.h"
#include "tests/support/RecordHelpers.h"
#include "tests/support/StoreFixture.h"

namespace {

namespace Record = lumivard::platform::data::Record;
namespace stored = lumivard::platform::test_support::stored;
using lumivard::platform::store_contract::LoggingStore;
using lumivard::platform::test_support::hex;
using lumivard::platform::test_support::hexText;
using lumivard::platform::test_support::hexWord;
using lumivard::platform::test_support::makeRecord;
using lumivard::platform::test_support::StoreTest;
using lumivard::platform::test_support::wide;
using Record::Locale;

class RecordLocale : public StoreTest {};
LVP_ON_EACH_STORE(RecordLocale);

TEST_P(RecordLocale, IsWrittenAtOnceWith8Bytes) {
    LoggingStore log(*store());
    const Locale record(&log);
    EXPECT_THAT(log.log(), testing::ElementsAre(LoggingStore::Entry{LoggingStore::tCall::kCreate, 0, 8, false}));
    EXPECT_EQ(hex(store(), record.offset()),
              "05"        // 0 type
              "00000000"  // 1 payload length
              "000000");  // 5 padding
    EXPECT_EQ(record.payload(), L"");
}

TEST_P(RecordLocale, HasThisFormatWithAPayload) {
    Locale record(store());
    const std::string payload = wide(L"en") + wide(L"x");
    EXPECT_TRUE(record.payload(payload.size(), payload.data()));
    const std::string bytes = hex(store(), record.offset());
    // Bytes 5 to 7 say nothing.
    EXPECT_EQ(bytes.substr(0, 2 * 5),
              "05"
              "14000000");
    EXPECT_EQ(bytes.substr(2 * 8), hexText(L"en") + hexText(L"x"));
    EXPECT_EQ(record.size(), 28u);
    EXPECT_EQ(record.capacity(), 32u);
}

TEST_P(RecordLocale, ReplacesAPayloadByALongerAndAShorterOne) {
    Locale record(store());
    for (const wchar_t* text : {L"a", L"a much longer text", L"b"}) {
        EXPECT_TRUE(record.payload(wide(text).size(), wide(text).data()));
        EXPECT_EQ(stored::word(store(), record.offset(), 1), wide(text).size());
        EXPECT_EQ(stored::bytes(store(), record.offset()).substr(8), wide(text));
    }
}

TEST_P(RecordLocale, Has8BytesWithoutAPayload) {
    Locale record(store());
    record.payload(8, wide(L"x").data());
    EXPECT_TRUE(record.payload(0, nullptr));
    EXPECT_EQ(record.size(), 8u);
    EXPECT_EQ(hex(store(), record.offset()).substr(0, 2 * 5),
              "05"
              "00000000");
}

TEST_P(RecordLocale, WritesItsPayloadOnceAsAChange) {
    LoggingStore log(*store());
    Locale record(&log);
    log.clearLog();
    record.payload(8, wide(L"x").data());
    EXPECT_THAT(log.log(), testing::ElementsAre(LoggingStore::Entry{LoggingStore::tCall::kUpdate, 0, 16, true}));
}

TEST_P(RecordLocale, GivesItsPayloadWithAllTerminators) {
    Locale made(store());
    made.payload(20, (wide(L"en") + wide(L"x")).data());
    EXPECT_EQ(Locale(store(), made.offset()).payload(), std::wstring(L"en\0x\0", 5));
}

TEST_P(RecordLocale, RefusesAPayloadThatDoesNotFitIn32Bits) {
    Locale record(store());
    record.payload(8, wide(L"x").data());
    EXPECT_FALSE(record.payload(0xFFFFFFFFu - 7, nullptr));
    EXPECT_FALSE(record.payload(std::uint64_t{1} << 32, nullptr));
    EXPECT_EQ(record.payload(), std::wstring(L"x\0", 2));
}

TEST_P(RecordLocale, EndsWithTheRecordWhateverLengthItClaims) {
    const std::string claim("\5\xFF\xFF\xFF\xFF\0\0\0", 8);
    EXPECT_EQ(Locale(store(), makeRecord(store(), claim)).payload(), L"");
    EXPECT_EQ(Locale(store(), makeRecord(store(), claim + "abc")).payload(), L"");
    EXPECT_EQ(Locale(store(), makeRecord(store(), claim + wide(L"ab"))).payload(), std::wstring(L"ab\0", 3));
    const std::string shorter("\5\x6\0\0\0\0\0\0", 8);
    EXPECT_EQ(Locale(store(), makeRecord(store(), shorter + wide(L"ab"))).payload(), L"a");
}

TEST_P(RecordLocale, HasNoPayloadWhenCutShort) {
    for (unsigned int size = 0; size <= 8; ++size) {
        EXPECT_EQ(Locale(store(), makeRecord(store(), std::string("\5\1\1\1\1\1\1\1").substr(0, size))).payload(), L"");
    }
}

TEST_P(RecordLocale, HasNoPayloadInARecordOfAnotherKind) {
    EXPECT_EQ(Locale(store(), Record::Container(store(), L"name").offset()).payload(), L"");
    EXPECT_EQ(Locale(store(), Record::Base::BADOFF).payload(), L"");
    EXPECT_EQ(Locale(store(), 77).payload(), L"");
}

}  // namespace
