// How a record becomes a child.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "lumivard/platform/store_contract/LoggingStore.h"
#include "record/Locale.h"
#include "record/Offsets.h"
#include "tests/support/Offsets.h"
#include "tests/support/RecordHelpers.h"
#include "tests/support/StoreFixture.h"
#include "tests/support/TreeHelpers.h"

namespace {

namespace data = lumivard::platform::data;
namespace stored = lumivard::platform::test_support::stored;
namespace tree = lumivard::platform::test_support::tree;
using data::Metadata::Root;
using lumivard::platform::store_contract::LoggingStore;
using lumivard::platform::test_support::hex;
using lumivard::platform::test_support::hexWord;
using lumivard::platform::test_support::makeRecord;
using lumivard::platform::test_support::StoreTest;
using testing::ElementsAre;
using tCall = LoggingStore::tCall;

using lumivard::platform::test_support::BADOFF;

class Add : public StoreTest {
protected:
    unsigned int list() { return stored::word(store(), _root, 14); }

    const unsigned int _root = tree::root(store());
};
LVP_ON_EACH_STORE(Add);

TEST_P(Add, MakesTheListWithTheFirstChild) {
    Root set(store(), _root);
    EXPECT_EQ(list(), BADOFF);
    const unsigned int child = tree::container(store(), L"a");
    EXPECT_TRUE(set.add(child));
    EXPECT_EQ(hex(store(), list()), "03000000" + hexWord(child));
    EXPECT_EQ(set.at(0), child);
    EXPECT_EQ(set.find(L"a"), child);
    EXPECT_EQ(stored::refs(store(), _root), 1u);
}

TEST_P(Add, OnlyAppendsTheSecondChild) {
    const unsigned int a = tree::addContainer(store(), _root, L"a");
    const unsigned int b = tree::container(store(), L"b");
    const unsigned int before = list();
    LoggingStore log(*store());
    {
        Root set(&log, _root);
        log.clearLog();
        EXPECT_TRUE(set.add(b));
        EXPECT_EQ(log.count(tCall::kCreate), 0u);
        EXPECT_EQ(log.count(tCall::kAppend), 1u);
        ASSERT_EQ(log.updates(true).size(), 1u);
        EXPECT_EQ(log.updates(true).front().offset, b);
    }
    EXPECT_EQ(list(), before);
    EXPECT_EQ(hex(store(), list()), "03000000" + hexWord(a) + hexWord(b));
}

TEST_P(Add, SetsTheOwnerOfTheChild) {
    const unsigned int child = tree::primitive(store(), L"p");
    const std::string before = hex(store(), child);
    Root(store(), _root).add(child);
    EXPECT_EQ(hex(store(), child), before.substr(0, 2) + hexWord(_root) + before.substr(10));
}

TEST_P(Add, KeepsTheOrderOfAdding) {
    Root set(store(), _root);
    for (const wchar_t* name : {L"z", L"a", L"m"}) EXPECT_TRUE(set.add(tree::table(store(), name)));
    EXPECT_EQ(set.at(0), set.find(L"z"));
    EXPECT_EQ(set.at(1), set.find(L"a"));
    EXPECT_EQ(set.at(2), set.find(L"m"));
}

TEST_P(Add, RefusesATakenNameAndChangesNothing) {
    const unsigned int taken = tree::addContainer(store(), _root, L"a");
    const unsigned int child = tree::primitive(store(), L"a");
    const std::string before = hex(store(), child);
    const std::string listed = hex(store(), list());
    Root set(store(), _root);
    EXPECT_FALSE(set.add(child));
    EXPECT_EQ(hex(store(), child), before);
    EXPECT_EQ(hex(store(), list()), listed);
    EXPECT_EQ(set.find(L"a"), taken);
    EXPECT_EQ(set.items(), 1u);
}

TEST_P(Add, RefusesAChildThatItHas) {
    const unsigned int child = tree::addContainer(store(), _root, L"a");
    Root set(store(), _root);
    EXPECT_FALSE(set.add(child));
    EXPECT_EQ(set.items(), 1u);
}

TEST_P(Add, RefusesWhatCannotBeAChild) {
    Root set(store(), _root);
    const unsigned int roots = tree::root(store());
    const unsigned int offsets = data::Record::Offsets(store()).offset();
    const unsigned int locale = data::Record::Locale(store()).offset();
    const unsigned int unknown = makeRecord(store(), "M" + std::string(100, 'x'));
    const unsigned int cut = makeRecord(store(), std::string("\4\0\0\0\0", 5));
    for (const unsigned int offset : {roots, offsets, locale, unknown, cut, 777u, BADOFF}) {
        const std::string before = hex(store(), offset);
        EXPECT_FALSE(set.add(offset)) << offset;
        EXPECT_EQ(hex(store(), offset), before);
    }
    EXPECT_EQ(set.items(), 0u);
    EXPECT_EQ(list(), BADOFF);
}

TEST_P(Add, SeesOnlyTheNamesThatItKnew) {
    Root first(store(), _root);
    Root second(store(), _root);
    EXPECT_TRUE(first.add(tree::container(store(), L"a")));
    EXPECT_TRUE(second.add(tree::container(store(), L"a")));
    EXPECT_EQ(stored::children(store(), _root).size(), 2u);
}

TEST_P(Add, UsesTheListThatAnotherObjectHasMadeMeanwhile) {
    Root first(store(), _root);
    Root second(store(), _root);
    const unsigned int a = tree::container(store(), L"a");
    const unsigned int b = tree::container(store(), L"b");
    EXPECT_TRUE(first.add(a));
    EXPECT_TRUE(second.add(b));
    EXPECT_THAT(stored::children(store(), _root), ElementsAre(a, b));
}

TEST_P(Add, UsesTheListThatAnotherObjectHasMadeInThePlaceOfItsOwn) {
    tree::addContainer(store(), _root, L"old");
    Root first(store(), _root);
    Root second(store(), _root);
    second.clear();
    const unsigned int a = tree::container(store(), L"a");
    const unsigned int b = tree::container(store(), L"b");
    EXPECT_TRUE(second.add(a));
    EXPECT_TRUE(first.add(b));
    EXPECT_THAT(stored::children(store(), _root), ElementsAre(a, b));
}

TEST_P(Add, MakesAListInThePlaceOfWhatIsNone) {
    const unsigned int foreign = tree::container(store(), L"foreign");
    for (const unsigned int named : {foreign, 777u}) {
        stored::putWord(store(), _root, 14, named);
        const std::string before = hex(store(), named);
        const unsigned int child = tree::addContainer(store(), _root, L"a");
        EXPECT_EQ(hex(store(), named), before);
        EXPECT_THAT(stored::children(store(), _root), ElementsAre(child));
    }
}

TEST_P(Add, TakesAnItemFromAnotherOwnerWithoutAsking) {
    const unsigned int a = tree::addContainer(store(), _root, L"a");
    const unsigned int child = tree::addPrimitive(store(), a, L"p");
    Root(store(), _root).add(child);
    EXPECT_EQ(stored::word(store(), child, 1), _root);
    EXPECT_THAT(stored::children(store(), a), ElementsAre(child));
}

}  // namespace
