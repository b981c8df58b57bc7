// What a set knows of its children.
#include "metadata/Set.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "lumivard/platform/store_contract/FailingStore.h"
#include "lumivard/platform/store_contract/LoggingStore.h"
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
using data::Metadata::Set;
using data::Structural::Container;
using lumivard::platform::store_contract::FailingStore;
using lumivard::platform::store_contract::LoggingStore;
using lumivard::platform::test_support::makeRecord;
using lumivard::platform::test_support::StoreTest;
using testing::ElementsAre;
using testing::IsEmpty;

using lumivard::platform::test_support::BADOFF;

class MetadataSet : public StoreTest {
protected:
    unsigned int list() { return stored::word(store(), _root, 14); }

    const unsigned int _root = tree::root(store());
};
LVP_ON_EACH_STORE(MetadataSet);

TEST_P(MetadataSet, IsEmptyWithoutAList) {
    const Root set(store(), _root);
    EXPECT_EQ(set.items(), 0u);
    EXPECT_EQ(set.find(L"a"), BADOFF);
    EXPECT_EQ(set.at(0), BADOFF);
    EXPECT_THAT(set.entries(), IsEmpty());
}

TEST_P(MetadataSet, FindsAChildOfEachKindByItsName) {
    const unsigned int c = tree::addContainer(store(), _root, L"c");
    const unsigned int t = tree::addTable(store(), _root, L"t");
    const unsigned int p = tree::addPrimitive(store(), _root, L"p");
    const Root set(store(), _root);
    EXPECT_EQ(set.find(L"c"), c);
    EXPECT_EQ(set.find(L"t"), t);
    EXPECT_EQ(set.find(L"p"), p);
    EXPECT_EQ(set.items(), 3u);
    EXPECT_THAT(set.entries(), ElementsAre(c, t, p));
}

TEST_P(MetadataSet, FindsNothingElse) {
    const unsigned int a = tree::addContainer(store(), _root, L"a");
    tree::addContainer(store(), a, L"b");
    const Root set(store(), _root);
    for (const wchar_t* name : {L"b", L"a.b", L"A", L"", L"a ", L"root"}) EXPECT_EQ(set.find(name), BADOFF) << name;
    EXPECT_EQ(set.find(nullptr), BADOFF);
}

TEST_P(MetadataSet, FindsEmptyNamesAndNamesThatSpellLikeAReservedKey) {
    for (const wchar_t* name : {L"", L"$$$$$_____empty_key", L"$$$$$_____deleted_key", L"a.b"}) {
        const unsigned int offset = tree::addContainer(store(), _root, name);
        EXPECT_EQ(Root(store(), _root).find(name), offset);
    }
}

TEST_P(MetadataSet, FindsWithoutTheStore) {
    tree::addContainer(store(), _root, L"a");
    LoggingStore log(*store());
    const Root set(&log, _root);
    log.clearLog();
    set.find(L"a");
    set.find(L"b");
    set.items();
    EXPECT_THAT(log.log(), IsEmpty());
}

TEST_P(MetadataSet, GivesTheStoredListByPosition) {
    const unsigned int a = tree::addContainer(store(), _root, L"a");
    Root set(store(), _root);
    const unsigned int b = tree::addContainer(store(), _root, L"b");
    EXPECT_EQ(set.items(), 1u) << "what the index knows";
    EXPECT_EQ(set.at(0), a);
    EXPECT_EQ(set.at(1), b) << "what the store has";
    EXPECT_EQ(set.at(2), BADOFF);
    EXPECT_EQ(set.at(0xFFFFFFFFu), BADOFF);
    EXPECT_THAT(set.entries(), ElementsAre(a)) << "as many as the index knows";
}

TEST_P(MetadataSet, PassesOverRecordsThatAreNoChildren) {
    tree::addContainer(store(), _root, L"a");
    const unsigned int foreign = stored::makeList(store());
    stored::enlist(store(), _root, foreign);
    stored::enlist(store(), _root, _root);
    stored::enlist(store(), _root, 777);
    stored::enlist(store(), _root, BADOFF);
    const unsigned int b = tree::addContainer(store(), _root, L"b");
    const Root set(store(), _root);
    EXPECT_EQ(set.items(), 2u);
    EXPECT_EQ(set.find(L"b"), b);
    EXPECT_EQ(set.at(1), foreign);
    EXPECT_EQ(set.entries().size(), 2u);
}

TEST_P(MetadataSet, KnowsTheFirstOfTwoChildrenOfOneName) {
    const unsigned int first = tree::addContainer(store(), _root, L"a");
    const unsigned int second = tree::container(store(), L"a");
    stored::enlist(store(), _root, second);
    const Root set(store(), _root);
    EXPECT_EQ(set.items(), 1u);
    EXPECT_EQ(set.find(L"a"), first);
}

TEST_P(MetadataSet, DoesNotSeeWhatIsAddedThroughAnotherObjectBeforeItsUpdate) {
    Root set(store(), _root);
    const unsigned int a = tree::addContainer(store(), _root, L"a");
    EXPECT_EQ(set.find(L"a"), BADOFF);
    EXPECT_EQ(set.at(0), BADOFF) << "it knew of no list";
    set.update();
    EXPECT_EQ(set.find(L"a"), a);
    EXPECT_EQ(set.at(0), a);
}

