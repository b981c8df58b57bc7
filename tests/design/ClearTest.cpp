// The emptying of an item, and of a set.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <type_traits>

#include "lumivard/platform/store_contract/LoggingStore.h"
#include "record/tType.h"
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
using lumivard::platform::store_contract::LoggingStore;
using lumivard::platform::test_support::StoreTest;
using lumivard::platform::test_support::wide;
using testing::IsEmpty;

using lumivard::platform::test_support::BADOFF;

class Clear : public StoreTest {
protected:
    unsigned int children(unsigned int offset) { return stored::word(store(), offset, 14); }
    unsigned int locale(unsigned int offset) { return stored::word(store(), offset, 9); }
    unsigned int defaults(unsigned int offset) { return stored::word(store(), offset, 22); }
    bool there(unsigned int offset) { return store()->size(offset) != 0; }

    template <class Kind>
    void localize(unsigned int offset) {
        if constexpr (std::is_constructible_v<Kind, tree::IDataStore*, unsigned int, bool>) {
            Kind(store(), offset, false).localize(L"x", L"en");
        } else {
            Kind(store(), offset).localize(L"x", L"en");
        }
    }

    const unsigned int _root = tree::root(store());
};
LVP_ON_EACH_STORE(Clear);

TEST_P(Clear, LeavesARootWithoutChildrenAndLocales) {
    const unsigned int c = tree::addContainer(store(), _root, L"c");
    const unsigned int p = tree::addPrimitive(store(), c, L"p");
    localize<Root>(_root);
    const unsigned int list = children(_root);
    const unsigned int names = locale(_root);
    {
        Root root(store(), _root);
        root.clear();
        EXPECT_EQ(root.items(), 0u);
        EXPECT_EQ(root.find(L"c"), BADOFF);
        EXPECT_EQ(root.at(0), BADOFF);
    }
    EXPECT_EQ(children(_root), BADOFF);
    EXPECT_EQ(locale(_root), BADOFF);
    for (const unsigned int offset : {c, p, list, names}) EXPECT_FALSE(there(offset));
    EXPECT_STREQ(Root(store(), _root).tag(), L"root");
    EXPECT_NE(store()->extent(), 0u);
}

TEST_P(Clear, LeavesASetThatCanBeFilledAgain) {
    tree::addContainer(store(), _root, L"c");
    Root root(store(), _root);
    root.clear();
    const unsigned int c = tree::container(store(), L"c");
    EXPECT_TRUE(root.add(c));
    EXPECT_EQ(Root(store(), _root).find(L"c"), c);
}

TEST_P(Clear, LeavesTheSectionsOfAContainer) {
    const unsigned int c = tree::addContainer(store(), _root, L"c");
    const unsigned int p = tree::addPrimitive(store(), c, L"p");
    localize<Container>(c);
    Container item(store(), c, false);
    item.info(L"target");
    item.clear();
    EXPECT_FALSE(there(p));
    EXPECT_EQ(children(c), BADOFF);
    EXPECT_EQ(locale(c), BADOFF);
    EXPECT_EQ(stored::bytes(store(), c).substr(32), wide(L"c") + wide(L"target"));
    EXPECT_EQ(stored::word(store(), c, 1), _root);
    EXPECT_EQ(stored::refs(store(), c), 1u);
}

TEST_P(Clear, LeavesTheValuesOfAPrimitive) {
    const unsigned int p = tree::addPrimitive(store(), _root, L"p");
    localize<Primitive>(p);
    const unsigned int names = locale(p);
    Primitive item(store(), p);
    item.set("abcd", 0, 1);
    item.clear();
    EXPECT_FALSE(there(names));
    EXPECT_EQ(locale(p), BADOFF);
    EXPECT_EQ(stored::word(store(), p, 14), 0u) << "what a primitive has reserved";
    EXPECT_EQ(stored::bytes(store(), p).substr(44), wide(L"p") + "abcd");
}

