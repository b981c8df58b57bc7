#include "lumivard/platform/core/memory/SharedPtr.h"

#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <type_traits>
#include <typeinfo>
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
class Object : public Interface {
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

// --- Objects in one block with their counters

SharedPtr<Interface> makeInOneBlock(int& gone) {
    return makeShared<Interface, Object>(gone);
}

TEST(MakeShared, BeginsWithOneReferenceAndOneUse) {
    int gone = 0;
    const auto pointer = makeInOneBlock(gone);
    EXPECT_EQ(pointer->number(), 42);
    EXPECT_EQ(pointer.counter()->count(), 1);
    EXPECT_EQ(pointer.counter()->countUse(), 1);
}

TEST(MakeShared, EndsTheObjectOnceWithItsLastPointer) {
    int gone = 0;
    {
        auto first = makeInOneBlock(gone);
        const SharedPtr<Interface> second = first;
        first.reset();
        EXPECT_EQ(gone, 0);
        EXPECT_EQ(second->number(), 42);
    }
    EXPECT_EQ(gone, 1);
}

TEST(MakeShared, KeepsTheCounterForWhoHasAReferenceToIt) {
    int gone = 0;
    auto pointer = makeInOneBlock(gone);
    IPointerCounter* const counter = pointer.counter();
    counter->addRef();
    pointer.reset();
    EXPECT_EQ(gone, 1);
    EXPECT_EQ(counter->countUse(), 0);
    EXPECT_FALSE(counter->addUse());
    EXPECT_EQ(counter->count(), 1);
    counter->release();
    EXPECT_EQ(gone, 1);
}

TEST(MakeShared, CountsTheObjectAsTheClassThatIsAskedFor) {
    using _Private::_Counter::_CounterImp;
    int gone = 0;
    const auto whole = makeShared<Interface, Object>(gone);
    const auto base = makeShared<Interface, Object, Interface>(gone);
    const IPointerCounter& ofWhole = *whole.counter();
    const IPointerCounter& ofBase = *base.counter();
    EXPECT_EQ(typeid(ofWhole), typeid(_CounterImp<Object>));
    EXPECT_EQ(typeid(ofBase), typeid(_CounterImp<Interface>));
}

/// Refuses to come into being.
class Stillborn : public Interface {
public:
    explicit Stillborn(const char* why) { throw std::runtime_error(why); }
    int number() const override { return 0; }
};

TEST(MakeShared, LetsOutWhatTheConstructorThrows) {
    EXPECT_THROW((makeShared<Interface, Stillborn>("no")), std::runtime_error);
}

}  // namespace
