// Sets of many children with names that begin alike.
#include <gtest/gtest.h>

#include <string>

#include "lumivard/platform/stores.h"
#include "tests/support/TreeHelpers.h"

namespace {

namespace data = lumivard::platform::data;
namespace stores = lumivard::platform::stores;
namespace tree = lumivard::platform::test_support::tree;
using data::Structural::Container;

constexpr unsigned int kMany = 20000;

/// "item_000042" for 42.
std::wstring name(unsigned int number) {
    const std::wstring digits = std::to_wstring(number);
    return L"item_" + std::wstring(6 - digits.size(), L'0') + digits;
}

TEST(ManyChildren, AreBuiltFoundThroughAndDestroyed) {
    const auto store = stores::memory();
    tree::root(store.get());
    const unsigned int owner = tree::addContainer(store.get(), 0, L"owner");
    {
        Container set(store.get(), owner, false);
        for (unsigned int i = 0; i < kMany; ++i) ASSERT_TRUE(set.add(tree::primitive(store.get(), name(i).c_str())));
        EXPECT_EQ(set.items(), kMany);
    }
    {
        Container set(store.get(), owner, false);
        ASSERT_EQ(set.items(), kMany);
        const auto entries = set.entries();
        ASSERT_EQ(entries.size(), kMany);
        for (unsigned int i = 0; i < kMany; ++i) {
            ASSERT_EQ(set.find(name(i).c_str()), entries[i]);
            ASSERT_EQ(set.at(i), entries[i]);
        }
        EXPECT_EQ(set.find(L"item_"), Container::BADOFF);
        EXPECT_FALSE(set.add(tree::primitive(store.get(), name(kMany / 2).c_str())));
        EXPECT_TRUE(set.unreferenced());
        EXPECT_TRUE(set.rename(name(7).c_str(), L"renamed"));
        EXPECT_TRUE(set.remove(name(8).c_str()));
        EXPECT_EQ(set.items(), kMany - 1);
    }
    const auto copies = stores::memory();
    tree::root(copies.get());
    const unsigned int copy = Container(store.get(), owner, false).clone(copies.get());
    EXPECT_EQ(Container(copies.get(), copy, false).items(), kMany - 1);
    EXPECT_TRUE(data::Metadata::Root(store.get(), 0u).remove(L"owner"));
    EXPECT_EQ(store->size(owner), 0u);
}

}  // namespace