TEST_P(Clear, TakesTheDefaultsOfATable) {
    const unsigned int t = tree::addTable(store(), _root, L"t");
    const unsigned int p = tree::addPrimitive(store(), t, L"p");
    localize<Table>(t);
    Table item(store(), t, false);
    item.defaults(units::kMeter, metadata::kDouble);
    const unsigned int list = defaults(t);
    item.clear();
    for (const unsigned int offset : {list, p}) EXPECT_FALSE(there(offset));
    EXPECT_EQ(defaults(t), BADOFF);
    EXPECT_EQ(children(t), BADOFF);
    EXPECT_EQ(locale(t), BADOFF);
    EXPECT_THAT(item.groups(), IsEmpty());
    EXPECT_EQ(item.items(), 0u);
    EXPECT_TRUE(item.defaults(units::kMeter, metadata::kDouble));
    EXPECT_NE(defaults(t), BADOFF);
}

TEST_P(Clear, WritesItsRecordOnceAsAChangeWhenThereIsNothingToErase) {
    const unsigned int c = tree::addContainer(store(), _root, L"c");
    LoggingStore log(*store());
    Container item(&log, c, false);
    log.clearLog();
    item.clear();
    EXPECT_EQ(log.updates(true).size(), 1u);
    EXPECT_EQ(log.count(LoggingStore::tCall::kErase), 0u);
}

TEST_P(Clear, AsksNeitherForFlagsNorForCounts) {
    const unsigned int c = tree::addContainer(store(), _root, L"c");
    const unsigned int p = tree::addPrimitive(store(), c, L"p");
    stored::putByte(store(), c, 13, data::Record::kInherited);
    const Primitive open(store(), p);
    Root(store(), _root).clear();
    EXPECT_FALSE(there(c));
    EXPECT_FALSE(there(p));
}

TEST_P(Clear, OutlivesTheObjectsWhoseRecordsItTook) {
    const unsigned int p = tree::addPrimitive(store(), _root, L"p");
    {
        Primitive open(store(), p);
        open.localize(L"x", L"en");
        Root(store(), _root).clear();
    }
    EXPECT_FALSE(there(p));
    EXPECT_EQ(children(_root), BADOFF);
}

TEST_P(Clear, ErasesOnlyWhatTheIndexKnows) {
    const unsigned int c = tree::addContainer(store(), _root, L"c");
    const unsigned int p = tree::addPrimitive(store(), c, L"p");
    Container(store(), c, true).clear();
    EXPECT_TRUE(there(p));
    EXPECT_EQ(children(c), BADOFF);
}

class CleanupOfASet : public Clear {};
LVP_ON_EACH_STORE(CleanupOfASet);

TEST_P(CleanupOfASet, ErasesTheChildrenAndTheListAndLeavesTheField) {
    const unsigned int c = tree::addContainer(store(), _root, L"c");
    const unsigned int p = tree::addPrimitive(store(), c, L"p");
    const unsigned int list = children(_root);
    Root root(store(), _root);
    root.Set::cleanup();
    for (const unsigned int offset : {c, p, list}) EXPECT_FALSE(there(offset));
    EXPECT_EQ(root.items(), 0u);
    EXPECT_EQ(root.at(0), BADOFF);
    EXPECT_EQ(root.Set::duplicate(other(), 0), BADOFF) << "there is no list any more";
    EXPECT_EQ(children(_root), list) << "the field is for clear to empty";
}

TEST_P(CleanupOfASet, DoesNothingWithoutAList) {
    LoggingStore log(*store());
    Root root(&log, _root);
    log.clearLog();
    root.Set::cleanup();
    EXPECT_THAT(log.log(), IsEmpty());
}

TEST_P(CleanupOfASet, LeavesRecordsAloneThatAreNoChildren) {
    const unsigned int foreign = stored::makeList(store());
    stored::enlist(store(), _root, foreign);
    Root(store(), _root).Set::cleanup();
    EXPECT_TRUE(there(foreign));
}

TEST_P(CleanupOfASet, ErasesNoListThatIsNone) {
    const unsigned int foreign = tree::container(store(), L"foreign");
    const unsigned int t = tree::addTable(store(), _root, L"t");
    for (const unsigned int named : {foreign, 777u}) {
        for (const unsigned int field : {9u, 14u, 22u}) stored::putWord(store(), t, field, named);
        Table(store(), t, false).clear();
        for (const unsigned int field : {9u, 14u, 22u}) EXPECT_EQ(stored::word(store(), t, field), BADOFF);
    }
    EXPECT_TRUE(there(foreign));
}

}  // namespace
