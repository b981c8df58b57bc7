// The copying of an item with everything below it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "record/Container.h"
#include "record/Locale.h"
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
using data::Design::Primitive;
using data::Design::Table;
using data::Metadata::Root;
using data::Structural::Container;
using lumivard::platform::test_support::hex;
using lumivard::platform::test_support::StoreTest;
using lumivard::platform::test_support::wide;
using testing::ElementsAre;
using testing::IsEmpty;

using lumivard::platform::test_support::BADOFF;

/// Copies go from the one store, with a root, to the other, which has a root and another record in front of them.
class Clone : public StoreTest {
protected:
    unsigned int clone(data::Metadata::Item&& item) { return item.clone(other()); }

    /// The bytes of a record without its fields for a parent, a count, localized names and, of a set, its lists.
    static std::string rest(tree::IDataStore* store, unsigned int offset) {
        const std::string bytes = hex(store, offset);
        switch (data::Record::peek(store, offset)) {
            case data::Record::kPrimitive:
                return bytes.substr(2 * 13);
            case data::Record::kTable:
                return bytes.substr(2 * 13, 2) + bytes.substr(2 * 18, 8) + bytes.substr(2 * 26);
            default:
                return bytes.substr(2 * 13, 2) + bytes.substr(2 * 18);
        }
    }

    const unsigned int _root = tree::root(store());
    const unsigned int _other = tree::root(other());
    const unsigned int _taken = stored::makeList(other());
};
LVP_ON_EACH_STORE(Clone);

TEST_P(Clone, OfAPrimitiveHasItsBytesAndNoCount) {
    const unsigned int p = tree::addPrimitive(store(), _root, L"p");
    Primitive item(store(), p);
    item.set("abcdefgh", 0, 2);
    item.units(units::kMeter);
    item.valuelocale(L"de");
    item.on(data::Record::kHidden | data::Record::kInherited);
    const Primitive second(store(), p);
    const unsigned int copy = item.clone(other());
    EXPECT_EQ(stored::refs(other(), copy), 0u);
    EXPECT_EQ(stored::word(other(), copy, 9), BADOFF);
    EXPECT_EQ(rest(other(), copy), rest(store(), p));
    EXPECT_EQ(stored::refs(store(), p), 2u);
    EXPECT_STREQ(Primitive(other(), copy).tag(), L"p");
}

TEST_P(Clone, StillHasItsSourcesParentsNumber) {
    const unsigned int c = tree::addContainer(store(), _root, L"c");
    const unsigned int p = tree::addPrimitive(store(), c, L"p");
    const unsigned int t = tree::addTable(store(), c, L"t");
    EXPECT_EQ(stored::word(other(), clone(Primitive(store(), p)), 1), c);
    EXPECT_EQ(stored::word(other(), clone(Table(store(), t, false)), 1), c);
    EXPECT_EQ(stored::word(other(), clone(Container(store(), c, false)), 1), _root);
}

TEST_P(Clone, IsAttachedToNothing) {
    const unsigned int c = tree::addContainer(store(), _root, L"c");
    const std::string before = hex(other(), _other);
    clone(Container(store(), c, false));
    EXPECT_EQ(hex(other(), _other), before);
}

TEST_P(Clone, OfAnEmptyContainerHasNeitherAListNorLocales) {
    const unsigned int copy = clone(Container(store(), tree::container(store(), L"c"), false));
    EXPECT_EQ(stored::word(other(), copy, 14), BADOFF);
    EXPECT_EQ(stored::word(other(), copy, 9), BADOFF);
    EXPECT_EQ(stored::refs(other(), copy), 0u);
}

