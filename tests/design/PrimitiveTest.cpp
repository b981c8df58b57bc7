// A primitive, apart from its values.
#include "design/Primitive.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/RecordHelpers.h"
#include "tests/support/StoreFixture.h"
#include "tests/support/TreeHelpers.h"

namespace {

namespace data = lumivard::platform::data;
namespace metadata = data::metadata;
namespace stored = lumivard::platform::test_support::stored;
namespace tree = lumivard::platform::test_support::tree;
namespace units = data::units;
using data::Design::Primitive;
using lumivard::platform::test_support::hex;
using lumivard::platform::test_support::StoreTest;
using lumivard::platform::test_support::wide;

constexpr metadata::tValue kind(unsigned int number) {
    return static_cast<metadata::tValue>(number);
}

class DesignPrimitive : public StoreTest {
protected:
    /// All that stands behind the fixed fields.
    std::string sections(unsigned int offset) { return stored::bytes(store(), offset).substr(44); }

    int flags(unsigned int offset) { return stored::byte(store(), offset, 13); }

    const unsigned int _root = tree::root(store());
};
LVP_ON_EACH_STORE(DesignPrimitive);

TEST_P(DesignPrimitive, IsEmptyWhenNew) {
    const Primitive item(store(), metadata::kInt32, L"p");
    EXPECT_STREQ(item.tag(), L"p");
    EXPECT_EQ(item.valuetype(), metadata::kInt32);
    EXPECT_EQ(item.valuesize(), 0u);
    EXPECT_EQ(item.dimension(), 0u);
    EXPECT_EQ(item.base(), nullptr);
    EXPECT_EQ(item.uri(), nullptr);
    EXPECT_EQ(item.valuelocale(), nullptr);
    EXPECT_EQ(item.units(), units::kNoUnit);
    EXPECT_EQ(item.flags(), 0);
}

TEST_P(DesignPrimitive, IsStoredLikeThis) {
    const Primitive item(store(), metadata::kInt32, L"p");
    EXPECT_EQ(hex(store(), item.offset()),
              "01"
              "ffffffff"
              "01000000"
              "ffffffff"
              "00"  // the entity header, with one object
              "00000000"
              "00000000"
              "0c000000"  // reserved, units, kind
              "00000000"
              "08000000"
              "00000000"
              "00000000"
              "0000"                // lengths, padding
              "7000000000000000");  // p
}

TEST_P(DesignPrimitive, GivesAllItsFieldsBackWhenOpened) {
    const unsigned int offset = tree::primitive(store(), L"p", metadata::kStruct);
    {
        Primitive item(store(), offset);
        item.base(L"T");
        item.units(units::kMeter);
        item.valuelocale(L"de");
        item.set("abc", 0, 3);
        item.localize(L"name", L"en");
    }
    Primitive item(store(), offset);
    EXPECT_STREQ(item.tag(), L"p");
    EXPECT_STREQ(item.base(), L"T");
    EXPECT_EQ(item.units(), units::kMeter);
    EXPECT_STREQ(item.valuelocale(), L"de");
    EXPECT_EQ(item.valuetype(), metadata::kStruct);
    EXPECT_EQ(item.valuesize(), 3u);
    EXPECT_EQ(item.locales(), 1u);
}

TEST_P(DesignPrimitive, HasItsUnitInTheStoreForAllObjects) {
    Primitive first(store(), metadata::kDouble, L"p");
    Primitive second(store(), first.offset());
    first.units(units::kMeter);
    EXPECT_EQ(second.units(), units::kMeter);
    EXPECT_EQ(stored::word(store(), first.offset(), 18), 0x2001u);
    second.units(units::kNoUnit);
    EXPECT_EQ(first.units(), units::kNoUnit);
}

TEST_P(DesignPrimitive, TakesAnyNumberForAUnit) {
    Primitive item(store(), metadata::kDouble, L"p");
    item.units(static_cast<units::tUnit>(-1));
    EXPECT_EQ(item.units(), static_cast<units::tUnit>(-1));
    EXPECT_EQ(stored::word(store(), item.offset(), 18), 0xFFFFFFFFu);
}

TEST_P(DesignPrimitive, HasABaseOnlyAsAStruct) {
    for (unsigned int number = 0; number <= 25; ++number) {
        Primitive item(store(), kind(number), L"p");
        const std::string before = hex(store(), item.offset());
        EXPECT_EQ(item.base(L"T"), number == 24) << number;
        if (number != 24) {
            EXPECT_EQ(item.base(), nullptr);
            EXPECT_EQ(hex(store(), item.offset()), before);
        }
    }
}

TEST_P(DesignPrimitive, StoresItsBaseBehindItsName) {
    Primitive item(store(), metadata::kStruct, L"p");
    EXPECT_TRUE(item.base(L"Type"));
    EXPECT_STREQ(item.base(), L"Type");
    EXPECT_EQ(stored::word(store(), item.offset(), 34), 20u);
    EXPECT_EQ(sections(item.offset()), wide(L"p") + wide(L"Type"));
    EXPECT_TRUE(item.base(L"U"));
    EXPECT_EQ(sections(item.offset()), wide(L"p") + wide(L"U"));
}

TEST_P(DesignPrimitive, LosesItsBaseToNothing) {
    Primitive item(store(), metadata::kStruct, L"p");
    item.base(L"T");
    EXPECT_TRUE(item.base(nullptr));
    EXPECT_EQ(item.base(), nullptr);
    EXPECT_EQ(sections(item.offset()), wide(L"p"));
}

TEST_P(DesignPrimitive, TellsOfNoBaseThatIsEmpty) {
    Primitive item(store(), metadata::kStruct, L"p");
    EXPECT_TRUE(item.base(L""));
    EXPECT_EQ(item.base(), nullptr);
    EXPECT_EQ(Primitive(store(), item.offset()).base(), nullptr);
    EXPECT_EQ(stored::word(store(), item.offset(), 34), 4u);
}

TEST_P(DesignPrimitive, HasALocaleForItsValueInFrontOfItsName) {
    Primitive item(store(), metadata::kString, L"p");
    item.valuelocale(L"de");
    EXPECT_STREQ(item.valuelocale(), L"de");
    EXPECT_EQ(stored::word(store(), item.offset(), 26), 12u);
    EXPECT_EQ(sections(item.offset()), wide(L"de") + wide(L"p"));
    item.valuelocale(nullptr);
    EXPECT_EQ(item.valuelocale(), nullptr);
    EXPECT_EQ(sections(item.offset()), wide(L"p"));
    item.valuelocale(L"");
    EXPECT_EQ(item.valuelocale(), nullptr);
    EXPECT_EQ(sections(item.offset()), wide(L"") + wide(L"p"));
}

TEST_P(DesignPrimitive, IsEquivalentToOneOfItsNameAndKind) {
    Primitive item(store(), metadata::kInt32, L"p");
    Primitive same(store(), metadata::kInt32, L"p");
    same.reset(3);
    same.units(units::kMeter);
    EXPECT_TRUE(item.equivalent(same));
    EXPECT_FALSE(item.equivalent(Primitive(store(), metadata::kInt32, L"q")));
    EXPECT_FALSE(item.equivalent(Primitive(store(), metadata::kUInt32, L"p")));
}

class PrimitiveUri : public DesignPrimitive {};
LVP_ON_EACH_STORE(PrimitiveUri);

TEST_P(PrimitiveUri, StandsInThePlaceOfTheValues) {
    Primitive item(store(), metadata::kInt32, L"p");
    item.reset(3);
    item.on(data::Record::kHidden);
    EXPECT_TRUE(item.uri(L"x"));
    EXPECT_STREQ(item.uri(), L"x");
    EXPECT_EQ(flags(item.offset()), data::Record::kHidden | data::Record::kExternal);
    EXPECT_EQ(item.valuesize(), 8u);
    EXPECT_EQ(item.dimension(), 0u);
    EXPECT_EQ(stored::word(store(), item.offset(), 38), 8u);
    EXPECT_EQ(sections(item.offset()), wide(L"p") + wide(L"x"));
}

TEST_P(PrimitiveUri, RefusesValues) {
    Primitive item(store(), metadata::kInt32, L"p");
    item.uri(L"some uri");
    const std::string before = hex(store(), item.offset());
    const int value = 7;
    int read = 1;
    EXPECT_FALSE(item.set(reinterpret_cast<const char*>(&value), 0, 1));
    EXPECT_FALSE(item.reset(2));
    EXPECT_FALSE(item.reset(0));
    EXPECT_EQ(item.get(reinterpret_cast<char*>(&read), 0, 1), 0u);
    EXPECT_EQ(read, 1);
    EXPECT_EQ(hex(store(), item.offset()), before);
}

TEST_P(PrimitiveUri, GoesAwayForNothingAndLeavesAnEmptyArray) {
    Primitive item(store(), metadata::kInt32, L"p");
    item.uri(L"x");
    EXPECT_TRUE(item.uri(nullptr));
    EXPECT_EQ(item.uri(), nullptr);
    EXPECT_EQ(flags(item.offset()), 0);
    EXPECT_EQ(item.valuesize(), 0u);
    EXPECT_EQ(item.dimension(), 0u);
    EXPECT_EQ(sections(item.offset()), wide(L"p"));
    EXPECT_TRUE(item.reset(2));
    EXPECT_EQ(item.dimension(), 2u);
}

TEST_P(PrimitiveUri, TakesTheValuesWithItWhenThereIsNone) {
    Primitive item(store(), metadata::kInt32, L"p");
    item.reset(3);
    EXPECT_TRUE(item.uri(nullptr));
    EXPECT_EQ(item.dimension(), 0u);
    EXPECT_EQ(sections(item.offset()), wide(L"p"));
}

TEST_P(PrimitiveUri, StaysAcrossClosingAndOpening) {
    const unsigned int offset = tree::primitive(store(), L"p");
    Primitive(store(), offset).uri(L"a uri");
    const Primitive item(store(), offset);
    EXPECT_STREQ(item.uri(), L"a uri");
    EXPECT_EQ(item.dimension(), 0u);
    EXPECT_EQ(item.valuesize(), 24u);
}

TEST_P(PrimitiveUri, MayBeEmptyAndIsOneAllTheSame) {
    const unsigned int offset = tree::primitive(store(), L"p");
    Primitive(store(), offset).uri(L"");
    Primitive item(store(), offset);
    EXPECT_STREQ(item.uri(), L"");
    EXPECT_EQ(item.valuesize(), 4u);
    EXPECT_FALSE(item.reset(1));
}

TEST_P(PrimitiveUri, ReplacesAnother) {
    Primitive item(store(), metadata::kInt32, L"p");
    item.uri(L"a long uri");
    item.uri(L"x");
    EXPECT_STREQ(item.uri(), L"x");
    EXPECT_EQ(sections(item.offset()), wide(L"p") + wide(L"x"));
}

/// Numbers that are no value kinds.
class PrimitiveOfNoKind : public DesignPrimitive {
protected:
    static constexpr unsigned int kNumbers[] = {0, 25, 255, 0x80000000u, 0xFFFFFFFFu};
};
LVP_ON_EACH_STORE(PrimitiveOfNoKind);

TEST_P(PrimitiveOfNoKind, CanBeMadeAndKeepsItsNumber) {
    for (const unsigned int number : kNumbers) {
        const unsigned int offset = tree::primitive(store(), L"p", kind(number));
        EXPECT_EQ(stored::word(store(), offset, 22), number);
        EXPECT_EQ(Primitive(store(), offset).valuetype(), kind(number));
    }
}

TEST_P(PrimitiveOfNoKind, HoldsNothing) {
    for (const unsigned int number : kNumbers) {
        Primitive item(store(), kind(number), L"p");
        const std::string before = hex(store(), item.offset());
        char byte = 'x';
        EXPECT_EQ(item.dimension(), 0u);
        EXPECT_TRUE(item.reset(1)) << "elements of no size";
        EXPECT_FALSE(item.set(&byte, 0, 1));
        EXPECT_EQ(item.get(&byte, 0, 1), 0u);
        EXPECT_EQ(hex(store(), item.offset()), before);
    }
}

TEST_P(PrimitiveOfNoKind, HoldsNothingThatStandsInItsRecordEither) {
    const unsigned int offset = tree::primitive(store(), L"p");
    Primitive(store(), offset).reset(3);
    stored::putWord(store(), offset, 22, 25);
    Primitive item(store(), offset);
    char bytes[16];
    EXPECT_EQ(item.valuesize(), 12u);
    EXPECT_EQ(item.dimension(), 0u);
    EXPECT_EQ(item.get(bytes, 0, 1), 0u);
    EXPECT_FALSE(item.set(bytes, 0, 1));
}

TEST_P(PrimitiveOfNoKind, MayHaveAUri) {
    Primitive item(store(), kind(77), L"p");
    EXPECT_TRUE(item.uri(L"x"));
    EXPECT_STREQ(item.uri(), L"x");
    EXPECT_EQ(item.dimension(), 0u);
}

}  // namespace
