// A node, group or link.
#include "design/Container.h"

#include <gtest/gtest.h>

#include <string>

#include "lumivard/platform/store_contract/LoggingStore.h"
#include "record/Container.h"
#include "tests/support/Offsets.h"
#include "tests/support/RecordHelpers.h"
#include "tests/support/StoreFixture.h"
#include "tests/support/TreeHelpers.h"

namespace {

namespace data = lumivard::platform::data;
namespace stored = lumivard::platform::test_support::stored;
namespace tree = lumivard::platform::test_support::tree;
using data::Structural::Container;
using lumivard::platform::store_contract::LoggingStore;
using lumivard::platform::test_support::hex;
using lumivard::platform::test_support::hexText;
using lumivard::platform::test_support::StoreTest;
using lumivard::platform::test_support::wide;
using tree::IContainer;

using lumivard::platform::test_support::BADOFF;

class StructuralContainer : public StoreTest {
protected:
    const unsigned int _root = tree::root(store());
};
LVP_ON_EACH_STORE(StructuralContainer);

TEST_P(StructuralContainer, IsEmptyWhenNew) {
    const Container item(store(), IContainer::kLink, L"c");
    EXPECT_STREQ(item.tag(), L"c");
    EXPECT_EQ(item.type(), IContainer::kLink);
    EXPECT_EQ(item.base(), nullptr);
    EXPECT_EQ(item.info(), nullptr);
    EXPECT_EQ(item.items(), 0u);
}

TEST_P(StructuralContainer, IsStoredLikeThis) {
    const Container item(store(), IContainer::kLink, L"c");
    EXPECT_EQ(hex(store(), item.offset()),
              "04"
              "ffffffff"
              "01000000"
              "ffffffff"
              "00"  // the entity header, with one object
              "ffffffff"
              "02"  // children, kind
              "08000000"
              "00000000"
              "00000000"
              "00" +  // lengths, padding
                  hexText(L"c"));
}

TEST_P(StructuralContainer, WritesItsTypeAsAChangeAndItsCountAsBookkeeping) {
    LoggingStore log(*store());
    const Container item(&log, IContainer::kLink, L"c");
    EXPECT_EQ(log.updates(true).size(), 1u);
    EXPECT_EQ(log.updates(false).size(), 1u);
}

TEST_P(StructuralContainer, KeepsAnyType) {
    for (const int type : {0, 1, 2, 3, 77, 255}) {
        const unsigned int offset = tree::container(store(), L"c", static_cast<IContainer::tType>(type));
        EXPECT_EQ(stored::byte(store(), offset, 18), type);
        EXPECT_EQ(Container(store(), offset, false).type(), type);
    }
}

TEST_P(StructuralContainer, GivesAllItsFieldsBackWhenOpened) {
    const unsigned int offset = tree::addContainer(store(), _root, L"c");
    const unsigned int child = tree::addPrimitive(store(), offset, L"p");
    data::Record::Container(store(), offset).arrays(23, wide(L"a;b").data(), wide(L"a;b").size());
    {
        Container item(store(), offset, false);
        item.info(L"target");
        item.localize(L"x", L"en");
    }
    Container item(store(), offset, false);
    EXPECT_STREQ(item.tag(), L"c");
    EXPECT_EQ(item.parent(), _root);
    EXPECT_EQ(item.type(), IContainer::kGroup);
    EXPECT_STREQ(item.base(), L"a;b");
    EXPECT_STREQ(item.info(), L"target");
    EXPECT_EQ(item.find(L"p"), child);
    EXPECT_EQ(item.locales(), 1u);
}

TEST_P(StructuralContainer, KnowsNoChildrenWhenOpenedLazily) {
    const unsigned int offset = tree::container(store(), L"c");
    const unsigned int child = tree::addPrimitive(store(), offset, L"p");
    const Container item(store(), offset, true);
    EXPECT_EQ(item.items(), 0u);
    EXPECT_EQ(item.find(L"p"), BADOFF);
    EXPECT_EQ(item.at(0), child);
}

TEST_P(StructuralContainer, KeepsATextAndLosesItToNothing) {
    Container item(store(), IContainer::kLink, L"c");
    item.info(L"x");
    EXPECT_STREQ(item.info(), L"x");
    EXPECT_EQ(stored::word(store(), item.offset(), 27), 8u);
    item.info(L"a longer text");
    EXPECT_EQ(stored::bytes(store(), item.offset()).substr(32), wide(L"c") + wide(L"a longer text"));
    item.info(nullptr);
    EXPECT_EQ(item.info(), nullptr);
    EXPECT_EQ(stored::word(store(), item.offset(), 27), 0u);
    EXPECT_EQ(stored::bytes(store(), item.offset()).substr(32), wide(L"c"));
}

TEST_P(StructuralContainer, TellsOfNoTextThatIsEmpty) {
    Container item(store(), IContainer::kLink, L"c");
    item.info(L"");
    EXPECT_EQ(item.info(), nullptr);
    EXPECT_EQ(stored::word(store(), item.offset(), 27), 4u);
    EXPECT_EQ(Container(store(), item.offset(), false).info(), nullptr);
}

TEST_P(StructuralContainer, KeepsItsCountThroughChangesOfItsText) {
    Container item(store(), IContainer::kLink, L"c");
    const Container another(store(), item.offset(), false);
    item.info(L"x");
    EXPECT_EQ(stored::refs(store(), item.offset()), 2u);
    EXPECT_EQ(another.info(), nullptr) << "what was read at the opening stays";
}

}  // namespace
