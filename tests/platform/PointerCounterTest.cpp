#include "lumivard/platform/core/memory/PointerCounter.h"

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace {

using namespace lumivard::platform::core::memory;

/// Notes in a text when it disposes ("o") and when it goes itself ("c").
class NotingCounter final : public DefaultPointerCounterImp {
public:
    explicit NotingCounter(std::string& notes) : _notes(notes) {}
    ~NotingCounter() override { _notes += 'c'; }
    void _doDispose() override { _notes += 'o'; }

private:
    std::string& _notes;
};

NotingCounter* inUse(std::string& notes) {
    auto* counter = new NotingCounter(notes);
    counter->addRef();
    counter->addUse();
    return counter;
}

TEST(PointerCounter, BeginsAtZero) {
    const DefaultPointerCounterImp counter;
    EXPECT_EQ(counter.count(), 0);
    EXPECT_EQ(counter.countUse(), 0);
}

TEST(PointerCounter, CountsReferencesAndUsesApart) {
    std::string notes;
    NotingCounter* counter = inUse(notes);
    counter->addRef();
    EXPECT_TRUE(counter->addUse());
    EXPECT_TRUE(counter->addUse());
    EXPECT_EQ(counter->count(), 2);
    EXPECT_EQ(counter->countUse(), 3);
    counter->release();
    counter->releaseUse();
    EXPECT_EQ(counter->count(), 1);
    EXPECT_EQ(counter->countUse(), 2);
    EXPECT_EQ(notes, "");
    counter->releaseUse();
    counter->releaseUse();
    EXPECT_EQ(notes, "oc");
}

TEST(PointerCounter, DisposesOfTheObjectBeforeItGoesItself) {
    std::string notes;
    inUse(notes)->releaseUse();
    EXPECT_EQ(notes, "oc");
}

TEST(PointerCounter, OutlivesTheObjectWhileItIsReferenced) {
    std::string notes;
    NotingCounter* counter = inUse(notes);
    counter->addRef();
    counter->releaseUse();
    EXPECT_EQ(notes, "o");
    EXPECT_EQ(counter->count(), 1);
    counter->release();
    EXPECT_EQ(notes, "oc");
}

TEST(PointerCounter, DoesNotReviveAnObjectThatIsGone) {
    std::string notes;
    NotingCounter* counter = inUse(notes);
    counter->addRef();
    counter->releaseUse();
    EXPECT_FALSE(counter->addUse());
    EXPECT_EQ(counter->countUse(), 0);
    EXPECT_EQ(notes, "o");
    counter->release();
}

TEST(PointerCounter, DisposesOfNothingWithoutADisposer) {
    auto* counter = new DefaultPointerCounterImp();
    counter->addRef();
    counter->addRef();
    counter->addUse();
    counter->releaseUse();
    EXPECT_EQ(counter->count(), 1);
    EXPECT_EQ(counter->countUse(), 0);
    counter->release();
}

TEST(PointerCounter, DisposesOnceWhenThreadsDropTheLastUsesTogether) {
    constexpr int kThreads = 4;
    for (int round = 0; round < 500; ++round) {
        std::string notes;
        NotingCounter* counter = inUse(notes);
        for (int i = 1; i < kThreads; ++i) counter->addUse();
        std::vector<std::thread> threads;
        for (int i = 0; i < kThreads; ++i) threads.emplace_back([counter] { counter->releaseUse(); });
        for (auto& thread : threads) thread.join();
        ASSERT_EQ(notes, "oc");
    }
}

TEST(PointerCounter, GivesAUseOnlyWhileTheObjectIsThere) {
    // One thread drops the last use while others try for one: whoever gets it must find the object.
    for (int round = 0; round < 500; ++round) {
        std::string notes;
        std::atomic<int> found{0};
        NotingCounter* counter = inUse(notes);
        counter->addRef();
        std::vector<std::thread> threads;
        threads.emplace_back([counter] { counter->releaseUse(); });
        for (int i = 0; i < 2; ++i) {
            threads.emplace_back([&] {
                if (!counter->addUse()) return;
                if (counter->countUse() > 0) ++found;
                counter->releaseUse();
            });
        }
        for (auto& thread : threads) thread.join();
        ASSERT_EQ(notes, "o");
        ASSERT_EQ(counter->countUse(), 0);
        ASSERT_LE(found, 2);
        counter->release();
        ASSERT_EQ(notes, "oc");
    }
}

}  // namespace
