#include <gtest/gtest.h>

#include <string>

#include "lumivard/platform/core.h"
#include "lumivard/platform/data.h"
#include "lumivard/platform/stores.h"
#include "tests/support/TemporaryFolder.h"

// One container of 100,000 children whose names begin alike.

namespace {

using namespace lumivard::platform;
using namespace lumivard::platform::data;

constexpr int kChildren = 100'000;

std::wstring itemName(int number) {
    const std::wstring digits = std::to_wstring(number);
    return L"item_" + std::wstring(6 - digits.size(), L'0') + digits;
}

TEST(WideContainer, IsBuiltReopenedWalkedAndLookedThrough) {
    const TemporaryFolder folder;
    {
        const auto store = stores::file(folder / "wide.lvp", stores::tMode::kWrite);
        const auto top = structure::IContainerFrontEnd::toplevel(store.get(), L"top");
        for (int i = 0; i < kChildren; ++i) {
            ASSERT_TRUE(top->create(structure::IContainer::kNode, itemName(i).c_str(), nullptr));
        }
        store->flush();
    }
    const auto store = stores::file(folder / "wide.lvp", stores::tMode::kRead);
    const auto top = structure::IContainerFrontEnd::find(store.get(), L"top");
    const auto children = top->containers();
    for (int i = 0; i < kChildren; ++i) {
        const auto child = children->current();
        ASSERT_TRUE(child);
        ASSERT_EQ(std::wstring(child->tag()), itemName(i));
        ASSERT_TRUE(top->has(itemName(i).c_str()));
        ASSERT_EQ(children->next(), i + 1 < kChildren);
    }
}

TEST(WideContainer, OfPropertiesIsWrittenAndReadAsADocument) {
    const auto store = stores::memory();
    const auto table = structure::IContainerFrontEnd::toplevel(store.get(), L"top")->create(L"table", nullptr);
    for (int i = 0; i < kChildren; ++i) {
        const auto value = table->create(itemName(i).c_str(), metadata::kInt32, units::kNoUnit);
        ASSERT_TRUE(value->set(&i, 0, 1));
    }
    core::io::MemoryWriter writer;
    format::xml::IXMLFrontEnd::serialize(store.get(), &writer, nullptr, 0);

    const auto second = stores::memory();
    core::io::MemoryReader reader(writer.bytes());
    format::xml::IXMLFrontEnd::parse(second.get(), &reader, nullptr, nullptr, nullptr);
    const auto top = structure::IContainerFrontEnd::find(second.get(), L"top");
    const auto property = top->property(L"table");
    auto* readTable = metadata::ITable::to(property.get());
    ASSERT_NE(readTable, nullptr);
    ASSERT_EQ(readTable->items(), static_cast<unsigned int>(kChildren));
    const auto rows = readTable->properties();
    for (int i = 0; i < kChildren; ++i) {
        const auto row = rows->current();
        int value = -1;
        ASSERT_TRUE(metadata::IPrimitive::to(row.get())->get(&value, 0, 1));
        ASSERT_EQ(value, i);
        rows->next();
    }
}

}  // namespace
