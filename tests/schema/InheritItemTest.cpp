// One item of a schema in a set, and the marks of what came from schemas.
#include "design/Container.h"
#include "design/Table.h"
#include "lumivard/platform/store_contract/LoggingStore.h"
#include "record/Locale.h"
#include "tests/schema/SchemaFixture.h"
#include "tests/support/Offsets.h"

namespace {

using namespace lumivard::platform::test_support;
using data::Design::Primitive;
using data::Design::Table;
using data::Metadata::Root;
using data::Structural::Container;
using lumivard::platform::store_contract::LoggingStore;
using testing::ElementsAre;
using testing::IsEmpty;
using tCall = LoggingStore::tCall;

using lumivard::platform::test_support::BADOFF;

/// An item of a schema goes from the one store into the set "set" of the other.
class InheritItem : public SchemaTest {
protected:
    void inherit(unsigned int offset) { Container(other(), _set, false).Set::inherit(store(), offset); }

    const unsigned int _set = tree::addContainer(other(), 0, L"set");
};
LVP_ON_EACH_STORE(InheritItem);

TEST_P(InheritItem, TakesAnyOfTheThreeKinds) {
    inherit(tree::primitive(store(), L"p"));
    inherit(tree::table(store(), L"t"));
    inherit(tree::container(store(), L"c"));
    EXPECT_THAT(childNames(other(), _set), ElementsAre(L"p", L"t", L"c"));
    for (const unsigned int item : stored::children(other(), _set)) {
        EXPECT_EQ(stored::byte(other(), item, stored::kFlags), kFromASchema);
        EXPECT_EQ(stored::word(other(), item, stored::kParent), _set);
    }
}

TEST_P(InheritItem, PassesOverAnyOtherRecord) {
    const auto before = other()->extent();
    for (const unsigned int offset :
         {0u, stored::makeList(store()), data::Record::Locale(store()).offset(), 777u, BADOFF}) {
        inherit(offset);
    }
    EXPECT_THAT(stored::children(other(), _set), IsEmpty());
    EXPECT_EQ(other()->extent(), before);
}

TEST_P(InheritItem, GoesByTheIndexForNamesThatAreTaken) {
    Container set(other(), _set, false);
    const unsigned int late = tree::addPrimitive(other(), _set, L"p");
    set.Set::inherit(store(), tree::primitive(store(), L"p"));
    const auto children = stored::children(other(), _set);
    ASSERT_EQ(children.size(), 2u);
    EXPECT_EQ(children[0], late);
}

TEST_P(InheritItem, ComparesNamesWholeDotsIncluded) {
    const unsigned int t = tree::addTable(other(), _set, L"t");
    tree::addPrimitive(other(), t, L"p");
    inherit(tree::primitive(store(), L"t.p"));
    EXPECT_THAT(childNames(other(), _set), ElementsAre(L"t", L"t.p"));
}

TEST_P(InheritItem, WorksOnARootToo) {
    Root(other(), 0u).inherit(store(), tree::table(store(), L"t"));
    EXPECT_THAT(childNames(other(), 0), ElementsAre(L"set", L"t"));
}

TEST_P(InheritItem, BringsItsLocalizedNamesAndDefaults) {
    const unsigned int t = tree::table(store(), L"t");
    Table(store(), t, false).localize(L"Tafel", L"de");
    Table(store(), t, false).defaults(data::units::kMeter, metadata::kDouble);
    inherit(t);
    const unsigned int copy = stored::children(other(), _set).at(0);
    EXPECT_EQ(Table(other(), copy, false).locales(), 1u);
    EXPECT_EQ(Table(other(), copy, false).groups(), Table(store(), t, false).groups());
}

/// What is marked as come from a schema.
class Hide : public SchemaTest {
protected:
    void hide(unsigned int offset) { Root(store(), 0u).hide(offset); }
    unsigned char flags(unsigned int offset) { return stored::byte(store(), offset, stored::kFlags); }
};
LVP_ON_EACH_STORE(Hide);

TEST_P(Hide, MarksARecordAndEverythingBelowIt) {
    const unsigned int c = tree::addContainer(store(), 0, L"c");
    const unsigned int t = tree::addTable(store(), c, L"t");
    const unsigned int p = tree::addPrimitive(store(), t, L"p");
    const unsigned int d = tree::addContainer(store(), c, L"d");
    const unsigned int beside = tree::addContainer(store(), 0, L"beside");
    hide(c);
    for (const unsigned int offset : {c, t, p, d}) EXPECT_EQ(flags(offset), kFromASchema);
    EXPECT_EQ(flags(beside), 0);
    EXPECT_EQ(flags(0), 0);
}

TEST_P(Hide, KeepsTheOtherBits) {
    const unsigned int p = tree::addPrimitive(store(), 0, L"p");
    stored::putByte(store(), p, stored::kFlags, 0xf9);
    hide(p);
    EXPECT_EQ(flags(p), 0xff);
}

TEST_P(Hide, OfSomethingWithoutChildrenMarksItAlone) {
    for (const unsigned int offset : {tree::container(store(), L"c"), tree::table(store(), L"t")}) {
        ASSERT_EQ(stored::word(store(), offset, stored::kChildren), BADOFF);
        hide(offset);
        EXPECT_EQ(flags(offset), kFromASchema);
    }
}

TEST_P(Hide, ReachesEveryEntryOfTheListWhateverItsName) {
    const unsigned int c = tree::addContainer(store(), 0, L"c");
    const unsigned int first = tree::addPrimitive(store(), c, L"p");
    const unsigned int second = tree::primitive(store(), L"p");
    stored::enlist(store(), c, second);
    hide(c);
    EXPECT_EQ(flags(first), kFromASchema);
    EXPECT_EQ(flags(second), kFromASchema);
}

TEST_P(Hide, OfAnyOtherRecordDoesNothing) {
    const unsigned int list = stored::makeList(store());
    const unsigned int locale = data::Record::Locale(store()).offset();
    LoggingStore log(*store());
    {
        Root root(&log, 0u);
        for (const unsigned int offset : {0u, list, locale, 777u, BADOFF}) root.hide(offset);
    }
    EXPECT_TRUE(log.updates(true).empty());
}

TEST_P(Hide, WritesEachRecordOnceAsAChange) {
    const unsigned int c = tree::addContainer(store(), 0, L"c");
    tree::addPrimitive(store(), c, L"p");
    stored::enlist(store(), c, stored::children(store(), c)[0]);
    LoggingStore log(*store());
    Root(&log, 0u).hide(c);
    EXPECT_EQ(log.updates(true).size(), 2u);
    EXPECT_EQ(log.updates(true).back().offset, c) << "its children come first";
}

TEST_P(Hide, EndsWhereARecordIsFoundBelowItself) {
    const unsigned int c = tree::addContainer(store(), 0, L"c");
    const unsigned int d = tree::addContainer(store(), c, L"d");
    stored::enlist(store(), d, c);
    hide(c);
    EXPECT_EQ(flags(c), kFromASchema);
    EXPECT_EQ(flags(d), kFromASchema);
}

}  // namespace
