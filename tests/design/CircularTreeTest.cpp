// Damaged stores in which a record is found below itself, or twice.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "lumivard/platform/stores.h"
#include "schema/Finder.h"
#include "tests/support/Offsets.h"
#include "tests/support/RecordHelpers.h"
#include "tests/support/StoreFixture.h"
#include "tests/support/TreeHelpers.h"

namespace {

namespace data = lumivard::platform::data;
namespace metadata = data::metadata;
namespace stored = lumivard::platform::test_support::stored;
namespace tree = lumivard::platform::test_support::tree;
using data::Design::Table;
using data::Metadata::Root;
using data::Structural::Container;
using lumivard::platform::test_support::StoreTest;
using testing::ElementsAre;
using testing::IsEmpty;

using lumivard::platform::test_support::BADOFF;

/// A root with "a" in it and "b" in that; "a" is listed in "b" again.
class CircularTree : public StoreTest {
protected:
    CircularTree() { stored::enlist(store(), _b, _a); }

    bool there(unsigned int offset) { return store()->size(offset) != 0; }

    const unsigned int _root = tree::root(store());
    const unsigned int _copies = tree::root(other());
    const unsigned int _a = tree::addContainer(store(), _root, L"a");
    const unsigned int _b = tree::addContainer(store(), _a, L"b");
};
LVP_ON_EACH_STORE(CircularTree);

TEST_P(CircularTree, IsOpened) {
    EXPECT_EQ(Container(store(), _b, false).find(L"a"), _a);
    EXPECT_EQ(data::Schema::Finder(store(), 0, L"a.b.a.b").offset, _b);
}

TEST_P(CircularTree, IsAskedWhetherItIsOpen) {
    EXPECT_TRUE(Root(store(), _root).unreferenced());
    const Container open(store(), _b, false);
    EXPECT_FALSE(Root(store(), _root).unreferenced());
    EXPECT_FALSE(Container(store(), _a, false).unreferenced());
}

TEST_P(CircularTree, IsDestroyedOnce) {
    const unsigned int lists[] = {stored::word(store(), _a, 14), stored::word(store(), _b, 14)};
    EXPECT_TRUE(Root(store(), _root).remove(L"a"));
    for (const unsigned int offset : {_a, _b, lists[0], lists[1]}) EXPECT_FALSE(there(offset));
    EXPECT_THAT(stored::children(store(), _root), IsEmpty());
}

TEST_P(CircularTree, IsNotDestroyedFromInside) {
    Container a(store(), _a, false);
    EXPECT_FALSE(a.remove(L"b")) << "a is below b, and open";
    EXPECT_TRUE(there(_b));
}

TEST_P(CircularTree, IsCopiedOnce) {
    const auto before = other()->extent();
    const unsigned int copy = Container(store(), _a, false).clone(other());
    const std::vector<unsigned int> children = stored::children(other(), copy);
    ASSERT_EQ(children.size(), 1u);
    EXPECT_STREQ(Container(other(), children[0], false).tag(), L"b");
    EXPECT_THAT(stored::children(other(), children[0]), IsEmpty());
    EXPECT_GT(other()->extent(), before);
}

TEST_P(CircularTree, IsCleared) {
    Root(store(), _root).clear();
    EXPECT_FALSE(there(_a));
    EXPECT_FALSE(there(_b));
    EXPECT_TRUE(there(_root));
}

TEST_P(CircularTree, MayLoseTheOpenContainerToItsOwnClearing) {
    {
        Container a(store(), _a, false);
        a.localize(L"x", L"en");
        a.clear();
        EXPECT_EQ(a.items(), 0u);
    }
    EXPECT_FALSE(there(_a));
    EXPECT_FALSE(there(_b));
}

TEST_P(CircularTree, MayBeAContainerOrATableInItself) {
    for (const unsigned int offset :
         {tree::addContainer(store(), _root, L"self"), tree::addTable(store(), _root, L"t")}) {
        stored::enlist(store(), offset, offset);
        EXPECT_TRUE(Root(store(), _root).unreferenced());
        EXPECT_EQ(Root(store(), offset).items(), 1u);
    }
    const unsigned int copy = Container(store(), stored::children(store(), _root)[1], false).clone(other());
    EXPECT_THAT(stored::children(other(), copy), IsEmpty());
    EXPECT_TRUE(Root(store(), _root).remove(L"self"));
    Table(store(), stored::children(store(), _root)[1], false).clear();
    EXPECT_TRUE(there(_root));
}

TEST_P(CircularTree, MayListTheRoot) {
    const unsigned int c = tree::addContainer(store(), _root, L"c");
    stored::enlist(store(), c, _root);
    EXPECT_TRUE(Root(store(), _root).remove(L"c"));
    EXPECT_TRUE(there(_root));
}

TEST_P(CircularTree, MayNameOneListTwice) {
    const unsigned int c = tree::addContainer(store(), _root, L"c");
    const unsigned int p = tree::addPrimitive(store(), c, L"p");
    const unsigned int d = tree::addContainer(store(), _root, L"d");
    stored::putWord(store(), d, 14, stored::word(store(), c, 14));
    Root root(store(), _root);
    EXPECT_TRUE(root.remove(L"c"));
    EXPECT_FALSE(there(p));
    EXPECT_TRUE(root.remove(L"d"));
    EXPECT_FALSE(there(d));
}

TEST_P(CircularTree, MayNameTheRootsOwnList) {
    const unsigned int c = tree::addContainer(store(), _root, L"c");
    stored::putWord(store(), c, 14, stored::word(store(), _root, 14));
    Root(store(), _root).clear();
    EXPECT_FALSE(there(c));
    EXPECT_EQ(stored::word(store(), _root, 14), BADOFF);
}

TEST_P(CircularTree, MayUseOneListForChildrenAndDefaults) {
    const unsigned int t = tree::addTable(store(), _root, L"t");
    Table(store(), t, false).defaults(data::units::kMeter, metadata::kDouble);
    stored::putWord(store(), t, 14, stored::word(store(), t, 22));
    Table item(store(), t, false);
    item.clear();
    EXPECT_EQ(stored::word(store(), t, 14), BADOFF);
    EXPECT_EQ(stored::word(store(), t, 22), BADOFF);
}

// A list may foretell the offset that a copy will get. If copies were copied, each level would double what is below it.
TEST(ForetoldCopies, AreNotCopied) {
    const auto store = lumivard::platform::stores::memory();
    tree::root(store.get());
    constexpr unsigned int kLevels = 60;
    std::vector<unsigned int> levels{tree::addContainer(store.get(), 0, L"0")};
    while (levels.size() < kLevels) levels.push_back(tree::addContainer(store.get(), levels.back(), L"next"));
    const auto first = static_cast<unsigned int>(store->extent());
    // A copy takes two offsets, for its record and its list.
    for (unsigned int i = 0; i + 1 < kLevels; ++i) stored::enlist(store.get(), levels[i], first + 2 * (i + 1));
    const unsigned int copy = Container(store.get(), levels[0], false).clone(store.get());
    EXPECT_EQ(copy, first);
    EXPECT_THAT(stored::children(store.get(), copy), ElementsAre(first + 2));
    EXPECT_LE(store->extent(), first + 2 * kLevels);
}

}  // namespace
