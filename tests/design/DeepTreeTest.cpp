// Trees far deeper than the stack of a thread.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "lumivard/platform/stores.h"
#include "record/tType.h"
#include "schema/Finder.h"
#include "tests/support/RecordHelpers.h"
#include "tests/support/SmallStack.h"
#include "tests/support/TreeHelpers.h"

namespace {

namespace data = lumivard::platform::data;
namespace stored = lumivard::platform::test_support::stored;
namespace stores = lumivard::platform::stores;
namespace tree = lumivard::platform::test_support::tree;
using data::Metadata::Root;
using data::Structural::Container;
using lumivard::platform::test_support::onASmallStack;

constexpr unsigned int kDeep = 100000;

/// A root with 100,000 containers "x", each in the one before, and a primitive "p" in the last.
class DeepTree : public testing::Test {
protected:
    DeepTree() {
        tree::root(store());
        unsigned int owner = 0;
        for (unsigned int level = 0; level < kDeep; ++level) {
            owner = tree::addContainer(store(), owner, L"x");
            if (level == 0) _top = owner;
        }
        _last = owner;
        _leaf = tree::addPrimitive(store(), owner, L"p");
    }

    lumivard::platform::core::storage::datastore::IDataStore* store() { return _store.get(); }

    const std::unique_ptr<lumivard::platform::core::storage::datastore::IDataStore> _store = stores::memory();
    unsigned int _top = 0;
    unsigned int _last = 0;
    unsigned int _leaf = 0;
};

TEST_F(DeepTree, IsAskedWhetherItIsOpen) {
    onASmallStack([&] {
        Root root(store(), 0u);
        EXPECT_TRUE(root.unreferenced());
        const data::Design::Primitive open(store(), _leaf);
        EXPECT_FALSE(root.unreferenced());
        EXPECT_FALSE(root.remove(L"x"));
    });
}

TEST_F(DeepTree, IsDestroyed) {
    onASmallStack([&] { EXPECT_TRUE(Root(store(), 0u).remove(L"x")); });
    for (const unsigned int offset : {_top, _last, _leaf}) EXPECT_EQ(store()->size(offset), 0u);
}

TEST_F(DeepTree, IsCleared) {
    onASmallStack([&] { Root(store(), 0u).clear(); });
    for (const unsigned int offset : {_top, _last, _leaf}) EXPECT_EQ(store()->size(offset), 0u);
}

TEST_F(DeepTree, IsCopied) {
    const auto copies = stores::memory();
    tree::root(copies.get());
    onASmallStack([&] { tree::add(copies.get(), 0, Container(store(), _top, false).clone(copies.get())); });
    unsigned int depth = 0;
    unsigned int offset = 0;
    while (data::Record::peek(copies.get(), offset) != data::Record::kPrimitive) {
        const auto children = stored::children(copies.get(), offset);
        ASSERT_EQ(children.size(), 1u);
        ASSERT_EQ(stored::word(copies.get(), children[0], 1), offset);
        offset = children[0];
        ++depth;
    }
    EXPECT_EQ(depth, kDeep + 1);
}

TEST_F(DeepTree, HasAPathThatIsFollowed) {
    std::wstring path;
    onASmallStack([&] {
        data::Design::Primitive(store(), _leaf).path(path);
        EXPECT_EQ(data::Schema::Finder(store(), 0, path.c_str()).offset, _leaf);
    });
    EXPECT_EQ(path.size(), 2 * kDeep + 1);
    EXPECT_EQ(path.substr(path.size() - 5), L"x.x.p");
}

TEST_F(DeepTree, IsShownToTheTop) {
    for (unsigned int offset = _leaf; offset != 0; offset = stored::word(store(), offset, 1)) {
        stored::putByte(store(), offset, 13, data::Record::kHidden);
    }
    onASmallStack([&] { data::Design::Primitive(store(), _leaf).show(); });
    EXPECT_EQ(stored::byte(store(), _top, 13), 0);
    EXPECT_EQ(stored::byte(store(), _leaf, 13), 0);
}

}  // namespace
