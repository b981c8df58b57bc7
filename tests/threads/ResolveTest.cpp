// One locator, many threads.
#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "lumivard/platform/stores.h"
#include "record/Guard.h"
#include "tests/schema/SchemaFixture.h"
#include "tests/schema/SerialStore.h"

namespace {

using namespace lumivard::platform::test_support;
namespace stores = lumivard::platform::stores;

constexpr int kThreads = 8;
constexpr int kSchemas = 20;

/// Lets all threads begin at the same moment.
void inParallel(const std::function<void(int)>& work) {
    std::atomic<int> missing = kThreads;
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&, i] {
            --missing;
            while (missing != 0) std::this_thread::yield();
            work(i);
        });
    }
    for (std::thread& thread : threads) thread.join();
}

std::wstring uri(int number) {
    return L"s" + std::to_wstring(number);
}

/// What one thread saw of each schema.
using tSeen = std::vector<std::vector<tFieldIs>>;

/// A store with twenty schemas, each of which has the one before as a member, and two that reach each other.
class ResolveThreads : public testing::Test {
protected:
    ResolveThreads() {
        tree::root(store());
        for (int i = 0; i < kSchemas; ++i) {
            const unsigned int table = tree::addTable(store(), 0, uri(i).c_str());
            if (i != 0) addStruct(store(), table, L"m", uri(i - 1).c_str(), 4 * static_cast<unsigned int>(i));
            addValues(store(), table, L"x", metadata::kInt32, 1);
        }
        for (const wchar_t* name : {L"left", L"right"}) {
            const unsigned int table = tree::addTable(store(), 0, name);
            addStruct(store(), table, L"left", L"left", 4);
            addStruct(store(), table, L"right", L"right", 4);
            addValues(store(), table, L"y", metadata::kInt32, 1);
        }
    }

    IDataStore* store() { return _store.get(); }

    static tSeen see(ISchemaLocator& locator) {
        tSeen seen;
        for (int i = kSchemas; i-- != 0;) seen.push_back(fields(*locator.resolve(uri(i).c_str())->layout()));
        return seen;
    }

    tSeen alone() { return see(*ISchemaLocator::make(store())); }

    const std::unique_ptr<IDataStore> _store = stores::memory();
};

TEST_F(ResolveThreads, AllGetTheOneLayoutOfANameThatIsKnown) {
    const auto locator = ISchemaLocator::make(store());
    const tSeen before = see(*locator);
    std::vector<std::vector<Layout*>> found(kThreads);
    inParallel([&](int thread) {
        std::vector<Layout*>& mine = found[static_cast<std::size_t>(thread)];
        for (int i = 0; i < 10 * kSchemas; ++i) {
            const auto each = layouts(locator->resolve((uri(i % kSchemas) + L";" + uri(0)).c_str()));
            mine.insert(mine.end(), each.begin(), each.end());
        }
    });
    EXPECT_EQ(found[0].size(), 20u * kSchemas);
    for (const auto& each : found) EXPECT_EQ(each, found[0]);
    EXPECT_EQ(see(*locator), before);
}

TEST_F(ResolveThreads, BuildEqualLayoutsOfNamesThatAreUnknownOverAStoreThatIsSerial) {
    const tSeen expected = alone();
    SerialStore serial(*store());
    for (int round = 0; round < 5; ++round) {
        const auto locator = ISchemaLocator::make(&serial);
        std::vector<tSeen> seen(kThreads);
        inParallel([&](int thread) { seen[static_cast<std::size_t>(thread)] = see(*locator); });
        for (const tSeen& each : seen) EXPECT_EQ(each, expected);
    }
}

TEST_F(ResolveThreads, CountEachSchemaOnceOverAStoreThatIsSerial) {
    SerialStore serial(*store());
    for (int round = 0; round < 20; ++round) {
        std::vector<unsigned int> tables;
        {
            const auto locator = ISchemaLocator::make(&serial);
            inParallel([&](int) { see(*locator); });
            for (int i = 0; i < kSchemas; ++i) {
                tables.push_back(layouts(locator->resolve(uri(i).c_str())).at(0)->offset());
                EXPECT_EQ(stored::refs(store(), tables.back()), 1u);
            }
        }
        for (const unsigned int table : tables) EXPECT_EQ(stored::refs(store(), table), 0u);
    }
}

TEST_F(ResolveThreads, EndInCirclesOfSchemas) {
    SerialStore serial(*store());
    const auto locator = ISchemaLocator::make(&serial);
    std::vector<std::vector<tFieldIs>> seen(kThreads);
    inParallel(
        [&](int thread) { seen[static_cast<std::size_t>(thread)] = fields(*locator->resolve(L"left")->layout()); });
    const std::vector<tFieldIs> expected = {{L"right.y", metadata::kInt32, 1, 0, 4}, {L"y", metadata::kInt32, 1, 4, 4}};
    for (const auto& each : seen) EXPECT_EQ(each, expected);
}

TEST_F(ResolveThreads, UnderTheGuardBuildEachLayoutOnceAndCountItOnce) {
    const tSeen expected = alone();
    const auto locator = ISchemaLocator::make(store());
    std::vector<tSeen> seen(kThreads);
    std::vector<std::vector<Layout*>> found(kThreads);
    inParallel([&](int thread) {
        const data::Record::Guard guard(store());
        const auto mine = static_cast<std::size_t>(thread);
        seen[mine] = see(*locator);
        for (int i = 0; i < kSchemas; ++i) found[mine].push_back(layouts(locator->resolve(uri(i).c_str())).at(0));
    });
    for (const tSeen& each : seen) EXPECT_EQ(each, expected);
    for (const auto& each : found) EXPECT_EQ(each, found[0]);
    for (const Layout* each : found[0]) EXPECT_EQ(stored::refs(store(), each->offset()), 1u);
}

TEST_F(ResolveThreads, GetWhatTheyAskForWhileOthersAskForAnother) {
    const tSeen expected = alone();
    SerialStore serial(*store());
    const auto locator = ISchemaLocator::make(&serial);
    std::vector<std::vector<tFieldIs>> seen(kThreads);
    inParallel([&](int thread) {
        seen[static_cast<std::size_t>(thread)] =
            fields(*locator->resolve(uri(kSchemas - 1 - thread).c_str())->layout());
    });
    for (std::size_t i = 0; i < seen.size(); ++i) EXPECT_EQ(seen[i], expected[i]);
}

TEST_F(ResolveThreads, ReadOneLayoutSideBySide) {
    const auto locator = ISchemaLocator::make(store());
    const auto schema = locator->resolve(uri(kSchemas - 1).c_str());
    IStructLayout& layout = *schema->layout();
    const std::vector<tFieldIs> expected = fields(layout);
    inParallel([&](int) {
        EXPECT_EQ(fields(layout), expected);
        for (const tFieldIs& field : expected) EXPECT_EQ(layout.get(field.name.c_str())->offset, field.offset);
    });
}

}  // namespace
