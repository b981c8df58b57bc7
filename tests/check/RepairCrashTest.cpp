// A repair of a file that is broken off leaves the file as it was, or repaired.
#include <gtest/gtest.h>

#include <csignal>
#include <functional>

#include <sys/wait.h>
#include <unistd.h>

#include "lumivard/platform/data/check/Check.h"
#include "lumivard/platform/store_contract/FailingStore.h"
#include "lumivard/platform/store_contract/ForwardingStore.h"
#include "lumivard/platform/stores.h"
#include "tests/check/Describe.h"
#include "tests/check/SoundStores.h"
#include "tests/support/StoredRecords.h"
#include "tests/support/TemporaryFolder.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::core::storage::datastore::IDataStore;
using lumivard::platform::store_contract::FailingStore;
using lumivard::platform::store_contract::ForwardingStore;
using lumivard::platform::store_contract::InjectedFailure;
namespace check = lumivard::platform::data::check;
namespace stores = lumivard::platform::stores;

const check::Options kReclaim{.reclaim = true};

/// A process that dies at the k-th step of a repair.
class Deadly final : public ForwardingStore {
public:
    Deadly(IDataStore& under, int steps) : ForwardingStore(under), _left(steps) {}

    void update(unsigned int offset, const void* data, unsigned int size, bool changed) override {
        step();
        ForwardingStore::update(offset, data, size, changed);
    }
    void erase(unsigned int offset) override {
        step();
        ForwardingStore::erase(offset);
    }
    void flush() override {
        step();
        ForwardingStore::flush();
        step();
    }

private:
    void step() {
        if (_left-- == 0) ::kill(::getpid(), SIGKILL);
    }

    int _left;
};

/// With damage, which is mended, and without it, so that records are erased.
class RepairCrash : public testing::TestWithParam<bool> {
protected:
    RepairCrash() {
        const auto store = open();
        sound::fill(*store);
        stored::putWord(store.get(), 1, stored::kRefs, 7);
        stored::putWord(store.get(), 0, stored::kRefs, 7);
        if (GetParam()) stored::enlist(store.get(), 0, 77'777);
        for (int i = 0; i < 2; ++i) stored::makeList(store.get());
        store->create("\5\0\0\0\0\0\0\0", 8);
        store->flush();
        before = stored::contents(*store);
        const auto copy = sound::copyOf(*store);
        const auto plan = check::plan(*copy, kReclaim);
        EXPECT_TRUE(check::apply(*copy, plan));
        after = stored::contents(*copy);
        steps = static_cast<int>(plan.steps.size());
        bytes = bytesOf(path());
    }

    std::filesystem::path path() const { return _folder / "store.lvp"; }
    std::unique_ptr<IDataStore> open() const { return stores::file(path(), stores::tMode::kWrite); }

    /// The file as it was before any repair.
    void putBack() const { _folder.file("store.lvp", bytes); }

    /// What a repair does that is broken off, in a process of its own; whether that was killed.
    static bool isKilled(const std::function<void()>& work) {
        const pid_t child = ::fork();
        if (child == 0) {
            work();
            ::_exit(0);
        }
        int status = 0;
        EXPECT_EQ(::waitpid(child, &status, 0), child);
        return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
    }

    std::vector<std::string> before;
    std::vector<std::string> after;
    int steps = 0;
    std::string bytes;

private:
    TemporaryFolder _folder;
};

INSTANTIATE_TEST_SUITE_P(Of, RepairCrash, testing::Bool(),
                         [](const auto& damage) { return damage.param ? "Damage" : "Leftovers"; });

TEST_P(RepairCrash, LeavesTheOldStateOrTheRepairedOneWhereTheProcessIsKilled) {
    ASSERT_GT(steps, 2);
    int killed = 0;
    int repaired = 0;
    for (int k = 0; k < steps + 3; ++k) {
        putBack();
        killed += isKilled([&] {
            const auto store = open();
            Deadly deadly(*store, k);
            check::apply(deadly, check::plan(deadly, kReclaim));
            store->flush();
        });
        const auto left = stored::contents(*open());
        EXPECT_TRUE(left == before || left == after) << "killed at step " << k;
        repaired += left == after;
    }
    EXPECT_EQ(killed, steps + 2);
    EXPECT_EQ(repaired, 2);
}

TEST_P(RepairCrash, LeavesTheOldStateWhereTheStoreFailsAndIsClosed) {
    for (int k = 0; k < steps; ++k) {
        putBack();
        {
            const auto store = open();
            FailingStore failing(*store);
            const auto plan = check::plan(failing);
            if (k >= static_cast<int>(plan.steps.size())) break;
            failing.failAfter(k, FailingStore::kUpdate, FailingStore::tTimes::kOnce);
            EXPECT_THROW(check::apply(failing, plan), InjectedFailure);
        }
        EXPECT_EQ(stored::contents(*open()), before) << "failed at step " << k;
    }
}

TEST_P(RepairCrash, WouldShowIfChangesWereFlushedOneByOne) {
    putBack();
    {
        const auto store = open();
        const auto plan = check::plan(*store, kReclaim);
        stored::putWord(store.get(), 0, stored::kRefs, 0);
    }
    const auto left = stored::contents(*open());
    EXPECT_FALSE(left == before || left == after);
}

}  // namespace
