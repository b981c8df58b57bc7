// Several threads on one store, each under the guard.
#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "lumivard/platform/stores.h"
#include "tests/stores/Records.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivard::platform::stores {
namespace {

constexpr unsigned int kThreads = 8;

void onThreads(const std::function<void(unsigned int)>& work) {
    std::vector<std::thread> threads;
    for (unsigned int number = 0; number < kThreads; ++number) threads.emplace_back(work, number);
    for (std::thread& thread : threads) thread.join();
}

// Each thread makes records, grows them, takes some away, and flushes now and then.
void write(IDataStore& store, unsigned int number) {
    const std::string mine(1, static_cast<char>('a' + number));
    for (int round = 0; round < 100; ++round) {
        const std::unique_ptr<IDataStore::ILock> guard(store.lock());
        const unsigned int offset = create(store, mine);
        const unsigned int other = create(store, mine);
        append(store, offset, mine);
        update(store, offset, mine + mine + mine);
        store.erase(other);
        if (round % 25 == 0) store.flush();
    }
}

void expectAllWritten(IDataStore& store) {
    std::vector<unsigned int> records(kThreads);
    ASSERT_EQ(store.extent(), kThreads * 200U);
    for (unsigned int offset = 0; offset < store.extent(); ++offset) {
        const std::string bytes = contents(store, offset);
        if (bytes.empty()) continue;
        EXPECT_EQ(bytes, std::string(3, bytes[0]));
        ++records[static_cast<unsigned int>(bytes[0] - 'a')];
    }
    EXPECT_EQ(records, std::vector<unsigned int>(kThreads, 100));
}

TEST(StoreThreads, WriteOneStoreInMemory) {
    const auto store = memory();
    onThreads([&](unsigned int number) { write(*store, number); });
    expectAllWritten(*store);
}

TEST(StoreThreads, WriteOneStoreInAFile) {
    TemporaryFolder folder;
    auto store = file(folder / "a.lvp", tMode::kWrite);
    onThreads([&](unsigned int number) { write(*store, number); });
    expectAllWritten(*store);
    store.reset();
    expectAllWritten(*file(folder / "a.lvp", tMode::kRead));
}

TEST(StoreThreads, ReadOneStoreInAFileThatIsLoadedAsTheyGo) {
    TemporaryFolder folder;
    {
        const auto store = file(folder / "a.lvp", tMode::kWrite);
        for (unsigned int i = 0; i < 2000; ++i) create(*store, std::to_string(i));
    }
    const auto store = file(folder / "a.lvp", tMode::kRead);
    onThreads([&](unsigned int number) {
        for (unsigned int i = 0; i < 2000; ++i) {
            const std::unique_ptr<IDataStore::ILock> guard(store->lock());
            const unsigned int offset = number % 2 ? i : 1999 - i;
            EXPECT_EQ(contents(*store, offset), std::to_string(offset));
        }
    });
}

TEST(StoreThreads, EachOpenAndCloseAFileOfTheirOwn) {
    TemporaryFolder folder;
    onThreads([&](unsigned int number) {
        const auto path = folder / std::to_string(number);
        for (unsigned int round = 0; round < 5; ++round) {
            const auto store = file(path, tMode::kWrite);
            EXPECT_EQ(create(*store, "x"), round);
        }
    });
}

TEST(StoreThreads, OpenOneFileAtOnceAndOneOfThemGetsIt) {
    TemporaryFolder folder;
    for (int round = 0; round < 20; ++round) {
        std::vector<std::unique_ptr<IDataStore>> stores(kThreads);
        onThreads([&](unsigned int number) {
            try {
                stores[number] = file(folder / "a.lvp", tMode::kWrite);
            } catch (const StoreError&) {
            }
        });
        EXPECT_EQ(std::count(stores.begin(), stores.end(), nullptr), kThreads - 1);
    }
}

}  // namespace
}  // namespace lumivard::platform::stores
