// The changing of a child's name.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "lumivard/platform/store_contract/LoggingStore.h"
#include "record/Container.h"
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
using data::Design::Primitive;
using data::Design::Table;
using data::Metadata::Root;
using data::Structural::Container;
using lumivard::platform::store_contract::LoggingStore;
using lumivard::platform::test_support::hex;
using lumivard::platform::test_support::hexWord;
using lumivard::platform::test_support::StoreTest;
using lumivard::platform::test_support::wide;
using testing::ElementsAre;

using lumivard::platform::test_support::BADOFF;

/// The section of a renamed item: its name with a terminator, and as many zeros.
std::string twice(const wchar_t* name) {
    return wide(name) + std::string(wide(name).size(), '\0');
}

class Rename : public StoreTest {
protected:
    bool rename(const wchar_t* from, const wchar_t* to) { return Root(store(), _root).rename(from, to); }

    const unsigned int _root = tree::root(store());
};
LVP_ON_EACH_STORE(Rename);

TEST_P(Rename, ChangesTheNameInTheStoreAndInTheIndex) {
    const unsigned int a = tree::addContainer(store(), _root, L"a");
    Root set(store(), _root);
    EXPECT_TRUE(set.rename(L"a", L"another name"));
    EXPECT_EQ(set.find(L"a"), BADOFF);
    EXPECT_EQ(set.find(L"another name"), a);
    EXPECT_EQ(set.items(), 1u);
    EXPECT_EQ(Root(store(), _root).find(L"another name"), a);
    EXPECT_STREQ(Container(store(), a, false).tag(), L"another name");
    EXPECT_THAT(stored::children(store(), _root), ElementsAre(a));
}

TEST_P(Rename, LeavesASectionOfTwiceTheSizeWithZerosBehind) {
    const unsigned int c = tree::addContainer(store(), _root, L"c");
    const unsigned int t = tree::addTable(store(), _root, L"t");
    const unsigned int p = tree::addPrimitive(store(), _root, L"p");
    EXPECT_TRUE(rename(L"c", L"xyz"));
    EXPECT_TRUE(rename(L"t", L"uvw"));
    EXPECT_TRUE(rename(L"p", L"rst"));
    EXPECT_EQ(stored::word(store(), c, 19), 32u);
    EXPECT_EQ(stored::bytes(store(), c).substr(32), twice(L"xyz"));
    EXPECT_EQ(stored::word(store(), t, 26), 32u);
    EXPECT_EQ(stored::bytes(store(), t).substr(36), twice(L"uvw"));
    EXPECT_EQ(stored::word(store(), p, 30), 32u);
    EXPECT_EQ(stored::bytes(store(), p).substr(44), twice(L"rst"));
}

TEST_P(Rename, LeavesASectionOf8BytesForAnEmptyName) {
    const unsigned int c = tree::addContainer(store(), _root, L"c");
    EXPECT_TRUE(rename(L"c", L""));
    EXPECT_EQ(stored::word(store(), c, 19), 8u);
    EXPECT_EQ(stored::bytes(store(), c).substr(32), std::string(8, '\0'));
    EXPECT_EQ(Root(store(), _root).find(L""), c);
    EXPECT_TRUE(rename(L"", L"c"));
}

TEST_P(Rename, ReplacesTheSectionOfAnEarlierRename) {
    const unsigned int c = tree::addContainer(store(), _root, L"c");
    rename(L"c", L"a much longer name");
    EXPECT_TRUE(rename(L"a much longer name", L"d"));
    EXPECT_EQ(stored::bytes(store(), c).substr(32), twice(L"d"));
}

TEST_P(Rename, MovesTheLaterSectionsAlong) {
    const unsigned int c = tree::addContainer(store(), _root, L"c");
    Container(store(), c, false).info(L"target");
    EXPECT_TRUE(rename(L"c", L"xyz"));
    EXPECT_EQ(stored::bytes(store(), c).substr(32), twice(L"xyz") + wide(L"target"));
    EXPECT_STREQ(Container(store(), c, false).info(), L"target");

    const unsigned int p = tree::addPrimitive(store(), _root, L"p");
    {
        Primitive item(store(), p);
        item.valuelocale(L"de");
        item.set("abcd", 0, 1);
    }
    EXPECT_TRUE(rename(L"p", L"q"));
    EXPECT_EQ(stored::bytes(store(), p).substr(44), wide(L"de") + twice(L"q") + "abcd");
    EXPECT_EQ(Primitive(store(), p).dimension(), 1u);
}

