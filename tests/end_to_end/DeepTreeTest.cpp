#include <gtest/gtest.h>

#include <string>

#include "lumivard/platform/core.h"
#include "lumivard/platform/data.h"
#include "lumivard/platform/stores.h"
#include "tests/support/SmallStack.h"

// No operation's need of the stack grows with the depth of the data: a tree of 100,000 levels on a small stack.

namespace {

using namespace lumivard::platform;
using namespace lumivard::platform::data;
using test_support::onASmallStack;

constexpr int kLevels = 100'000;

std::string deepDocument() {
    std::string document = "<root version=\"1\" name=\"root\">";
    for (int i = 0; i < kLevels; ++i) document += "<group name=\"g\" class=\"\">";
    for (int i = 0; i < kLevels; ++i) document += "</group>";
    return document + "</root>";
}

TEST(DeepTree, IsReadWrittenAndDestroyed) {
    onASmallStack([] {
        const auto store = stores::memory();
        core::io::MemoryReader reader(deepDocument());
        format::xml::IXMLFrontEnd::parse(store.get(), &reader, nullptr, nullptr, nullptr);

        core::io::MemoryWriter first;
        format::xml::IXMLFrontEnd::serialize(store.get(), &first, nullptr, 0);
        std::size_t levels = 0;
        for (auto at = first.bytes().find("<group"); at != std::string::npos;
             at = first.bytes().find("<group", at + 1)) {
            ++levels;
        }
        EXPECT_EQ(levels, static_cast<std::size_t>(kLevels));

        const auto second = stores::memory();
        core::io::MemoryReader again(first.bytes());
        format::xml::IXMLFrontEnd::parse(second.get(), &again, nullptr, nullptr, nullptr);
        core::io::MemoryWriter rewritten;
        format::xml::IXMLFrontEnd::serialize(second.get(), &rewritten, nullptr, 0);
        EXPECT_EQ(rewritten.bytes(), first.bytes());

        const auto top = structure::IContainerFrontEnd::find(store.get(), L"g");
        ASSERT_TRUE(top);
        EXPECT_TRUE(top->destroy(L"g"));
        EXPECT_FALSE(top->has(L"g"));
    });
}

TEST(DeepTree, IsWalkedAndHeldBackByItsInnermostObject) {
    onASmallStack([] {
        const auto store = stores::memory();
        auto top = structure::IContainerFrontEnd::toplevel(store.get(), L"g");
        auto inner = top->create(structure::IContainer::kGroup, L"g", nullptr);
        for (int i = 2; i < kLevels; ++i) inner = inner->create(structure::IContainer::kGroup, L"g", nullptr);
        const std::string path = inner->path().string();
        EXPECT_EQ(path.size(), 2u * kLevels - 1);
        EXPECT_TRUE(structure::IContainerFrontEnd::find(store.get(), inner->path()));
        EXPECT_FALSE(top->destroy(L"g"));
        inner.reset();
        EXPECT_TRUE(top->destroy(L"g"));
    });
}

}  // namespace
