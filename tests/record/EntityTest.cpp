// What all records of the tree have in common.
#include "record/Entity.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "lumivard/platform/store_contract/LoggingStore.h"
#include "record/Container.h"
#include "record/Locale.h"
#include "record/Offsets.h"
#include "record/Primitive.h"
#include "record/Root.h"
#include "record/Table.h"
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
using lumivard::platform::test_support::wide;
using Record::Entity;

using lumivard::platform::test_support::BADOFF;

class RecordEntity : public StoreTest {
protected:
    /// One new record of each of the four kinds, each with the name "n".
    std::vector<unsigned int> oneOfEach() {
        return {Record::Root(store(), L"n").offset(), Record::Primitive(store(), 12, L"n").offset(),
                Record::Table(store(), L"n").offset(), Record::Container(store(), L"n").offset()};
    }
};
LVP_ON_EACH_STORE(RecordEntity);

TEST_P(RecordEntity, BeginsAloneUnusedAndWithoutFlags) {
    for (const unsigned int offset : oneOfEach()) {
        const Entity record(store(), offset);
        EXPECT_EQ(record.parent(), BADOFF);
        EXPECT_EQ(record.refs(), 0u);
        EXPECT_EQ(record.locale(), BADOFF);
        EXPECT_EQ(record.flags(), 0);
        EXPECT_EQ(record.children(), BADOFF);
        EXPECT_TRUE(record.whole());
    }
}

TEST_P(RecordEntity, KeepsItsHeaderInTheFirst14Bytes) {
    for (const unsigned int offset : oneOfEach()) {
        const std::string before = hex(store(), offset);
        Entity record(store(), offset);
        record.parent(0x01020304);
        record.refs(0x11121314);
        record.locale(0x21222324);
        record.flags(0x2A);
        record.update(true);
        EXPECT_EQ(hex(store(), offset), before.substr(0, 2) +
                                            "04030201"
                                            "14131211"
                                            "24232221"
                                            "2a" +
                                            before.substr(28));
    }
}

TEST_P(RecordEntity, GivesTheNameOfEachKind) {
    for (const unsigned int offset : oneOfEach()) EXPECT_EQ(Entity(store(), offset).name(), L"n");
}

/// Whether the record is taken for a child of that name, where only the bytes are looked at.
bool called(const Entity& record, std::wstring_view name) {
    return Record::isChildCalled({record.bytes(), record.size()}, Record::bytesOf(name));
}

TEST_P(RecordEntity, IsCalledByItsWholeNameAlone) {
    const auto called = [&](unsigned int offset, std::wstring_view name) {
        return ::called(Entity(store(), offset), name);
    };
    for (const unsigned int offset : oneOfEach()) {
        if (Record::peek(store(), offset) == Record::kRoot) {
            EXPECT_FALSE(called(offset, L"n")) << "which is no child";
            continue;
        }
        EXPECT_TRUE(called(offset, L"n"));
        for (const wchar_t* other : {L"", L"m", L"nn", L"N"}) EXPECT_FALSE(called(offset, other));
    }
    EXPECT_TRUE(called(Record::Table(store(), L"").offset(), L""));
    EXPECT_FALSE(called(Record::Table(store(), L"").offset(), L"n"));
}

TEST_P(RecordEntity, IsCalledByWhatThereIsOfANameWithoutAnEnd) {
    Record::Table record(store(), L"abc");
    const std::wstring_view open = L"ab";
    for (const unsigned int more : {0u, 1u, 3u}) {
        const std::string section = std::string(Record::bytesOf(open)) + std::string(more, 'x');
        record.arrays(Record::Table::kName, section.data(), section.size());
        EXPECT_TRUE(called(record, open));
        EXPECT_EQ(record.name(), open);
        EXPECT_FALSE(called(record, L"a"));
        EXPECT_FALSE(called(record, L"abc"));
    }
}

TEST_P(RecordEntity, IsCalledAsItsNameIsReadHoweverLittleOfTheRecordIsThere) {
    std::mt19937 random(1);
    const std::wstring_view names[] = {L"", L"n", L"nn", L"name"};
    int calls = 0;
    for (int i = 0; i < 20000; ++i) {
        const std::wstring name(names[random() % 4]);
        Record::Primitive primitive(store(), 12, name.c_str());
        if (random() % 2 == 0) primitive.arrays(Record::Primitive::kValueLocale, "de\0x", random() % 5);
        const unsigned int offset = random() % 3 == 0   ? Record::Table(store(), name.c_str()).offset()
                                    : random() % 2 == 0 ? Record::Container(store(), name.c_str()).offset()
                                                        : primitive.offset();
        const Entity whole(store(), offset);
        std::string bytes(whole.bytes(), whole.size());
        if (random() % 2 == 0) bytes.resize(random() % (bytes.size() + 8));
        for (auto changes = random() % 3; changes > 0 && !bytes.empty(); --changes) {
            bytes[random() % bytes.size()] = static_cast<char>(random() % 8);
        }
        const Entity record(store(), makeRecord(store(), bytes));
        const bool child = record.whole() && Record::isChild(record.type());
        for (const std::wstring_view wanted : names) {
            const bool is = child && record.nameBytes() == Record::bytesOf(wanted);
            ASSERT_EQ(called(record, wanted), is) << hex(store(), record.offset());
            calls += is;
        }
    }
    EXPECT_GT(calls, 5000);
}

