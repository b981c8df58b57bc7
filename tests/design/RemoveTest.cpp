// The destroying of a child.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

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
using lumivard::platform::test_support::hex;
using lumivard::platform::test_support::StoreTest;
using testing::ElementsAre;
using testing::IsEmpty;

using lumivard::platform::test_support::BADOFF;

class Remove : public StoreTest {
protected:
    /// Makes an item that came from a schema.
    void inherit(unsigned int offset) { stored::putByte(store(), offset, 13, data::Record::kInherited); }

    /// All that a container "c" with a table in it owns: lists, localized names and defaults, and itself.
    std::vector<unsigned int> wholeSubtree() {
        const unsigned int c = tree::addContainer(store(), _root, L"c");
        const unsigned int t = tree::addTable(store(), c, L"t");
        const unsigned int p = tree::addPrimitive(store(), t, L"p");
        Container(store(), c, true).localize(L"x", L"en");
        Primitive(store(), p).localize(L"x", L"en");
        Table(store(), t, true).defaults(units::kMeter, metadata::kDouble);
        return {c,
                t,
                p,
                stored::word(store(), c, 14),
                stored::word(store(), t, 14),
                stored::word(store(), c, 9),
                stored::word(store(), p, 9),
                stored::word(store(), t, 22)};
    }

    const unsigned int _root = tree::root(store());
};
LVP_ON_EACH_STORE(Remove);

TEST_P(Remove, ErasesTheChildAndCutsItFromTheList) {
    const unsigned int a = tree::addContainer(store(), _root, L"a");
    const unsigned int b = tree::addPrimitive(store(), _root, L"b");
    const unsigned int c = tree::addTable(store(), _root, L"c");
    Root set(store(), _root);
    EXPECT_TRUE(set.remove(L"b"));
    EXPECT_EQ(store()->size(b), 0u);
    EXPECT_EQ(set.find(L"b"), BADOFF);
    EXPECT_EQ(set.items(), 2u);
    EXPECT_THAT(stored::children(store(), _root), ElementsAre(a, c));
    EXPECT_TRUE(set.remove(L"a"));
    EXPECT_TRUE(set.remove(L"c"));
    EXPECT_EQ(set.items(), 0u);
    EXPECT_THAT(stored::children(store(), _root), IsEmpty());
    EXPECT_NE(stored::word(store(), _root, 14), BADOFF) << "the empty list stays";
}

TEST_P(Remove, KnowsNoUnknownName) {
    tree::addContainer(store(), _root, L"a");
    Root set(store(), _root);
    for (const wchar_t* name : {L"b", L"", L"A", L"a."}) EXPECT_FALSE(set.remove(name));
    EXPECT_FALSE(set.remove(nullptr));
    EXPECT_EQ(set.items(), 1u);
}

TEST_P(Remove, ErasesTheWholeSubtreeWithAllItOwns) {
    const std::vector<unsigned int> owned = wholeSubtree();
    for (const unsigned int offset : owned) ASSERT_NE(store()->size(offset), 0u);
    Root set(store(), _root);
    EXPECT_TRUE(set.remove(L"c"));
    for (const unsigned int offset : owned) EXPECT_EQ(store()->size(offset), 0u);
}

TEST_P(Remove, ErasesEachRecordOnceAndNothingElse) {
    const std::vector<unsigned int> owned = wholeSubtree();
    LoggingStore log(*store());
    Root set(&log, _root);
    set.remove(L"c");
    std::vector<unsigned int> erased;
    for (const auto& entry : log.log()) {
        if (entry.call == LoggingStore::tCall::kErase) erased.push_back(entry.offset);
    }
    EXPECT_THAT(erased, testing::UnorderedElementsAreArray(owned));
}

TEST_P(Remove, RefusesAnInheritedChild) {
    const unsigned int a = tree::addContainer(store(), _root, L"a");
    inherit(a);
    const std::string before = hex(store(), a);
    Root set(store(), _root);
    EXPECT_FALSE(set.remove(L"a"));
    EXPECT_EQ(hex(store(), a), before);
    EXPECT_EQ(set.find(L"a"), a);
    EXPECT_THAT(stored::children(store(), _root), ElementsAre(a));
}

TEST_P(Remove, AsksOnlyTheChildItselfWhetherItIsInherited) {
    const unsigned int a = tree::addContainer(store(), _root, L"a");
    const unsigned int b = tree::addPrimitive(store(), a, L"b");
    inherit(b);
    EXPECT_TRUE(Root(store(), _root).remove(L"a"));
    EXPECT_EQ(store()->size(b), 0u);
}

