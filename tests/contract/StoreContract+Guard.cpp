#include <atomic>
#include <exception>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

#include "lumivard/platform/store_contract/StoreContract.h"

// What the examination asks of a store's guard.

namespace lumivard::platform::store_contract {
namespace {

using core::storage::datastore::IDataStore;
using tGuard = std::unique_ptr<IDataStore::ILock>;

/// Another thread that wants the guard, and gives it back as soon as it has it. Make it before the guard that keeps it
/// out: it ends with its thread, which waits for that guard.
class Contender {
public:
    enum class tWay { kLocks, kEnters };

    explicit Contender(IDataStore& store, tWay way = tWay::kLocks)
        : _thread([this, &store, way] { way == tWay::kLocks ? _lock(store) : _enter(store); }) {}
    ~Contender() { gotIn(); }

    /// Whether it has got the guard, after many turns in which it could have taken it.
    bool getsIn() const {
        while (!_asks) std::this_thread::yield();
        for (int turn = 0; turn < 20000 && !_has; ++turn) std::this_thread::yield();
        return _has;
    }

    /// Whether it has got the guard in the end.
    bool gotIn() {
        if (_thread.joinable()) _thread.join();
        return _has;
    }

private:
    void _lock(IDataStore& store) {
        _asks = true;
        try {
            const tGuard guard(store.lock());
            _has = true;
        } catch (const std::exception&) {
        }
    }

    void _enter(IDataStore& store) {
        _asks = true;
        try {
            store.access()->enter();
            _has = true;
            store.access()->leave();
        } catch (const std::exception&) {
        }
    }