TEST_P(Clone, OfAContainerHasItsSections) {
    const unsigned int c = tree::container(store(), L"c", tree::IContainer::kLink);
    data::Record::Container(store(), c).arrays(23, wide(L"a;b").data(), wide(L"a;b").size());
    Container(store(), c, false).info(L"target");
    const unsigned int copy = clone(Container(store(), c, false));
    EXPECT_EQ(rest(other(), copy), rest(store(), c));
    const Container item(other(), copy, false);
    EXPECT_EQ(item.type(), tree::IContainer::kLink);
    EXPECT_STREQ(item.base(), L"a;b");
    EXPECT_STREQ(item.info(), L"target");
}

TEST_P(Clone, HasItsOwnLocalizedNames) {
    const unsigned int c = tree::container(store(), L"c");
    Container(store(), c, false).localize(L"x", L"en");
    const unsigned int copy = clone(Container(store(), c, false));
    const unsigned int names = stored::word(other(), copy, 9);
    ASSERT_NE(names, BADOFF);
    EXPECT_EQ(data::Record::Locale(other(), names).payload(), std::wstring(L"en\0x\0", 5));
    EXPECT_EQ(Container(other(), copy, false).locales(), 1u);
}

TEST_P(Clone, IsDeep) {
    const unsigned int a = tree::addContainer(store(), _root, L"a");
    const unsigned int b = tree::addTable(store(), a, L"b");
    const unsigned int c = tree::addPrimitive(store(), b, L"c");
    Primitive(store(), c).set("abcd", 0, 1);
    const unsigned int d = tree::addContainer(store(), a, L"d");
    const unsigned int copy = clone(Container(store(), a, false));

    const std::vector<unsigned int> first = stored::children(other(), copy);
    ASSERT_EQ(first.size(), 2u);
    const std::vector<unsigned int> second = stored::children(other(), first[0]);
    ASSERT_EQ(second.size(), 1u);
    EXPECT_EQ(rest(other(), first[0]), rest(store(), b));
    EXPECT_EQ(rest(other(), second[0]), rest(store(), c));
    EXPECT_EQ(rest(other(), first[1]), rest(store(), d));
    EXPECT_EQ(stored::word(other(), first[0], 1), copy);
    EXPECT_EQ(stored::word(other(), first[1], 1), copy);
    EXPECT_EQ(stored::word(other(), second[0], 1), first[0]);
    EXPECT_EQ(stored::word(other(), first[1], 14), BADOFF);
}

TEST_P(Clone, KeepsTheOrderOfTheList) {
    const unsigned int a = tree::container(store(), L"a");
    for (const wchar_t* name : {L"z", L"b", L"y", L"c"}) tree::addPrimitive(store(), a, name);
    const unsigned int copy = clone(Container(store(), a, false));
    std::vector<std::wstring> names;
    for (const unsigned int offset : stored::children(other(), copy))
        names.emplace_back(Primitive(other(), offset).tag());
    EXPECT_THAT(names, ElementsAre(L"z", L"b", L"y", L"c"));
}

TEST_P(Clone, CopiesTheFlagsAndLocalesOfWhatIsBelowAndResetsItsCounts) {
    const unsigned int a = tree::container(store(), L"a");
    const unsigned int p = tree::addPrimitive(store(), a, L"p");
    Primitive item(store(), p);
    item.on(data::Record::kHidden);
    { Primitive(store(), p).localize(L"x", L"en"); }
    const unsigned int copy = clone(Container(store(), a, false));
    const unsigned int inner = stored::children(other(), copy).at(0);
    EXPECT_EQ(stored::byte(other(), inner, 13), data::Record::kHidden);
    EXPECT_EQ(stored::refs(other(), inner), 0u);
    EXPECT_EQ(Primitive(other(), inner).locales(), 1u);
}

