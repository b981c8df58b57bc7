// The set at the top of a store.
#include "metadata/Root.h"

#include <gtest/gtest.h>

#include "record/Root.h"
#include "tests/support/Offsets.h"
#include "tests/support/RecordHelpers.h"
#include "tests/support/StoreFixture.h"
#include "tests/support/TreeHelpers.h"

namespace {

namespace data = lumivard::platform::data;
namespace stored = lumivard::platform::test_support::stored;
namespace tree = lumivard::platform::test_support::tree;
using data::Metadata::Root;
using lumivard::platform::test_support::hex;
using lumivard::platform::test_support::StoreTest;

using lumivard::platform::test_support::BADOFF;

class MetadataRoot : public StoreTest {};
LVP_ON_EACH_STORE(MetadataRoot);

TEST_P(MetadataRoot, StandsAtOffset0OfANewStore) {
    {
        const Root root(store(), L"root");
        EXPECT_EQ(root.offset(), 0u);
        EXPECT_STREQ(root.tag(), L"root");
        EXPECT_EQ(root.parent(), BADOFF);
        EXPECT_EQ(root.items(), 0u);
        EXPECT_EQ(stored::refs(store(), 0), 1u);
    }
    EXPECT_EQ(stored::refs(store(), 0), 0u);
}

TEST_P(MetadataRoot, LeavesExactlyARootRecord) {
    { const Root root(store(), L"name"); }
    { const data::Record::Root record(other(), L"name"); }
    EXPECT_EQ(hex(store(), 0), hex(other(), 0));
    EXPECT_EQ(store()->version(), 0u);
}

TEST_P(MetadataRoot, KnowsItsChildrenOnceItIsOpened) {
    tree::root(store(), L"name");
    const unsigned int child = tree::addContainer(store(), 0, L"c");
    Root root(store(), 0u);
    EXPECT_STREQ(root.tag(), L"name");
    EXPECT_EQ(root.find(L"c"), child);
    EXPECT_EQ(root.items(), 1u);
}

TEST_P(MetadataRoot, MayBeMadeInAStoreThatHasOne) {
    tree::root(store());
    const Root second(store(), L"second");
    EXPECT_NE(second.offset(), 0u);
    EXPECT_STREQ(Root(store(), 0u).tag(), L"root");
    EXPECT_STREQ(Root(store(), second.offset()).tag(), L"second");
}

TEST_P(MetadataRoot, MayBeOpenedSeveralTimesEachWithItsOwnIndex) {
    tree::root(store());
    Root first(store(), 0u);
    Root second(store(), 0u);
    EXPECT_EQ(stored::refs(store(), 0), 2u);
    const unsigned int child = tree::container(store(), L"c");
    EXPECT_TRUE(first.add(child));
    EXPECT_EQ(second.find(L"c"), BADOFF);
    second.update();
    EXPECT_EQ(second.find(L"c"), child);
}

TEST_P(MetadataRoot, HasLocalizedNamesLikeAnyItem) {
    tree::root(store());
    { Root(store(), 0u).localize(L"Wurzel", L"de"); }
    Root root(store(), 0u);
    EXPECT_EQ(root.locales(), 1u);
    EXPECT_EQ(root.localize(L"de"), 0u);
}

TEST_P(MetadataRoot, StandsOverAContainerOrATableAsWell) {
    tree::container(store(), L"top");
    const unsigned int inner = tree::addPrimitive(store(), 0, L"p");
    {
        Root root(store(), 0u);
        EXPECT_STREQ(root.tag(), L"top");
        EXPECT_EQ(root.find(L"p"), inner);
        EXPECT_TRUE(root.add(tree::container(store(), L"c")));
    }
    EXPECT_EQ(stored::refs(store(), 0), 0u);
    EXPECT_EQ(data::Structural::Container(store(), 0, false).items(), 2u);

    tree::table(other(), L"top");
    tree::addPrimitive(other(), 0, L"p");
    EXPECT_EQ(Root(other(), 0u).items(), 1u);
}

TEST_P(MetadataRoot, HasNoChildrenOverAPrimitive) {
    tree::primitive(store(), L"p");
    const Root root(store(), 0u);
    EXPECT_EQ(root.items(), 0u);
    EXPECT_EQ(root.at(0), BADOFF);
}

}  // namespace
