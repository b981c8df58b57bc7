// The showing of a hidden item.
#include <gtest/gtest.h>

#include "lumivard/platform/store_contract/LoggingStore.h"
#include "record/tType.h"
#include "tests/support/RecordHelpers.h"
#include "tests/support/StoreFixture.h"
#include "tests/support/TreeHelpers.h"

namespace {

namespace data = lumivard::platform::data;
namespace stored = lumivard::platform::test_support::stored;
namespace tree = lumivard::platform::test_support::tree;
using data::Design::Primitive;
using data::Record::kHidden;
using data::Record::kInherited;
using data::Record::kOptional;
using lumivard::platform::store_contract::LoggingStore;
using lumivard::platform::test_support::StoreTest;

/// The items "top", "outer", "inner" and "item", each in the one before, below a root.
class Show : public StoreTest {
protected:
    void flags(unsigned int offset, int bits) {
        stored::putByte(store(), offset, 13, static_cast<unsigned char>(bits));
    }
    int flags(unsigned int offset) { return stored::byte(store(), offset, 13); }

    void show(unsigned int offset) { Primitive(store(), offset).show(); }

    const unsigned int _root = tree::root(store());
    const unsigned int _top = tree::addContainer(store(), _root, L"top");
    const unsigned int _outer = tree::addContainer(store(), _top, L"outer");
    const unsigned int _inner = tree::addTable(store(), _outer, L"inner");
    const unsigned int _item = tree::addPrimitive(store(), _inner, L"item");
};
LVP_ON_EACH_STORE(Show);

TEST_P(Show, ClearsTheItemAndItsHiddenOwners) {
    for (const unsigned int offset : {_outer, _inner, _item}) flags(offset, kHidden);
    show(_item);
    for (const unsigned int offset : {_outer, _inner, _item}) EXPECT_EQ(flags(offset), 0);
}

TEST_P(Show, GoesOnFromAnItemThatIsNotHidden) {
    flags(_inner, kHidden);
    show(_item);
    EXPECT_EQ(flags(_inner), 0);
}

TEST_P(Show, EndsAtTheFirstOwnerThatIsNotHidden) {
    flags(_item, kHidden);
    flags(_inner, kHidden);
    flags(_top, kHidden);
    show(_item);
    EXPECT_EQ(flags(_item), 0);
    EXPECT_EQ(flags(_inner), 0);
    EXPECT_EQ(flags(_top), kHidden) << "above the container that is not hidden";
}

TEST_P(Show, LeavesTheOtherFlagsAlone) {
    flags(_item, kHidden | kInherited | kOptional);
    flags(_inner, kHidden | kInherited);
    show(_item);
    EXPECT_EQ(flags(_item), kInherited | kOptional);
    EXPECT_EQ(flags(_inner), kInherited);
}

TEST_P(Show, ReachesTheTopLevelAndNeverTheRoot) {
    for (const unsigned int offset : {_root, _top, _outer, _inner, _item}) flags(offset, kHidden);
    show(_item);
    EXPECT_EQ(flags(_top), 0);
    EXPECT_EQ(flags(_root), kHidden);
}

TEST_P(Show, NeverChangesAnItemWithoutAnOwner) {
    const unsigned int alone = tree::primitive(store(), L"alone");
    flags(alone, kHidden);
    show(alone);
    EXPECT_EQ(flags(alone), kHidden);
}

TEST_P(Show, WritesWhatItChangesAsAChangeAndNothingElse) {
    flags(_inner, kHidden);
    LoggingStore log(*store());
    Primitive item(&log, _item);
    log.clearLog();
    item.show();
    ASSERT_EQ(log.updates(true).size(), 1u);
    EXPECT_EQ(log.updates(true).front().offset, _inner);
    EXPECT_TRUE(log.updates(false).empty());
}

TEST_P(Show, EndsWhenTheOwnersComeRound) {
    for (const unsigned int offset : {_top, _outer, _inner, _item}) flags(offset, kHidden);
    stored::putWord(store(), _top, 1, _item);
    show(_item);
    for (const unsigned int offset : {_top, _outer, _inner, _item}) EXPECT_EQ(flags(offset), 0);

    stored::putWord(store(), _item, 1, _item);
    flags(_item, kHidden);
    show(_item);
    EXPECT_EQ(flags(_item), 0);
}

TEST_P(Show, EndsAtAnOwnerThatIsNotThere) {
    stored::putWord(store(), _item, 1, 777);
    flags(_item, kHidden);
    show(_item);
    EXPECT_EQ(flags(_item), 0);
}

}  // namespace
