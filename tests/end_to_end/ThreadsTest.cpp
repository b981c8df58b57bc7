#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "lumivard/platform/core.h"
#include "lumivard/platform/data.h"
#include "lumivard/platform/stores.h"
#include "tests/support/TemporaryFolder.h"

namespace {

using namespace lumivard::platform;
using namespace lumivard::platform::data;

constexpr int kThreads = 8;

void inParallel(const std::function<void(int)>& work) {
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) threads.emplace_back(work, i);
    for (std::thread& thread : threads) thread.join();
}

std::string written(IDataStore* store) {
    core::io::MemoryWriter writer;
    format::xml::IXMLFrontEnd::serialize(store, &writer, nullptr, 0);
    return writer.bytes();
}

TEST(Threads, BuildSideBySideInOneStore) {
    const auto store = stores::memory();
    inParallel([&](int number) {
        const std::wstring name = L"top" + std::to_wstring(number);
        const auto top = structure::IContainerFrontEnd::toplevel(store.get(), name.c_str());
        for (int i = 0; i < 50; ++i) {
            const auto value = top->create((L"v" + std::to_wstring(i)).c_str(), metadata::kInt32);
            value->set(&i, 0, 1);
        }
    });
    for (int number = 0; number < kThreads; ++number) {
        const std::wstring name = L"top" + std::to_wstring(number);
        const auto top = structure::IContainerFrontEnd::find(store.get(), name.c_str());
        ASSERT_TRUE(top);
        for (int i = 0; i < 50; ++i) {
            const auto property = top->property((L"v" + std::to_wstring(i)).c_str());
            int value = -1;
            ASSERT_TRUE(metadata::IPrimitive::to(property.get())->get(&value, 0, 1));
            EXPECT_EQ(value, i);
        }
    }
}

TEST(Threads, MakeOneRootWhenAllComeFirst) {
    const auto store = stores::memory();
    inParallel([&](int) { structure::IContainerFrontEnd::toplevel(store.get(), L"shared"); });
    EXPECT_EQ(written(store.get()),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<root version=\"1\" name=\"root\"><group name=\"shared\"/></root>");
}

TEST(Threads, ReadDocumentsIntoStoresOfTheirOwn) {
    const std::string materials = bytesOf(LVP_SOURCE_DIR "/examples/data/materials.xml");
    const std::string schemas = bytesOf(LVP_SOURCE_DIR "/examples/data/schemas.xml");
    const auto read = [](const std::string& document) {
        const auto store = stores::memory();
        core::io::MemoryReader reader(document);
        format::xml::IXMLFrontEnd::parse(store.get(), &reader, nullptr, nullptr, nullptr);
        return written(store.get());
    };
    const std::string alone[] = {read(materials), read(schemas)};
    inParallel([&](int number) { EXPECT_EQ(read(number % 2 == 0 ? materials : schemas), alone[number % 2]); });
}

TEST(Threads, DropCopiesOfOnePointer) {
    const auto store = stores::memory();
    auto top = structure::IContainerFrontEnd::toplevel(store.get(), L"top");
    inParallel([&, shared = top](int) {
        for (int i = 0; i < 1000; ++i) {
            const auto copy = shared;
            EXPECT_TRUE(copy);
        }
    });
    EXPECT_EQ(top.counter()->countUse(), 1);
}

}  // namespace
