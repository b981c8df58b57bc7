// A table and its defaults.
#include "design/Table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "record/Offsets.h"
#include "record/Table.h"
#include "tests/support/Offsets.h"
#include "tests/support/RecordHelpers.h"
#include "tests/support/StoreFixture.h"
#include "tests/support/TreeHelpers.h"

namespace {

namespace data = lumivard::platform::data;
namespace metadata = data::metadata;
namespace stored = lumivard::platform::test_support::stored;
namespace tree = lumivard::platform::test_support::tree;
namespace units = data::units;
using data::Design::Table;
using lumivard::platform::test_support::hex;
using lumivard::platform::test_support::makeRecord;
using lumivard::platform::test_support::StoreTest;
using lumivard::platform::test_support::wide;
using testing::ElementsAre;
using testing::IsEmpty;

using lumivard::platform::test_support::BADOFF;

constexpr units::tUnit unit(unsigned int number) {
    return static_cast<units::tUnit>(number);
}
constexpr units::tUnitGroup group(unsigned int number) {
    return static_cast<units::tUnitGroup>(number);
}

class DesignTable : public StoreTest {
protected:
    void base(unsigned int offset, const wchar_t* text) {
        data::Record::Table(store(), offset).arrays(30, wide(text).data(), wide(text).size());
    }

    const unsigned int _root = tree::root(store());
};
LVP_ON_EACH_STORE(DesignTable);

TEST_P(DesignTable, IsEmptyWhenNew) {
    const Table item(store(), L"t");
    EXPECT_STREQ(item.tag(), L"t");
    EXPECT_EQ(item.base(), nullptr);
    EXPECT_EQ(item.items(), 0u);
    EXPECT_THAT(item.groups(), IsEmpty());
    EXPECT_EQ(stored::word(store(), item.offset(), 22), BADOFF);
}

TEST_P(DesignTable, GivesAllItsFieldsBackWhenOpened) {
    const unsigned int offset = tree::addTable(store(), _root, L"t");
    const unsigned int child = tree::addPrimitive(store(), offset, L"p");
    base(offset, L"a;b");
    { Table(store(), offset, true).localize(L"Tabelle", L"de"); }
    Table item(store(), offset, false);
    EXPECT_STREQ(item.tag(), L"t");
    EXPECT_EQ(item.parent(), _root);
    EXPECT_STREQ(item.base(), L"a;b");
    EXPECT_EQ(item.find(L"p"), child);
    EXPECT_EQ(item.locales(), 1u);
}

TEST_P(DesignTable, KnowsNoChildrenWhenOpenedLazily) {
    const unsigned int offset = tree::table(store(), L"t");
    const unsigned int child = tree::addPrimitive(store(), offset, L"p");
    const Table item(store(), offset, true);
    EXPECT_EQ(item.items(), 0u);
    EXPECT_EQ(item.find(L"p"), BADOFF);
    EXPECT_EQ(item.at(0), child);
}

TEST_P(DesignTable, TellsOfNoBaseThatIsEmpty) {
    const unsigned int offset = tree::table(store(), L"t");
    base(offset, L"");
    EXPECT_EQ(Table(store(), offset, false).base(), nullptr);
}

TEST_P(DesignTable, IsEquivalentToOneOfItsNameAndBase) {
    const unsigned int a = tree::table(store(), L"t");
    const unsigned int b = tree::table(store(), L"t");
    tree::addPrimitive(store(), b, L"p");
    Table(store(), b, false).defaults(units::kMeter, metadata::kDouble);
    EXPECT_TRUE(Table(store(), a, false).equivalent(Table(store(), b, false)));
    EXPECT_FALSE(Table(store(), a, false).equivalent(Table(store(), L"u")));
    base(b, L"x");
    EXPECT_FALSE(Table(store(), a, false).equivalent(Table(store(), b, false)));
    base(a, L"x");
    EXPECT_TRUE(Table(store(), a, false).equivalent(Table(store(), b, false)));
}

class Defaults : public StoreTest {
protected:
    unsigned int list() { return stored::word(store(), _offset, 22); }

    std::vector<unsigned int> entries() { return data::Record::Offsets(store(), list()).get(); }