    std::atomic<bool> _asks{false};
    std::atomic<bool> _has{false};
    std::thread _thread;
};

// How many threads add 1 to the number in a record, and how often each does.
constexpr unsigned int kThreads = 8;
constexpr unsigned int kRounds = 500;

void addOne(IDataStore& store, unsigned int counter) {
    unsigned int value = 0;
    store.read(counter, &value, sizeof value);
    ++value;
    store.update(counter, &value, sizeof value, true);
}

}  // namespace

TEST_P(StoreContract, AGuardIsDeletedThroughItsInterface) {
    IDataStore::ILock* guard = store().lock();
    create("under the guard");
    if (guard) delete guard;
    EXPECT_EQ(contents(0), "under the guard");
}

TEST_P(StoreContract, TheGuardTakenTwiceOnOneThreadDoesNotDeadlock) {
    const tGuard outer(store().lock());
    const tGuard inner(store().lock());
    EXPECT_EQ(create("inside"), 0U);
}

TEST_P(StoreContract, AThreadThatHasTheGuardGetsItAgainAsOftenAsItAsks) {
    std::vector<tGuard> guards;
    for (int depth = 0; depth < 1000; ++depth) guards.emplace_back(store().lock());
    EXPECT_EQ(create("deep inside"), 0U);
}

TEST_P(StoreContract, TheGuardKeepsOtherThreadsWaiting) {
    std::optional<Contender> other;
    tGuard guard(store().lock());
    if (!guard) GTEST_SKIP() << "this store needs no locking";
    other.emplace(store());
    EXPECT_FALSE(other->getsIn());
    guard.reset();
    EXPECT_TRUE(other->gotIn());
}

TEST_P(StoreContract, TheOuterGuardHoldsWhenAnInnerOneIsGivenBack) {
    std::optional<Contender> other;
    tGuard outer(store().lock());
    if (!outer) GTEST_SKIP() << "this store needs no locking";
    delete store().lock();
    other.emplace(store());
    EXPECT_FALSE(other->getsIn());
    outer.reset();
    EXPECT_TRUE(other->gotIn());
}

TEST_P(StoreContract, AnInnerGuardHoldsWhenTheOuterOneIsGivenBackFirst) {
    std::optional<Contender> other;
    tGuard outer(store().lock());
    if (!outer) GTEST_SKIP() << "this store needs no locking";
    tGuard inner(store().lock());
    outer.reset();
    other.emplace(store());
    EXPECT_FALSE(other->getsIn());
    inner.reset();
    EXPECT_TRUE(other->gotIn());
}

TEST_P(StoreContract, WhatWasDoneUnderTheGuardIsSeenByTheThreadThatGetsItNext) {
    unsigned int offset = kBadOffset;
    {
        const tGuard guard(store().lock());
        offset = create("one");
    }
    std::thread([&] {
        const tGuard guard(store().lock());
        append(offset, " and two");
        store().version(3);
    }).join();
    const tGuard guard(store().lock());
    EXPECT_EQ(contents(offset), "one and two");
    EXPECT_EQ(store().version(), 3U);
}

TEST_P(StoreContract, OperationsMayComeFromAnyThreadOneAtATime) {
    unsigned int offset = kBadOffset;
    std::thread([&] { offset = create("a"); }).join();
    std::thread([&] { append(offset, "b"); }).join();
    std::thread([&] { EXPECT_EQ(contents(offset), "ab"); }).join();
    std::thread([&] { store().erase(offset); }).join();
    EXPECT_EQ(store().size(offset), 0U);
}

TEST_P(StoreContract, OperationsNeedNoGuardOnASingleThread) {
    const unsigned int offset = create("abcd");
    append(offset, "e");
    EXPECT_EQ(contents(offset), "abcde");
}

TEST_P(StoreContract, AGuardIsGivenBackOnUnwinding) {
    try {
        const tGuard guard(store().lock());
        update(kBadOffset, "x");
        FAIL() << "nothing was thrown";
    } catch (const std::exception&) {
    }
    std::thread([&] {
        const tGuard guard(store().lock());
        create("from another thread");
    }).join();
    EXPECT_EQ(contents(0), "from another thread");
}

TEST_P(StoreContract, TheGuardExcludesOtherThreads) {
    if (!tGuard(store().lock())) GTEST_SKIP() << "this store needs no locking";
    const unsigned int zero = 0;
    const unsigned int counter = store().create(&zero, sizeof zero);
    std::vector<std::thread> threads;
    for (unsigned int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&] {
            for (unsigned int round = 0; round < kRounds; ++round) {
                const tGuard guard(store().lock());
                addOne(store(), counter);
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    unsigned int value = 0;
    store().read(counter, &value, sizeof value);
    EXPECT_EQ(value, kThreads * kRounds);
}

// --- the guard without an object

TEST_P(StoreContract, EnteringNestsWithItselfAndWithGuards) {
    LVP_SKIP_WITHOUT_ACCESS();
    auto* const access = store().access();
    access->enter();
    access->enter();
    {
        const tGuard guard(store().lock());
        access->enter();
        EXPECT_EQ(create("deep inside"), 0U);
        access->leave();
    }
    access->leave();
    access->leave();
    std::thread([&] { delete store().lock(); }).join();
}

TEST_P(StoreContract, WhoHasEnteredKeepsOthersOutWhoEnter) {
    LVP_SKIP_WITHOUT_ACCESS();
    if (!tGuard(store().lock())) GTEST_SKIP() << "this store needs no locking";
    std::optional<Contender> other;
    store().access()->enter();
    other.emplace(store(), Contender::tWay::kEnters);
    EXPECT_FALSE(other->getsIn());
    store().access()->leave();
    EXPECT_TRUE(other->gotIn());
}

TEST_P(StoreContract, WhoHasEnteredKeepsOthersOutWhoLock) {
    LVP_SKIP_WITHOUT_ACCESS();
    if (!tGuard(store().lock())) GTEST_SKIP() << "this store needs no locking";
    std::optional<Contender> other;
    store().access()->enter();
    other.emplace(store());
    EXPECT_FALSE(other->getsIn());
    store().access()->leave();
    EXPECT_TRUE(other->gotIn());
}

TEST_P(StoreContract, AGuardKeepsOthersOutWhoEnter) {
    LVP_SKIP_WITHOUT_ACCESS();
    std::optional<Contender> other;
    tGuard guard(store().lock());
    if (!guard) GTEST_SKIP() << "this store needs no locking";
    other.emplace(store(), Contender::tWay::kEnters);
    EXPECT_FALSE(other->getsIn());
    guard.reset();
    EXPECT_TRUE(other->gotIn());
}

TEST_P(StoreContract, WhoHasEnteredTwiceKeepsOthersOutUntilLeavingTwice) {
    LVP_SKIP_WITHOUT_ACCESS();
    if (!tGuard(store().lock())) GTEST_SKIP() << "this store needs no locking";
    std::optional<Contender> other;
    store().access()->enter();
    store().access()->enter();
    store().access()->leave();
    other.emplace(store());
    EXPECT_FALSE(other->getsIn());
    store().access()->leave();
    EXPECT_TRUE(other->gotIn());
}

TEST_P(StoreContract, GuardsAndEntriesMayEndInAnyOrder) {
    LVP_SKIP_WITHOUT_ACCESS();
    std::optional<Contender> other;
    tGuard guard(store().lock());
    if (!guard) GTEST_SKIP() << "this store needs no locking";
    store().access()->enter();
    guard.reset();
    guard.reset(store().lock());
    store().access()->leave();
    store().access()->enter();
    guard.reset();
    other.emplace(store());
    EXPECT_FALSE(other->getsIn());
    store().access()->leave();
    EXPECT_TRUE(other->gotIn());
}

TEST_P(StoreContract, EnteringExcludesOtherThreads) {
    LVP_SKIP_WITHOUT_ACCESS();
    if (!tGuard(store().lock())) GTEST_SKIP() << "this store needs no locking";
    const unsigned int zero = 0;
    const unsigned int counter = store().create(&zero, sizeof zero);
    std::vector<std::thread> threads;
    for (unsigned int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&] {
            for (unsigned int round = 0; round < kRounds; ++round) {
                store().access()->enter();
                addOne(store(), counter);
                store().access()->leave();
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    unsigned int value = 0;
    store().read(counter, &value, sizeof value);
    EXPECT_EQ(value, kThreads * kRounds);
}

}  // namespace lumivard::platform::store_contract