TEST_P(MetadataSet, ForgetsAtItsUpdateWhatIsGoneOrRenamed) {
    tree::addContainer(store(), _root, L"a");
    const unsigned int b = tree::addContainer(store(), _root, L"b");
    Root set(store(), _root);
    {
        Root another(store(), _root);
        EXPECT_TRUE(another.remove(L"a"));
        EXPECT_TRUE(another.rename(L"b", L"c"));
    }
    EXPECT_NE(set.find(L"a"), BADOFF);
    EXPECT_EQ(set.find(L"b"), b);
    set.update();
    EXPECT_EQ(set.find(L"a"), BADOFF);
    EXPECT_EQ(set.find(L"b"), BADOFF);
    EXPECT_EQ(set.find(L"c"), b);
    EXPECT_EQ(set.items(), 1u);
}

TEST_P(MetadataSet, StaysAsItWasWhereAReadOfItsUpdateFails) {
    const unsigned int a = tree::addContainer(store(), _root, L"a");
    const unsigned int b = tree::addContainer(store(), _root, L"b");
    FailingStore failing(*store());
    Root set(&failing, _root);
    const unsigned int c = tree::addContainer(store(), _root, L"c");
    constexpr int kReads = 4;  // at least: the record, the list, the children
    for (int number = 0; number < kReads; ++number) {
        failing.failAfter(number, FailingStore::kRead, FailingStore::tTimes::kOnce);
        EXPECT_THROW(set.update(), std::runtime_error) << number;
        EXPECT_EQ(set.find(L"a"), a);
        EXPECT_EQ(set.find(L"b"), b);
        EXPECT_EQ(set.find(L"c"), BADOFF);
        EXPECT_EQ(set.items(), 2u);
    }
    failing.goOn();
    set.update();
    EXPECT_EQ(set.find(L"c"), c);
}

TEST_P(MetadataSet, IsPopulatedLateWhenOpenedLazily) {
    const unsigned int c = tree::addContainer(store(), _root, L"c");
    const unsigned int p = tree::addPrimitive(store(), c, L"p");
    Container set(store(), c, true);
    EXPECT_EQ(set.items(), 0u);
    EXPECT_EQ(set.at(0), p);
    set.populate();
    EXPECT_EQ(set.find(L"p"), p);
    set.populate();
    EXPECT_EQ(set.items(), 1u);
}

TEST_P(MetadataSet, WritesNothingWhenItGoes) {
    tree::addContainer(store(), _root, L"a");
    LoggingStore log(*store());
    { const Root set(&log, _root); }
    EXPECT_THAT(log.updates(true), IsEmpty());
}

TEST_P(MetadataSet, HasNoChildrenInAListThatIsNone) {
    const unsigned int foreign = tree::addPrimitive(store(), _root, L"p");
    for (const unsigned int list : {foreign, _root, 777u, BADOFF}) {
        stored::putWord(store(), _root, 14, list);
        const Root set(store(), _root);
        EXPECT_EQ(set.items(), 0u);
        EXPECT_EQ(set.at(0), BADOFF);
        EXPECT_THAT(set.entries(), IsEmpty());
    }
}

TEST_P(MetadataSet, HasNoChildrenInAListThatIsCutShort) {
    for (const unsigned int size : {1u, 2u, 3u, 4u, 5u, 7u}) {
        stored::putWord(store(), _root, 14, makeRecord(store(), std::string("\3\0\0\0\0\0\0", 7).substr(0, size)));
        const Root set(store(), _root);
        EXPECT_EQ(set.items(), 0u) << size;
        EXPECT_EQ(set.at(0), BADOFF) << size;
    }
}

class ChildrenOfAList : public MetadataSet {};
LVP_ON_EACH_STORE(ChildrenOfAList);

TEST_P(ChildrenOfAList, AreWhatASetOpenedOnItWouldKnow) {
    const unsigned int a = tree::addContainer(store(), _root, L"a");
    stored::enlist(store(), _root, stored::makeList(store()));
    stored::enlist(store(), _root, tree::container(store(), L"a"));
    stored::enlist(store(), _root, a);
    const unsigned int b = tree::primitive(store(), L"b");
    stored::enlist(store(), _root, b);
    EXPECT_THAT(Set::children(store(), list()), ElementsAre(a, b));
    EXPECT_THAT(Set::children(store(), BADOFF), IsEmpty());
}

TEST_P(ChildrenOfAList, AreFoundByName) {
    const unsigned int a = tree::addContainer(store(), _root, L"a");
    stored::enlist(store(), _root, tree::container(store(), L"a"));
    EXPECT_EQ(Set::search(store(), list(), L"a"), a);
    EXPECT_EQ(Set::search(store(), list(), L"b"), BADOFF);
    EXPECT_EQ(Set::search(store(), BADOFF, L"a"), BADOFF);
}

}  // namespace
