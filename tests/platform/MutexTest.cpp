#include "lumivard/platform/core/thread/Mutex.h"

#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace {

using lumivard::platform::core::thread::Mutex;

TEST(Mutex, LetsOneThreadInAtATime) {
    constexpr int kThreads = 4;
    constexpr int kTurns = 10000;
    Mutex mutex;
    int turns = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&] {
            for (int turn = 0; turn < kTurns; ++turn) {
                const Mutex::ScopedLock lock(mutex);
                ++turns;
            }
        });
    }
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(turns, kThreads * kTurns);
}

TEST(Mutex, IsFreeAgainAfterAnExceptionThroughItsLock) {
    Mutex mutex;
    EXPECT_THROW(
        {
            const Mutex::ScopedLock lock(mutex);
            throw 1;
        },
        int);
    bool entered = false;
    std::thread([&] {
        const Mutex::ScopedLock lock(mutex);
        entered = true;
    }).join();
    EXPECT_TRUE(entered);
}

}  // namespace