TEST_P(RecordEntity, HasNoNameForWhatIsNone) {
    EXPECT_EQ(Entity(store(), Record::Offsets(store()).offset()).name(), L"");
    EXPECT_EQ(Entity(store(), Record::Locale(store()).offset()).name(), L"");
    EXPECT_EQ(Entity(store(), makeRecord(store(), "M" + std::string(100, 'x'))).name(), L"");
    EXPECT_EQ(Entity(store(), BADOFF).name(), L"");
}

TEST_P(RecordEntity, HasChildrenUnlessItIsAPrimitive) {
    for (const unsigned int offset : oneOfEach()) {
        stored::putWord(store(), offset, 14, 99);
        const Entity record(store(), offset);
        EXPECT_EQ(record.children(), record.type() == Record::kPrimitive ? BADOFF : 99u);
    }
}

TEST_P(RecordEntity, CountsAnObjectAndForgetsIt) {
    for (const unsigned int offset : oneOfEach()) {
        const std::string before = hex(store(), offset);
        Entity(store(), offset).ref();
        EXPECT_EQ(stored::refs(store(), offset), 1u);
        Entity(store(), offset).ref();
        EXPECT_EQ(stored::refs(store(), offset), 2u);
        Entity(store(), offset).unref();
        Entity(store(), offset).unref();
        EXPECT_EQ(hex(store(), offset), before);
    }
}

TEST_P(RecordEntity, WritesItsCountAsBookkeeping) {
    const unsigned int offset = Record::Container(store(), L"n").offset();
    LoggingStore log(*store());
    Entity record(&log, offset);
    record.ref();
    record.unref();
    const LoggingStore::Entry bookkeeping{LoggingStore::tCall::kUpdate, offset, 40, false};
    EXPECT_THAT(log.updates(false), testing::ElementsAre(bookkeeping, bookkeeping));
    EXPECT_TRUE(log.updates(true).empty());
}

TEST_P(RecordEntity, DoesNothingAtACountOfZero) {
    const unsigned int offset = Record::Table(store(), L"n").offset();
    Entity(store(), offset).unref();
    EXPECT_EQ(stored::refs(store(), offset), 0xFFFFFFFFu);
    Entity(store(), offset).ref();
    EXPECT_EQ(stored::refs(store(), offset), 0u);
}

TEST_P(RecordEntity, CountsNothingOnARecordThatIsNotThere) {
    LoggingStore log(*store());
    for (const unsigned int offset : {BADOFF, 77u}) {
        Entity(&log, offset).ref();
        Entity(&log, offset).unref();
    }
    EXPECT_EQ(log.count(LoggingStore::tCall::kUpdate), 0u);
    EXPECT_EQ(log.count(LoggingStore::tCall::kCreate), 0u);
}

TEST_P(RecordEntity, ReadsFieldsThatTheRecordIsTooShortForAsAbsent) {
    for (unsigned int size = 0; size <= 18; ++size) {
        const Entity record(store(), makeRecord(store(), ("\2" + std::string(17, '\1')).substr(0, size)));
        EXPECT_EQ(record.whole(), size >= 14) << size;
        EXPECT_EQ(record.parent(), size >= 5 ? 0x01010101 : BADOFF) << size;
        EXPECT_EQ(record.refs(), size >= 9 ? 0x01010101u : 0u) << size;
        EXPECT_EQ(record.locale(), size >= 13 ? 0x01010101 : BADOFF) << size;
        EXPECT_EQ(record.flags(), size >= 14 ? 1 : 0) << size;
        EXPECT_EQ(record.children(), size >= 18 ? 0x01010101 : BADOFF) << size;
    }
}

TEST_P(RecordEntity, ChangesNoFieldThatTheRecordIsTooShortFor) {
    for (unsigned int size = 1; size < 5; ++size) {
        const std::string bytes = std::string("\2xxx").substr(0, size);
        Entity record(store(), makeRecord(store(), bytes));
        record.parent(0);
        record.refs(0);
        record.locale(0);
        record.flags(0);
        record.children(0);
        record.update(true);
        EXPECT_EQ(stored::bytes(store(), record.offset()), bytes);
    }
}

TEST_P(RecordEntity, HasNoNameBeyondItsEndWhateverItsKindAndLength) {
    for (const char kind : {'\0', '\1', '\2', '\4'}) {
        for (unsigned int size = 1; size <= 60; ++size) {
            // Every field that is there claims all it can.
            const std::string bytes = kind + std::string(size - 1, '\xFF');
            const std::wstring name = Entity(store(), makeRecord(store(), bytes)).name();
            EXPECT_LE(name.size() * sizeof(wchar_t), size) << size;
        }
    }
}

}  // namespace