TEST_P(Remove, RefusesAChildThatIsOpen) {
    const unsigned int a = tree::addContainer(store(), _root, L"a");
    const unsigned int t = tree::addTable(store(), _root, L"t");
    const unsigned int p = tree::addPrimitive(store(), _root, L"p");
    Root set(store(), _root);
    {
        const Container container(store(), a, true);
        const Table table(store(), t, true);
        const Primitive primitive(store(), p);
        for (const wchar_t* name : {L"a", L"t", L"p"}) EXPECT_FALSE(set.remove(name));
    }
    EXPECT_EQ(set.items(), 3u);
    for (const wchar_t* name : {L"a", L"t", L"p"}) EXPECT_TRUE(set.remove(name));
}

TEST_P(Remove, RefusesAChildWithSomethingOpenBelow) {
    const unsigned int a = tree::addContainer(store(), _root, L"a");
    const unsigned int b = tree::addTable(store(), a, L"b");
    const unsigned int c = tree::addPrimitive(store(), b, L"c");
    Root set(store(), _root);
    {
        const Primitive open(store(), c);
        EXPECT_FALSE(set.remove(L"a"));
        EXPECT_NE(store()->size(b), 0u);
    }
    EXPECT_TRUE(set.remove(L"a"));
}

TEST_P(Remove, LeavesCountsAndFlagsAloneWhenItRefuses) {
    const unsigned int a = tree::addContainer(store(), _root, L"a");
    const unsigned int b = tree::addPrimitive(store(), a, L"b");
    const Primitive open(store(), b);
    Root set(store(), _root);
    const std::string before = hex(store(), a) + hex(store(), b);
    EXPECT_FALSE(set.remove(L"a"));
    EXPECT_EQ(hex(store(), a) + hex(store(), b), before);
}

TEST_P(Remove, IsHeldBackByACountThatACrashLeftBehind) {
    const unsigned int a = tree::addContainer(store(), _root, L"a");
    stored::putWord(store(), a, 5, 1);
    EXPECT_FALSE(Root(store(), _root).remove(L"a"));
}

TEST_P(Remove, MakesRoomForTheName) {
    tree::addContainer(store(), _root, L"a");
    Root set(store(), _root);
    set.remove(L"a");
    const unsigned int next = tree::primitive(store(), L"a");
    EXPECT_TRUE(set.add(next));
    EXPECT_EQ(set.find(L"a"), next);
    EXPECT_THAT(stored::children(store(), _root), ElementsAre(next));
}

TEST_P(Remove, AgreesWithTheListAtEachStep) {
    Root set(store(), _root);
    for (int i = 0; i < 50; ++i) set.add(tree::primitive(store(), std::to_wstring(i).c_str()));
    for (int i = 0; i < 50; i += 3) {
        EXPECT_TRUE(set.remove(std::to_wstring(i).c_str()));
        EXPECT_EQ(set.items(), stored::children(store(), _root).size());
    }
    for (int i = 0; i < 50; ++i) EXPECT_EQ(set.find(std::to_wstring(i).c_str()) == BADOFF, i % 3 == 0) << i;
}

TEST_P(Remove, LeavesRecordsAloneThatAreNoChildren) {
    const unsigned int a = tree::addContainer(store(), _root, L"a");
    const unsigned int foreign = stored::makeList(store());
    stored::enlist(store(), a, foreign);
    EXPECT_TRUE(Root(store(), _root).remove(L"a"));
    EXPECT_NE(store()->size(foreign), 0u);
}

TEST_P(Remove, LeavesTheSecondOfTwoChildrenOfOneName) {
    tree::addContainer(store(), _root, L"a");
    const unsigned int second = tree::container(store(), L"a");
    stored::enlist(store(), _root, second);
    Root set(store(), _root);
    EXPECT_TRUE(set.remove(L"a"));
    EXPECT_EQ(set.find(L"a"), BADOFF);
    EXPECT_THAT(stored::children(store(), _root), ElementsAre(second));
    set.update();
    EXPECT_EQ(set.find(L"a"), second);
}

TEST_P(Remove, LeavesWhatADamagedChildNamesAndDoesNotOwn) {
    const unsigned int a = tree::addTable(store(), _root, L"a");
    const unsigned int foreign = tree::addContainer(store(), _root, L"foreign");
    for (const unsigned int field : {9u, 14u, 22u}) stored::putWord(store(), a, field, foreign);
    EXPECT_TRUE(Root(store(), _root).remove(L"a"));
    EXPECT_NE(store()->size(foreign), 0u);

    const unsigned int b = tree::addTable(store(), _root, L"b");
    for (const unsigned int field : {9u, 14u, 22u}) stored::putWord(store(), b, field, 0);
    EXPECT_TRUE(Root(store(), _root).remove(L"b"));
    EXPECT_NE(store()->size(_root), 0u);
}

TEST_P(Remove, OfAChildThatIsGoneForgetsIt) {
    const unsigned int a = tree::addContainer(store(), _root, L"a");
    Root first(store(), _root);
    Root(store(), _root).remove(L"a");
    EXPECT_EQ(first.find(L"a"), a);
    EXPECT_TRUE(first.remove(L"a"));
    EXPECT_EQ(first.find(L"a"), BADOFF);
}

}  // namespace
