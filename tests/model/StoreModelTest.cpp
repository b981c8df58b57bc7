// A store and a plain map under the same random calls.
#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <memory>

#include "lumivard/platform/store_contract/FailingStore.h"
#include "lumivard/platform/store_contract/ForgetfulStore.h"
#include "lumivard/platform/stores.h"
#include "tests/model/FaultyStores.h"
#include "tests/model/StoreRun.h"
#include "tests/stores/ChildProcess.h"
#include "tests/support/Campaign.h"
#include "tests/support/Sanitized.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivard::platform::model {
namespace {

using store_contract::FailingStore;
using stores::ChildProcess;
using stores::tMode;
using test_support::effort;
using test_support::seed;

// How many calls between two comparisons of everything, and between two closings of a file.
constexpr std::uint64_t kLeg = 20'000;

// Where a faulty store has to be noticed at the latest. The slowest of the faults shows once in some 100,000 calls.
constexpr std::uint64_t kNoticed = 20'000'000;

std::uint64_t operations(std::uint64_t usual) {
    return effort("LVP_OPERATIONS", test_support::usually(usual));
}

void inMemory(StoreRun& run, IDataStore& store, std::uint64_t count) {
    while (run.done() < count && run.go(store, std::min(kLeg, count - run.done())) && run.compare(store)) {
    }
}

TEST(StoreModel, AStoreInMemoryIsAMap) {
    const auto store = stores::memory();
    StoreRun run(seed());
    inMemory(run, *store, operations(1'000'000));
    EXPECT_TRUE(run.difference().empty()) << run.difference();
}

TEST(StoreModel, AStoreInAFileIsAMapThatOutlivesItsClosing) {
    TemporaryFolder folder;
    StoreRun run(seed());
    const std::uint64_t count = operations(1'000'000);
    while (run.done() < count && run.difference().empty()) {
        const auto store = stores::file(folder / "a.lvp", tMode::kWrite);
        if (!run.compare(*store) || !run.go(*store, kLeg) || !run.compare(*store)) break;
        run.model().close();
    }
    EXPECT_TRUE(run.difference().empty()) << run.difference();
}

/// Sessions with a file store in processes that end without closing it. `go` tells whether each began with what the
/// flushes of those before had kept.
class Crashes {
public:
    Crashes() = default;
    explicit Crashes(const StoreModel::tRules& wrong) : _run(seed(), wrong), _tells(false) {}

    bool go(std::uint64_t count) {
        while (_run.done() < count) {
            if (!session(1 + below(_run.random(), kLeg / 2))) return false;
        }
        return true;
    }

private:
    // The child goes on where this process stands and the model then follows it, up to its end.
    bool session(std::uint64_t calls) {
        ChildProcess child([&](const ChildProcess::Line&) {
            auto store = stores::file(_folder / "a.lvp", tMode::kWrite);
            const bool same = _run.compare(*store) && _run.go(*store, calls);
            store.release();
            if (!same && _tells) std::cerr << _run.difference() << std::endl;
            return same ? 0 : 1;
        });
        _run.goAlone(calls);
        _run.model().crash();
        const int status = child.wait();
        EXPECT_LE(status, 1) << "the child could not do its part";
        return status == 0;
    }

    TemporaryFolder _folder;
    StoreRun _run{seed()};
    bool _tells = true;
};

TEST(StoreModel, AProcessThatEndsLosesWhatItHadNotFlushedAndNothingElse) {
    EXPECT_TRUE(Crashes().go(operations(1'000'000) / 10));
}

TEST(StoreModel, ACallThatFailsHasChangedNothing) {
    const auto under = stores::memory();
    FailingStore store(*under, FailingStore::tAccess::kOffered);
    StoreRun run(seed());
    const std::uint64_t count = operations(200'000);
    for (int leg = 1; run.done() < count && run.difference().empty(); ++leg) {
        store.failAfter(below(run.random(), 100), FailingStore::kAllCalls & ~FailingStore::kLock,
                        leg % 2 ? FailingStore::tTimes::kOnce : FailingStore::tTimes::kForEver);
        run.go(store, 120);
        store.goOn();
        if (leg % 100 == 0) run.compare(store);
    }
    EXPECT_TRUE(run.difference().empty()) << run.difference();
}

// The store tells whether the flush inside which it died has happened; nobody else would know.
void dieInFlush(store_contract::ForgetfulStore& store, StoreRun& run) {
    StoreOperation flush;
    flush.code = StoreOperation::kFlush;
    const unsigned long long before = store.flushes();
    store.dieInFlush(static_cast<unsigned int>(run.random()()));
    EXPECT_TRUE(perform(store, flush).injected);
    if (store.flushes() != before) run.model().perform(flush);
}

TEST(StoreModel, AStoreThatForgetsGoesBackToItsLastFlush) {
    store_contract::ForgetfulStore store;
    StoreRun run(seed());
    const std::uint64_t count = operations(200'000);
    for (int leg = 1; run.done() < count && run.difference().empty(); ++leg) {
        run.go(store, below(run.random(), 5000));
        if (leg % 2 == 0) dieInFlush(store, run);
        run.go(store, 100);
        store.crash();
        run.model().crash();
        run.compare(store);
    }
    EXPECT_TRUE(run.difference().empty()) << run.difference();
}

TEST(StoreModelNotices, AByteThatIsLostInOneOfTenThousandAppends) {
    const auto under = stores::memory();
    unsigned int calls = 0;
    DroppingStore store(*under, 10'000, calls);
    StoreRun run(seed());
    inMemory(run, store, kNoticed);
    EXPECT_NE(run.difference(), "");
}

TEST(StoreModelNotices, AnUpdateThatGoesToTheNeighbour) {
    const auto under = stores::memory();
    unsigned int calls = 0;
    NeighbourStore store(*under, 10'000, calls);
    StoreRun run(seed());
    inMemory(run, store, kNoticed);
    EXPECT_NE(run.difference(), "");
}

TEST(StoreModelNotices, AnErasedOffsetThatComesBack) {
    const auto store = stores::memory();
    StoreRun run(seed(), {.erasedComeBack = true});
    inMemory(run, *store, kNoticed);
    EXPECT_NE(run.difference(), "");
}

TEST(StoreModelNotices, BookkeepingThatAFlushKeeps) {
    EXPECT_FALSE(Crashes({.countsAreFlushed = true}).go(kNoticed));
}

}  // namespace
}  // namespace lumivard::platform::model