TEST_P(Clone, OfATableHasItsOwnDefaults) {
    const unsigned int t = tree::table(store(), L"t");
    tree::addPrimitive(store(), t, L"p");
    Table item(store(), t, false);
    item.defaults(units::kMeter, metadata::kDouble);
    item.defaults(static_cast<units::tUnit>(0x5001), metadata::kInt32);
    const unsigned int copy = item.clone(other());
    const unsigned int list = stored::word(other(), copy, 22);
    ASSERT_NE(list, BADOFF);
    EXPECT_EQ(hex(other(), list), hex(store(), stored::word(store(), t, 22)));
    EXPECT_EQ(Table(other(), copy, false).groups(), item.groups());
    EXPECT_EQ(Table(other(), copy, false).items(), 1u);
    EXPECT_EQ(stored::refs(other(), copy), 0u);

    item.defaults(units::kMeter, metadata::kBool);
    EXPECT_EQ(Table(other(), copy, false).valuetype(units::group(units::kMeter)), metadata::kDouble);
}

TEST_P(Clone, OfATableMakesItsChildrenBeforeItsDefaults) {
    const unsigned int t = tree::addTable(store(), _root, L"t");
    tree::addPrimitive(store(), t, L"p");
    Table item(store(), t, false);
    item.defaults(units::kMeter, metadata::kDouble);
    const unsigned int copy = item.clone(other());
    EXPECT_LT(stored::children(other(), copy).at(0), stored::word(other(), copy, 22));
}

TEST_P(Clone, OfATableWithoutDefaultsHasNone) {
    EXPECT_EQ(stored::word(other(), clone(Table(store(), tree::table(store(), L"t"), false)), 22), BADOFF);
}

TEST_P(Clone, OfATableBelowHasItsOwnDefaultsToo) {
    const unsigned int a = tree::container(store(), L"a");
    const unsigned int t = tree::addTable(store(), a, L"t");
    Table(store(), t, false).defaults(units::kMeter, metadata::kDouble);
    const unsigned int copy = clone(Container(store(), a, false));
    const unsigned int inner = stored::children(other(), copy).at(0);
    EXPECT_EQ(hex(other(), stored::word(other(), inner, 22)), hex(store(), stored::word(store(), t, 22)));
}

TEST_P(Clone, OfARootIsNone) {
    tree::addContainer(store(), _root, L"c");
    const auto before = store()->extent();
    const auto otherBefore = other()->extent();
    EXPECT_EQ(clone(Root(store(), _root)), BADOFF);
    EXPECT_EQ(store()->extent(), before);
    EXPECT_EQ(other()->extent(), otherBefore);
}

TEST_P(Clone, MayStandInItsOwnStoreAndSharesNothing) {
    const unsigned int a = tree::addContainer(store(), _root, L"a");
    const unsigned int p = tree::addPrimitive(store(), a, L"p");
    Container(store(), a, true).localize(L"x", L"en");
    const unsigned int copy = Container(store(), a, false).clone(store());
    EXPECT_NE(copy, a);
    for (const unsigned int field : {9u, 14u}) {
        EXPECT_NE(stored::word(store(), copy, field), BADOFF);
        EXPECT_NE(stored::word(store(), copy, field), stored::word(store(), a, field));
    }
    EXPECT_THAT(stored::children(store(), a), ElementsAre(p));
    EXPECT_TRUE(Root(store(), _root).remove(L"a"));
    EXPECT_EQ(Container(store(), copy, false).items(), 1u);
    EXPECT_EQ(Container(store(), copy, false).locales(), 1u);
}

TEST_P(Clone, KeepsTheNumberOfAListedRecordThatIsNoChild) {
    const unsigned int a = tree::container(store(), L"a");
    const unsigned int foreign = stored::makeList(store());
    tree::addPrimitive(store(), a, L"p");
    stored::enlist(store(), a, foreign);
    stored::enlist(store(), a, 777);
    tree::addPrimitive(store(), a, L"q");
    const unsigned int copy = clone(Container(store(), a, false));
    const std::vector<unsigned int> children = stored::children(other(), copy);
    ASSERT_EQ(children.size(), 4u);
    EXPECT_EQ(children[1], foreign);
    EXPECT_EQ(children[2], 777u);
    EXPECT_STREQ(Primitive(other(), children[3]).tag(), L"q");
}

