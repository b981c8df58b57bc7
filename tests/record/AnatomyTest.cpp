// What a record is made of, for those who judge it.
#include "record/Anatomy.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "record/Container.h"
#include "record/Locale.h"
#include "record/Offsets.h"
#include "record/Primitive.h"
#include "record/Root.h"
#include "record/Table.h"
#include "tests/support/RecordHelpers.h"
#include "tests/support/StoreFixture.h"

namespace {

namespace Record = lumivard::platform::data::Record;
namespace stored = lumivard::platform::test_support::stored;
using lumivard::platform::test_support::makeRecord;
using lumivard::platform::test_support::StoreTest;
using Record::Anatomy;
using Record::Base;

class RecordAnatomy : public StoreTest {
protected:
    /// One new record of each kind.
    std::vector<unsigned int> oneOfEach() {
        return {Record::Root(store(), L"root").offset(),   Record::Primitive(store(), 1, L"p").offset(),
                Record::Table(store(), L"t").offset(),     Record::Offsets(store()).offset(),
                Record::Container(store(), L"c").offset(), Record::Locale(store()).offset()};
    }
};
LVP_ON_EACH_STORE(RecordAnatomy);

TEST_P(RecordAnatomy, OfNewRecordsIsWhole) {
    const std::size_t sections[] = {1, 4, 2, 0, 3, 1};
    const unsigned int fixed[] = {24, 44, 36, 4, 32, 8};
    for (const unsigned int offset : oneOfEach()) {
        const Base record(store(), offset);
        const Anatomy anatomy(record);
        EXPECT_TRUE(anatomy.known() && anatomy.fits() && anatomy.zeros());
        EXPECT_TRUE(anatomy.rest().empty());
        EXPECT_EQ(anatomy.sections().size(), sections[record.type()]);
        EXPECT_EQ(anatomy.fixed(), fixed[record.type()]);
        for (const auto& section : anatomy.sections()) EXPECT_TRUE(section.fits());
    }
}

TEST_P(RecordAnatomy, HasNothingWhereTheFixedPartDoesNotFit) {
    for (const unsigned int offset : oneOfEach()) {
        const std::string bytes = stored::bytes(store(), offset);
        const unsigned int fixed = Anatomy(Base(store(), offset)).fixed();
        for (unsigned int size = 1; size < fixed; ++size) {
            const Base record(store(), makeRecord(store(), bytes.substr(0, size)));
            const Anatomy anatomy(record);
            EXPECT_TRUE(anatomy.known());
            EXPECT_FALSE(anatomy.fits());
            EXPECT_TRUE(anatomy.sections().empty() && anatomy.rest().empty());
        }
    }
}

TEST_P(RecordAnatomy, KnowsSixKinds) {
    for (int kind = 0; kind < 256; ++kind) {
        const Base record(store(), makeRecord(store(), std::string(100, static_cast<char>(kind))));
        EXPECT_EQ(Anatomy(record).known(), kind < 6);
        EXPECT_EQ(Anatomy::form(record.type()) != nullptr, kind < 6);
    }
}

TEST_P(RecordAnatomy, TellsWhatASectionClaimsAndWhatIsThere) {
    const unsigned int offset = Record::Primitive(store(), 1, L"p").offset();
    stored::putWord(store(), offset, 30, 0xFFFFFFFFu);
    stored::putWord(store(), offset, 34, 5);
    const Base record(store(), offset);
    const Anatomy anatomy(record);
    EXPECT_EQ(anatomy.sections()[1].field, 30u);
    EXPECT_EQ(anatomy.sections()[1].claimed, 0xFFFFFFFFu);
    EXPECT_EQ(anatomy.sections()[1].bytes.size(), 8u);
    EXPECT_FALSE(anatomy.sections()[1].fits());
    EXPECT_EQ(anatomy.sections()[2].bytes.size(), 0u);
    EXPECT_TRUE(anatomy.sections()[3].fits());
}

TEST_P(RecordAnatomy, TellsWhatLiesBehindTheLastSection) {
    const unsigned int offset = Record::Container(store(), L"c").offset();
    store()->append(offset, "rest", 4);
    const Base record(store(), offset);
    const auto rest = Anatomy(record).rest();
    EXPECT_EQ(std::string(rest.begin(), rest.end()), "rest");
}

TEST_P(RecordAnatomy, OfAListEndsWithItsLastWholeEntry) {
    for (unsigned int size = 4; size < 20; ++size) {
        const Base record(store(), makeRecord(store(), std::string("\3\0\0\0", 4) + std::string(size - 4, 'x')));
        EXPECT_EQ(Anatomy(record).rest().size(), size % 4);
    }
}

TEST_P(RecordAnatomy, SeesBytesThatShouldBeZero) {
    // The bytes of each kind that mean nothing; those of localized names may be anything.
    const std::pair<unsigned int, std::vector<unsigned int>> all[] = {
        {Record::Root(store(), L"r").offset(), {22, 23}},
        {Record::Primitive(store(), 1, L"p").offset(), {14, 15, 16, 17, 42, 43}},
        {Record::Table(store(), L"t").offset(), {18, 19, 20, 21, 34, 35}},
        {Record::Offsets(store()).offset(), {1, 2, 3}},
        {Record::Container(store(), L"c").offset(), {31}},
        {Record::Locale(store()).offset(), {}},
    };
    for (const auto& [offset, zeros] : all) {
        const unsigned int fixed = Anatomy(Base(store(), offset)).fixed();
        for (unsigned int position = 1; position < fixed; ++position) {
            const unsigned char before = stored::byte(store(), offset, position);
            stored::putByte(store(), offset, position, 1);
            const bool means = std::find(zeros.begin(), zeros.end(), position) == zeros.end();
            EXPECT_EQ(Anatomy(Base(store(), offset)).zeros(), means) << offset << ' ' << position;
            stored::putByte(store(), offset, position, before);
        }
    }
}

}  // namespace