TEST_P(Rename, LeavesTheRestOfTheRecord) {
    const unsigned int p = tree::addPrimitive(store(), _root, L"p");
    stored::putByte(store(), p, 13, data::Record::kHidden);
    stored::putWord(store(), p, 9, 0x01020304);
    const std::string before = hex(store(), p);
    EXPECT_TRUE(rename(L"p", L"q"));
    EXPECT_EQ(hex(store(), p).substr(0, 2 * 44),
              before.substr(0, 2 * 30) + hexWord(16) + before.substr(2 * 34, 2 * 10));
}

TEST_P(Rename, RefusesATakenNameAndChangesNothing) {
    const unsigned int a = tree::addContainer(store(), _root, L"a");
    const unsigned int b = tree::addPrimitive(store(), _root, L"b");
    const std::string before = hex(store(), a) + hex(store(), b);
    Root set(store(), _root);
    EXPECT_FALSE(set.rename(L"a", L"b"));
    EXPECT_FALSE(set.rename(L"a", L"a"));
    EXPECT_EQ(hex(store(), a) + hex(store(), b), before);
    EXPECT_EQ(set.find(L"a"), a);
    EXPECT_EQ(set.find(L"b"), b);
}

TEST_P(Rename, RefusesAnUnknownName) {
    Root set(store(), _root);
    EXPECT_FALSE(set.rename(L"a", L"b"));
    EXPECT_EQ(set.find(L"b"), BADOFF);
}

TEST_P(Rename, RefusesToDoWithoutAName) {
    const unsigned int a = tree::addContainer(store(), _root, L"a");
    const std::string before = hex(store(), a);
    EXPECT_FALSE(rename(L"a", nullptr));
    EXPECT_FALSE(rename(nullptr, L"b"));
    EXPECT_FALSE(rename(nullptr, nullptr));
    EXPECT_EQ(hex(store(), a), before);
}

TEST_P(Rename, RefusesAnInheritedChild) {
    const unsigned int a = tree::addContainer(store(), _root, L"a");
    stored::putByte(store(), a, 13, data::Record::kInherited | data::Record::kHidden);
    const std::string before = hex(store(), a);
    Root set(store(), _root);
    EXPECT_FALSE(set.rename(L"a", L"b"));
    EXPECT_EQ(hex(store(), a), before);
    EXPECT_EQ(set.find(L"a"), a);
    EXPECT_EQ(set.find(L"b"), BADOFF);
}

TEST_P(Rename, DoesNotReachAnObjectThatIsOpen) {
    const unsigned int a = tree::addContainer(store(), _root, L"a");
    {
        const Container open(store(), a, false);
        EXPECT_TRUE(rename(L"a", L"b"));
        EXPECT_STREQ(open.tag(), L"a");
        EXPECT_EQ(stored::refs(store(), a), 1u);
    }
    EXPECT_EQ(stored::refs(store(), a), 0u);
    EXPECT_STREQ(Container(store(), a, false).tag(), L"b");
}

TEST_P(Rename, TakesTheNameThatASetHoldsItself) {
    const unsigned int a = tree::addContainer(store(), _root, L"a");
    const Container open(store(), a, false);
    EXPECT_TRUE(rename(open.tag(), L"b"));
    EXPECT_EQ(Root(store(), _root).find(L"b"), a);
}

TEST_P(Rename, WritesTheRecordOnceAndNothingElse) {
    const unsigned int a = tree::addContainer(store(), _root, L"a");
    LoggingStore log(*store());
    Root set(&log, _root);
    log.clearLog();
    EXPECT_TRUE(set.rename(L"a", L"b"));
    EXPECT_THAT(log.updates(true), ElementsAre(LoggingStore::Entry{LoggingStore::tCall::kUpdate, a, 48, true}));
    EXPECT_TRUE(log.updates(false).empty());
}

TEST_P(Rename, FailsForAChildThatIsGone) {
    tree::addContainer(store(), _root, L"a");
    Root set(store(), _root);
    Root(store(), _root).remove(L"a");
    EXPECT_FALSE(set.rename(L"a", L"b"));
    EXPECT_EQ(set.find(L"b"), BADOFF);
}

TEST_P(Rename, FreesTheOldNameAndTakesTheNew) {
    tree::addContainer(store(), _root, L"a");
    Root set(store(), _root);
    set.rename(L"a", L"b");
    EXPECT_FALSE(set.add(tree::container(store(), L"b")));
    EXPECT_TRUE(set.add(tree::container(store(), L"a")));
    EXPECT_TRUE(set.remove(L"b"));
}

}  // namespace