TEST_P(Clone, TakesBothOfTwoChildrenOfOneName) {
    const unsigned int a = tree::container(store(), L"a");
    tree::addPrimitive(store(), a, L"p");
    stored::enlist(store(), a, tree::primitive(store(), L"p"));
    EXPECT_EQ(stored::children(other(), clone(Container(store(), a, false))).size(), 2u);
}

TEST_P(Clone, OfAnEmptyListIsAnEmptyList) {
    const unsigned int a = tree::container(store(), L"a");
    tree::addPrimitive(store(), a, L"p");
    Container(store(), a, false).remove(L"p");
    const unsigned int copy = clone(Container(store(), a, false));
    ASSERT_NE(stored::word(other(), copy, 14), BADOFF);
    EXPECT_EQ(hex(other(), stored::word(other(), copy, 14)), "03000000");
}

TEST_P(Clone, CopiesWhatTheOpenItemKnowsToBeItsOwn) {
    const unsigned int a = tree::container(store(), L"a");
    const unsigned int t = tree::table(store(), L"t");
    Container item(store(), a, false);
    Table table(store(), t, false);
    tree::addPrimitive(store(), a, L"p");
    Container(store(), a, false).localize(L"x", L"en");
    Table(store(), t, false).defaults(units::kMeter, metadata::kDouble);

    const unsigned int copy = item.clone(other());
    EXPECT_EQ(stored::word(other(), copy, 14), BADOFF) << "it had no list when it was opened";
    EXPECT_EQ(stored::word(other(), copy, 9), BADOFF) << "nor localized names";
    EXPECT_EQ(stored::word(other(), table.clone(other()), 22), BADOFF);

    item.update();
    EXPECT_EQ(stored::children(other(), item.clone(other())).size(), 1u);
}

TEST_P(Clone, SeesWhatWasAddedToAListThatItKnows) {
    const unsigned int a = tree::container(store(), L"a");
    tree::addPrimitive(store(), a, L"p");
    Container item(store(), a, false);
    tree::addPrimitive(store(), a, L"q");
    EXPECT_EQ(stored::children(other(), item.clone(other())).size(), 2u);
}

TEST_P(Clone, CopiesAListThatDamagedContainersShareForTheFirstOfThemOnly) {
    const unsigned int first = tree::addContainer(store(), _root, L"a");
    const unsigned int second = tree::addContainer(store(), _root, L"b");
    tree::addPrimitive(store(), first, L"p");
    stored::putWord(store(), second, stored::kChildren, stored::word(store(), first, stored::kChildren));
    const unsigned int list = Root(store(), _root).duplicate(other(), _other);
    const std::string entries = stored::bytes(other(), list);
    unsigned int copies[2];
    ASSERT_EQ(entries.size(), 4 + sizeof(copies));
    std::memcpy(copies, entries.data() + 4, sizeof(copies));
    EXPECT_EQ(stored::children(other(), copies[0]).size(), 1u);
    EXPECT_EQ(stored::word(other(), copies[1], stored::kChildren), BADOFF);
}

TEST_P(Clone, LeavesOutWhatADamagedRecordNamesAndDoesNotOwn) {
    const unsigned int t = tree::table(store(), L"t");
    const unsigned int foreign = tree::container(store(), L"foreign");
    for (const unsigned int named : {foreign, 777u}) {
        for (const unsigned int field : {9u, 14u, 22u}) stored::putWord(store(), t, field, named);
        const unsigned int copy = clone(Table(store(), t, false));
        EXPECT_EQ(stored::word(other(), copy, 9), BADOFF);
        EXPECT_EQ(stored::word(other(), copy, 22), BADOFF);
        EXPECT_THAT(stored::children(other(), copy), IsEmpty());
    }
}

}  // namespace
