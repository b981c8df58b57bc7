// Copies of trees far deeper than the stack of a thread.
#include <gtest/gtest.h>

#include <memory>

#include "tests/container/CopyFixture.h"
#include "tests/support/SmallStack.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::data::metadata::ISchemaLocator;

constexpr unsigned int kLevels = 20'000;

/// How many levels of first children are below an entity.
unsigned int depth(IDataStore* store, unsigned int offset) {
    unsigned int depth = 0;
    for (auto below = childrenOf(store, offset); !below.empty(); below = childrenOf(store, below.front())) ++depth;
    return depth;
}

/// "from.x" has 20,000 containers, each in the one before; "from.t" has as many tables.
class DeepCopy : public testing::Test {
protected:
    void SetUp() override {
        const auto from = IContainerFrontEnd::toplevel(store(), L"from");
        auto group = from->create(IContainer::kGroup, L"x", kNoSchema);
        auto table = from->create(L"t", kNoSchema);
        for (unsigned int level = 1; level < kLevels; ++level) {
            group = group->create(IContainer::kGroup, L"x", kNoSchema);
            table = table->create(L"t", kNoSchema);
        }
        for (IDataStore* each : {store(), other()}) IContainerFrontEnd::toplevel(each, L"to");
    }

    IDataStore* store() { return _store.get(); }
    IDataStore* other() { return _other.get(); }
    SharedPtr<IContainer> from() { return IContainerFrontEnd::find(store(), L"from"); }
    SharedPtr<IContainer> to() { return IContainerFrontEnd::find(store(), L"to"); }

    void expectCopied(IDataStore* target, const wchar_t* path) {
        EXPECT_EQ(kLevels - 1, depth(target, offsetOf(target, path)));
    }

private:
    std::unique_ptr<IDataStore> _store = lumivard::platform::stores::memory();
    std::unique_ptr<IDataStore> _other = lumivard::platform::stores::memory();
};

TEST_F(DeepCopy, IsMadeByCopy) {
    onASmallStack([&] { EXPECT_TRUE(to()->copy(from())); });
    expectCopied(store(), L"to.x");
    expectCopied(store(), L"to.t");
}

TEST_F(DeepCopy, IsMadeByClone) {
    onASmallStack([&] {
        EXPECT_TRUE(to()->clone(from()->container(L"x")));
        EXPECT_TRUE(to()->clone(from()->property(L"t")));
    });
    expectCopied(store(), L"to.x");
    expectCopied(store(), L"to.t");
}

TEST_F(DeepCopy, IsMadeByACloneToAPath) {
    onASmallStack([&] {
        EXPECT_TRUE(to()->clone(L"from.x", L"copy", true));
        EXPECT_TRUE(to()->clone(L"from.t", L"copy.t", true));
    });
    EXPECT_EQ(2u, stored::children(store(), offsetOf(store(), L"to.copy")).size());
    expectCopied(store(), L"to.copy");
    expectCopied(store(), L"to.copy.t");
}

TEST_F(DeepCopy, IsMadeByACloneToAStore) {
    onASmallStack([&] { EXPECT_TRUE(from()->container(L"x")->clone(other(), L"to.copy")); });
    expectCopied(other(), L"to.copy");
}

TEST_F(DeepCopy, OfASchemaIsTakenInAndCompared) {
    onASmallStack([&] {
        const auto locator = ISchemaLocator::make(store());
        const auto schema = locator->resolve(L"from.t");
        const auto owner = IContainerFrontEnd::find(other(), L"to");
        EXPECT_TRUE(owner->create(IContainer::kGroup, L"group", schema.get()));
        EXPECT_TRUE(owner->create(L"table", schema.get()));
        EXPECT_TRUE(owner->create(IContainer::kGroup, L"alike", kNoSchema)->clone(owner->property(L"table.t")));
        EXPECT_FALSE(owner->validates(L"alike", schema.get(), true));
        EXPECT_TRUE(owner->validates(L"alike", schema.get(), false));
    });
    expectCopied(other(), L"to.table");
    expectCopied(other(), L"to.group");
}

}  // namespace
