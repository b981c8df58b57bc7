// The dotted path of an item.
#include <gtest/gtest.h>

#include <string>

#include "tests/support/RecordHelpers.h"
#include "tests/support/StoreFixture.h"
#include "tests/support/TreeHelpers.h"

namespace {

namespace data = lumivard::platform::data;
namespace stored = lumivard::platform::test_support::stored;
namespace tree = lumivard::platform::test_support::tree;
using data::Design::Primitive;
using data::Design::Table;
using data::Structural::Container;
using lumivard::platform::test_support::makeRecord;
using lumivard::platform::test_support::StoreTest;

class Path : public StoreTest {
protected:
    static std::wstring path(const data::Metadata::Item& item) {
        std::wstring path = L"what was there before";
        item.path(path);
        return path;
    }
};
LVP_ON_EACH_STORE(Path);

TEST_P(Path, OfAnItemBelowTheRootIsItsName) {
    const unsigned int root = tree::root(store());
    EXPECT_EQ(path(Primitive(store(), tree::addPrimitive(store(), root, L"p"))), L"p");
    EXPECT_EQ(path(Container(store(), tree::addContainer(store(), root, L"c"), true)), L"c");
}

TEST_P(Path, NamesAllOwnersFromTheTop) {
    const unsigned int a = tree::addContainer(store(), tree::root(store()), L"a");
    const unsigned int b = tree::addContainer(store(), a, L"b");
    EXPECT_EQ(path(Primitive(store(), tree::addPrimitive(store(), b, L"c"))), L"a.b.c");
}

TEST_P(Path, GoesThroughTables) {
    const unsigned int table = tree::addTable(store(), tree::root(store()), L"t");
    const unsigned int inner = tree::addTable(store(), table, L"u");
    EXPECT_EQ(path(Table(store(), inner, false)), L"t.u");
}

TEST_P(Path, OfAnItemWithoutAnOwnerIsItsName) {
    EXPECT_EQ(path(Container(store(), tree::container(store(), L"alone"), false)), L"alone");
}

TEST_P(Path, OfTheRootIsItsName) {
    EXPECT_EQ(path(data::Metadata::Root(store(), L"root")), L"root");
}

TEST_P(Path, KeepsEmptyNamesAndDotsInNames) {
    const unsigned int a = tree::addContainer(store(), tree::root(store()), L"");
    const unsigned int b = tree::addContainer(store(), a, L"x.y");
    EXPECT_EQ(path(Primitive(store(), tree::addPrimitive(store(), b, L""))), L".x.y.");
}

TEST_P(Path, TakesTheOwnersNamesFromTheStoreAndItsOwnFromItsOpening) {
    const unsigned int root = tree::root(store());
    const unsigned int owner = tree::addContainer(store(), root, L"a");
    const unsigned int inner = tree::addPrimitive(store(), owner, L"p");
    const Primitive item(store(), inner);
    EXPECT_TRUE(data::Metadata::Root(store(), root).rename(L"a", L"renamed"));
    EXPECT_TRUE(Container(store(), owner, false).rename(L"p", L"q"));
    EXPECT_EQ(path(item), L"renamed.p");
    EXPECT_EQ(path(Primitive(store(), inner)), L"renamed.q");
}

TEST_P(Path, TakesItsOwnersFromTheStore) {
    const unsigned int root = tree::root(store());
    const unsigned int a = tree::addContainer(store(), root, L"a");
    const unsigned int offset = tree::primitive(store(), L"p");
    const Primitive item(store(), offset);
    tree::add(store(), a, offset);
    EXPECT_EQ(path(item), L"a.p");
}

TEST_P(Path, EndsAtAnOwnerThatIsNotThere) {
    tree::root(store());
    const unsigned int offset = tree::primitive(store(), L"p");
    stored::putWord(store(), offset, 1, 777);
    EXPECT_EQ(path(Primitive(store(), offset)), L"p");
}

TEST_P(Path, GivesNoNameToAnOwnerThatIsNoEntity) {
    tree::root(store());
    const unsigned int offset = tree::primitive(store(), L"p");
    stored::putWord(store(), offset, 1, makeRecord(store(), std::string("\3\0\0\0", 4)));
    EXPECT_EQ(path(Primitive(store(), offset)), L".p");
}

TEST_P(Path, EndsWhenTheOwnersComeRound) {
    tree::root(store());
    const unsigned int a = tree::container(store(), L"a");
    const unsigned int b = tree::addContainer(store(), a, L"b");
    stored::putWord(store(), a, 1, b);
    const std::wstring looped = path(Container(store(), b, false));
    EXPECT_EQ(looped.substr(looped.size() - 4), L".a.b");

    stored::putWord(store(), a, 1, a);
    const std::wstring self = path(Container(store(), a, false));
    EXPECT_EQ(self.back(), L'a');
}

}  // namespace