    const unsigned int _root = tree::root(store());
    const unsigned int _offset = tree::addTable(store(), _root, L"t");
};
LVP_ON_EACH_STORE(Defaults);

TEST_P(Defaults, OfNoUnitOrNoKindAreRefused) {
    Table item(store(), _offset, false);
    const std::string before = hex(store(), _offset);
    EXPECT_FALSE(item.defaults(units::kNoUnit, metadata::kDouble));
    EXPECT_FALSE(item.defaults(units::kMeter, static_cast<metadata::tValue>(0)));
    EXPECT_EQ(hex(store(), _offset), before);
    EXPECT_EQ(list(), BADOFF);
    EXPECT_THAT(item.groups(), IsEmpty());
}

TEST_P(Defaults, MakeTheListWithTheFirst) {
    Table item(store(), _offset, false);
    EXPECT_TRUE(item.defaults(units::kMeter, metadata::kDouble));
    ASSERT_NE(list(), BADOFF);
    EXPECT_EQ(hex(store(), list()),
              "03000000"
              "01200000"
              "11000000");
    EXPECT_THAT(item.groups(), ElementsAre(group(0x2000)));
    EXPECT_EQ(item.units(group(0x2000)), units::kMeter);
    EXPECT_EQ(item.valuetype(group(0x2000)), metadata::kDouble);
    EXPECT_EQ(stored::refs(store(), _offset), 1u);
}

TEST_P(Defaults, OfOneGroupReplaceEachOther) {
    Table item(store(), _offset, false);
    item.defaults(unit(0x2001), metadata::kDouble);
    EXPECT_TRUE(item.defaults(unit(0x2002), metadata::kInt32));
    EXPECT_THAT(item.groups(), ElementsAre(group(0x2000)));
    EXPECT_EQ(item.units(group(0x2000)), unit(0x2002));
    EXPECT_EQ(item.valuetype(group(0x2000)), metadata::kInt32);
    EXPECT_THAT(entries(), ElementsAre(0x2002, 12));
}

TEST_P(Defaults, OfTwoGroupsStandInTheOrderOfTheirComing) {
    Table item(store(), _offset, false);
    item.defaults(unit(0x5003), metadata::kDouble);
    item.defaults(unit(0x2001), metadata::kInt32);
    EXPECT_THAT(entries(), ElementsAre(0x5003, 17, 0x2001, 12));
    item.defaults(unit(0x5001), metadata::kScalar);
    EXPECT_THAT(entries(), ElementsAre(0x5001, 16, 0x2001, 12));
}

TEST_P(Defaults, HaveTheirGroupsInTheOrderOfSignedNumbers) {
    Table item(store(), _offset, false);
    for (const unsigned int number : {0x7FFFF001u, 0x2001u, 0x80000001u, 0xFFFFF001u, 1u}) {
        EXPECT_TRUE(item.defaults(unit(number), metadata::kBool));
    }
    EXPECT_THAT(item.groups(),
                ElementsAre(group(0x80000000u), group(0xFFFFF000u), group(0), group(0x2000), group(0x7FFFF000)));
}

TEST_P(Defaults, AreNoneForAGroupWithout) {
    Table item(store(), _offset, false);
    EXPECT_EQ(item.valuetype(group(0x2000)), 0u);
    EXPECT_EQ(item.units(group(0x2000)), units::kNoUnit);
    item.defaults(unit(0x2001), metadata::kDouble);
    EXPECT_EQ(item.valuetype(group(0x3000)), 0u);
    EXPECT_EQ(item.units(group(0x3000)), units::kNoUnit);
    EXPECT_EQ(item.valuetype(group(0x2001)), 0u) << "a unit is no group";
}

TEST_P(Defaults, AreNoneForGroup0EvenWhereTheyAreStored) {
    Table item(store(), _offset, false);
    EXPECT_TRUE(item.defaults(unit(5), metadata::kDouble));
    EXPECT_THAT(entries(), ElementsAre(5, 17));
    EXPECT_EQ(item.valuetype(units::kNoGroup), 0u);
    EXPECT_EQ(item.units(units::kNoGroup), units::kNoUnit);
}

TEST_P(Defaults, AreTheSameAfterClosingAndOpening) {
    {
        Table item(store(), _offset, false);
        item.defaults(unit(0x5001), metadata::kDouble);
        item.defaults(unit(0x2001), metadata::kInt32);
    }
    Table item(store(), _offset, true);
    EXPECT_THAT(item.groups(), ElementsAre(group(0x2000), group(0x5000)));
    EXPECT_EQ(item.units(group(0x5000)), unit(0x5001));
    EXPECT_EQ(item.valuetype(group(0x2000)), metadata::kInt32);
    item.defaults(unit(0x2002), metadata::kBool);
    EXPECT_THAT(entries(), ElementsAre(0x5001, 17, 0x2002, 7));
}

TEST_P(Defaults, AreReadFromTheStoreAndTheirGroupsAreNot) {
    Table first(store(), _offset, false);
    first.defaults(unit(0x2001), metadata::kDouble);
    Table second(store(), _offset, false);
    second.defaults(unit(0x2002), metadata::kBool);
    second.defaults(unit(0x3001), metadata::kBool);
    EXPECT_EQ(first.units(group(0x2000)), unit(0x2002));
    EXPECT_EQ(first.units(group(0x3000)), units::kNoUnit);
    EXPECT_THAT(first.groups(), ElementsAre(group(0x2000)));
}

TEST_P(Defaults, UseTheListThatAnotherObjectHasMadeMeanwhile) {
    Table first(store(), _offset, false);
    Table second(store(), _offset, false);
    first.defaults(unit(0x2001), metadata::kDouble);
    second.defaults(unit(0x3001), metadata::kBool);
    EXPECT_THAT(entries(), ElementsAre(0x2001, 17, 0x3001, 7));
    EXPECT_EQ(first.valuetype(group(0x2000)), metadata::kDouble);
    EXPECT_EQ(second.valuetype(group(0x2000)), metadata::kDouble);
}

TEST_P(Defaults, UseTheListThatAnotherObjectHasMadeInThePlaceOfTheirOwn) {
    Table first(store(), _offset, false);
    first.defaults(unit(0x2001), metadata::kDouble);
    {
        Table second(store(), _offset, false);
        second.clear();
        second.defaults(unit(0x5001), metadata::kBool);
    }
    EXPECT_TRUE(first.defaults(unit(0x3001), metadata::kInt32));
    EXPECT_THAT(entries(), ElementsAre(0x5001, 7, 0x3001, 12));
    EXPECT_THAT(first.groups(), ElementsAre(group(0x3000), group(0x5000)));
}

TEST_P(Defaults, OfAGroupThatIsThereTwiceAreTheFirst) {
    stored::putWord(store(), _offset, 22,
                    makeRecord(store(), std::string("\3\0\0\0\1\x20\0\0\7\0\0\0\2\x20\0\0\x8\0\0\0", 20)));
    const Table item(store(), _offset, false);
    EXPECT_THAT(item.groups(), ElementsAre(group(0x2000)));
    EXPECT_EQ(item.units(group(0x2000)), unit(0x2001));
    EXPECT_EQ(item.valuetype(group(0x2000)), metadata::kBool);
}

TEST_P(Defaults, WithoutTheirSecondHalfHaveNoKind) {
    stored::putWord(store(), _offset, 22, makeRecord(store(), std::string("\3\0\0\0\1\x20\0\0", 8)));
    Table item(store(), _offset, false);
    EXPECT_THAT(item.groups(), ElementsAre(group(0x2000)));
    EXPECT_EQ(item.units(group(0x2000)), unit(0x2001));
    EXPECT_EQ(item.valuetype(group(0x2000)), 0u);
    EXPECT_TRUE(item.defaults(unit(0x2001), metadata::kBool));
    EXPECT_THAT(entries(), ElementsAre(0x2001, 7));
}

TEST_P(Defaults, InAListThatIsNoneAreNoneUntilThereAreSome) {
    const unsigned int foreign = tree::container(store(), L"foreign");
    for (const unsigned int named : {foreign, 777u}) {
        stored::putWord(store(), _offset, 22, named);
        const std::string before = hex(store(), named);
        Table item(store(), _offset, false);
        EXPECT_THAT(item.groups(), IsEmpty());
        EXPECT_TRUE(item.defaults(unit(0x2001), metadata::kBool));
        EXPECT_EQ(item.valuetype(group(0x2000)), metadata::kBool);
        EXPECT_EQ(hex(store(), named), before);
        EXPECT_THAT(entries(), ElementsAre(0x2001, 7));
    }
}

}  // namespace
