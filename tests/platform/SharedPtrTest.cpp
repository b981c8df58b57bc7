#include "lumivard/platform/core/memory/SharedPtr.h"

#include <memory>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace {

using namespace lumivard::platform::core::memory;

class Interface {
public:
    virtual ~Interface() = default;
    virtual int number() const = 0;
};

/// Counts how many of it are gone.
class Object final : public Interface {
public:
    explicit Object(int& gone) : _gone(gone) {}
    ~Object() override { ++_gone; }
    int number() const override { return 42; }

private:
    int& _gone;
};

static_assert(sizeof(SharedPtr<Interface>) == 2 * sizeof(void*));
static_assert(std::is_nothrow_move_constructible_v<SharedPtr<Interface>>);

SharedPtr<Interface> make(int& gone) {
    return share<Interface>(std::make_unique<Object>(gone));
}

TEST(SharedPtr, IsNullWithoutAnObject) {
    const SharedPtr<Interface> pointer;
    EXPECT_FALSE(pointer);
    EXPECT_EQ(pointer.get(), nullptr);
    EXPECT_EQ(pointer.counter(), nullptr);
    EXPECT_FALSE(share<Interface>(std::unique_ptr<Object>()));
}

TEST(SharedPtr, BeginsWithOneReferenceAndOneUse) {
    int gone = 0;
    const auto pointer = make(gone);
    EXPECT_TRUE(pointer);
    EXPECT_EQ(pointer->number(), 42);
    EXPECT_EQ(pointer.counter()->count(), 1);
    EXPECT_EQ(pointer.counter()->countUse(), 1);
}

TEST(SharedPtr, CopiesAddUsesOnly) {
    int gone = 0;
    const auto pointer = make(gone);
    {
        const auto copy = pointer;
        EXPECT_EQ(copy.get(), pointer.get());
        EXPECT_EQ(pointer.counter()->count(), 1);
        EXPECT_EQ(pointer.counter()->countUse(), 2);
    }
    EXPECT_EQ(pointer.counter()->countUse(), 1);
    EXPECT_EQ(gone, 0);
}

TEST(SharedPtr, MovesLeaveTheCountsAndANullBehind) {
    int gone = 0;
    auto pointer = make(gone);
    const auto moved = std::move(pointer);
    EXPECT_FALSE(pointer);  // NOLINT(bugprone-use-after-move): this is the rule
    EXPECT_EQ(pointer.counter(), nullptr);
    EXPECT_EQ(moved.counter()->countUse(), 1);
}

TEST(SharedPtr, TheLastToGoDeletesTheObject) {
    int gone = 0;
    auto pointer = make(gone);
    auto copy = pointer;
    pointer.reset();
    EXPECT_EQ(gone, 0);
    copy.reset();
    EXPECT_EQ(gone, 1);
    EXPECT_FALSE(copy);
}

TEST(SharedPtr, AssignmentDropsTheOldObject) {
    int gone = 0;
    int otherGone = 0;
    auto pointer = make(gone);
    const auto other = make(otherGone);
    pointer = other;
    EXPECT_EQ(gone, 1);
    EXPECT_EQ(otherGone, 0);
    EXPECT_EQ(other.counter()->countUse(), 2);
}

TEST(SharedPtr, AssignmentToItselfKeepsTheObject) {
    int gone = 0;
    auto pointer = make(gone);
    const auto& same = pointer;
    pointer = same;
    EXPECT_EQ(gone, 0);
    EXPECT_EQ(pointer.counter()->countUse(), 1);
}

TEST(SharedPtr, CopiesComeAndGoOnSeveralThreads) {
    int gone = 0;
    {
        const auto pointer = make(gone);
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([pointer] {
                for (int turn = 0; turn < 10000; ++turn) {
                    const auto copy = pointer;
                    const auto another = copy;
                }
            });
        }
        for (auto& thread : threads) thread.join();
        threads.clear();
        EXPECT_EQ(pointer.counter()->countUse(), 1);
        EXPECT_EQ(gone, 0);
    }
    EXPECT_EQ(gone, 1);
}

TEST(SharedPtr, TheLastOfSeveralThreadsDeletesTheObject) {
    for (int round = 0; round < 500; ++round) {
        int gone = 0;
        auto pointer = make(gone);
        std::vector<std::thread> threads;
        for (int i = 0; i < 3; ++i) threads.emplace_back([copy = pointer]() mutable { copy.reset(); });
        pointer.reset();
        for (auto& thread : threads) thread.join();
        ASSERT_EQ(gone, 1);
    }
}

TEST(PointerTraits, DeleteThroughTheVirtualDestructor) {
    int gone = 0;
    Interface* object = new Object(gone);
    PointerTraits<Interface>::_Deletor(object);
    EXPECT_EQ(gone, 1);
}

TEST(PointerTraits, TakeNull) {
    EXPECT_NO_THROW(PointerTraits<Interface>::_Deletor(nullptr));
}

}  // namespace
