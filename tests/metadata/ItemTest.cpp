// What every item is to its record.
#include "metadata/Item.h"

#include <gtest/gtest.h>

#include "lumivard/platform/store_contract/FailingStore.h"
#include "lumivard/platform/store_contract/LoggingStore.h"
#include "record/Entity.h"
#include "tests/support/Offsets.h"
#include "tests/support/RecordHelpers.h"
#include "tests/support/StoreFixture.h"
#include "tests/support/TreeHelpers.h"

namespace {

namespace data = lumivard::platform::data;
namespace stored = lumivard::platform::test_support::stored;
namespace tree = lumivard::platform::test_support::tree;
using data::Design::Primitive;
using data::Design::Table;
using data::Metadata::Root;
using data::Structural::Container;
using lumivard::platform::store_contract::FailingStore;
using lumivard::platform::store_contract::LoggingStore;
using lumivard::platform::test_support::hex;
using lumivard::platform::test_support::StoreTest;

using lumivard::platform::test_support::BADOFF;

class Item : public StoreTest {};
LVP_ON_EACH_STORE(Item);

TEST_P(Item, KnowsItsStoreItsPlaceItsNameAndItsOwner) {
    const unsigned int root = tree::root(store());
    const unsigned int table = tree::addTable(store(), root, L"t");
    const unsigned int inner = tree::addPrimitive(store(), table, L"p");
    const Primitive item(store(), inner);
    EXPECT_EQ(item.store(), store());
    EXPECT_EQ(item.offset(), inner);
    EXPECT_EQ(item.parent(), table);
    EXPECT_STREQ(item.tag(), L"p");
}

TEST_P(Item, HasNoOwnerBeforeItIsAdded) {
    tree::root(store());
    const Container item(store(), tree::IContainer::kNode, L"c");
    EXPECT_EQ(item.parent(), BADOFF);
    Root root(store(), 0u);
    EXPECT_TRUE(root.add(item.offset()));
    EXPECT_EQ(item.parent(), BADOFF) << "what was read at the opening stays";
    EXPECT_EQ(stored::word(store(), item.offset(), 1), 0u);
}

TEST_P(Item, CountsItselfInItsRecordAsLongAsItLives) {
    const unsigned int root = tree::root(store());
    const unsigned int container = tree::addContainer(store(), root, L"c");
    const unsigned int table = tree::addTable(store(), root, L"t");
    const unsigned int primitive = tree::addPrimitive(store(), root, L"p");
    {
        const Root r(store(), root);
        const Container c(store(), container, false);
        const Container again(store(), container, true);
        const Table t(store(), table, false);
        const Primitive p(store(), primitive);
        EXPECT_EQ(stored::refs(store(), root), 1u);
        EXPECT_EQ(stored::refs(store(), container), 2u);
        EXPECT_EQ(stored::refs(store(), table), 1u);
        EXPECT_EQ(stored::refs(store(), primitive), 1u);
    }
    for (const unsigned int offset : {root, container, table, primitive}) EXPECT_EQ(stored::refs(store(), offset), 0u);
}

TEST_P(Item, CountsItselfFromItsMaking) {
    const Root root(store(), L"root");
    const Container container(store(), tree::IContainer::kLink, L"c");
    const Table table(store(), L"t");
    const Primitive primitive(store(), data::metadata::kBool, L"p");
    for (const unsigned int offset : {root.offset(), container.offset(), table.offset(), primitive.offset()}) {
        EXPECT_EQ(stored::refs(store(), offset), 1u);
    }
}

TEST_P(Item, LeavesItsRecordAsItWasAndTellsTheStoreOfNoChange) {
    const unsigned int root = tree::root(store());
    const unsigned int table = tree::addTable(store(), root, L"t");
    tree::addPrimitive(store(), table, L"p");
    const std::string before = hex(store(), table);
    LoggingStore log(*store());
    { const Table item(&log, table, false); }
    EXPECT_EQ(hex(store(), table), before);
    EXPECT_EQ(log.updates(false).size(), 2u);
    EXPECT_TRUE(log.updates(true).empty());
}

TEST_P(Item, DoesNotCountItselfInTheRecordsBelow) {
    const unsigned int root = tree::root(store());
    const unsigned int child = tree::addContainer(store(), root, L"c");
    const Root item(store(), root);
    EXPECT_EQ(stored::refs(store(), child), 0u);
}

TEST_P(Item, SetsAndClearsFlagsInTheStore) {
    const unsigned int offset = tree::primitive(store(), L"p");
    Primitive item(store(), offset);
    EXPECT_EQ(item.flags(), 0);
    item.on(0x05);
    EXPECT_EQ(stored::byte(store(), offset, 13), 0x05);
    item.on(0x82);
    EXPECT_EQ(item.flags(), 0x87);
    item.off(0x06);
    EXPECT_EQ(item.flags(), 0x81);
    EXPECT_EQ(stored::byte(store(), offset, 13), 0x81);
    item.off(0xFF);
    EXPECT_EQ(item.flags(), 0);
}

TEST_P(Item, ReadsItsFlagsEachTime) {
    const unsigned int offset = tree::container(store(), L"c");
    Container first(store(), offset, false);
    Container second(store(), offset, false);
    second.on(data::Record::kOptional);
    EXPECT_EQ(first.flags(), data::Record::kOptional);
}

TEST_P(Item, WritesItsFlagsAsAChangeAndKeepsTheCount) {
    const unsigned int offset = tree::container(store(), L"c");
    LoggingStore log(*store());
    Container item(&log, offset, false);
    log.clearLog();
    item.on(0x01);
    item.off(0x01);
    EXPECT_EQ(log.updates(true).size(), 2u);
    EXPECT_TRUE(log.updates(false).empty());
    EXPECT_EQ(stored::refs(store(), offset), 1u);
}

TEST_P(Item, LetsNoFailureOfTheStoreOutOfItsDestructor) {
    const unsigned int offset = tree::container(store(), L"c");
    FailingStore refusing(*store());
    {
        Container item(&refusing, offset, false);
        item.localize(L"text", L"en");
        refusing.failAfter(0, FailingStore::kAllChanges);
    }
    EXPECT_EQ(stored::refs(store(), offset), 1u) << "a count that cannot be given back stays";
    EXPECT_EQ(stored::word(store(), offset, 9), BADOFF);
}

TEST_P(Item, CountsNothingWhenItCannotBeOpened) {
    const unsigned int offset = tree::container(store(), L"c");
    FailingStore refusing(*store());
    refusing.failAfter(0, FailingStore::kAllChanges);
    EXPECT_THROW(Container(&refusing, offset, false), std::runtime_error);
    refusing.failAfter(0, FailingStore::kAllChanges | FailingStore::kRead);
    EXPECT_THROW(Primitive(&refusing, offset), std::runtime_error);
    EXPECT_EQ(stored::refs(store(), offset), 0u);
}

}  // namespace
