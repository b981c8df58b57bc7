// Writers that are killed with the store open, and who comes after them.
#include <gtest/gtest.h>

#include <iostream>
#include <memory>
#include <random>
#include <string>

#include "lumivard/platform/stores.h"
#include "tests/fault/disk/DeadlyTap.h"
#include "tests/fault/disk/Finding.h"
#include "tests/stores/ChildProcess.h"
#include "tests/stores/Records.h"
#include "tests/support/Campaign.h"
#include "tests/support/Sanitized.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivard::platform::stores::disk {
namespace {

namespace fs = std::filesystem;
using Line = ChildProcess::Line;

// Who comes after reports which batch the file holds, or this.
constexpr unsigned int kRefused = 0x40000000;
constexpr unsigned int kMixed = 0x40000001;

class DeadWriter : public testing::Test {
protected:
    fs::path path() const { return folder / "a.lvp"; }

    /// Kills a writer that has told of `model`'s next flushes, in the middle of one or between two. Gives the number of
    /// the last.
    unsigned int die(Workload& model) {
        const bool inFlush = random() % 2 == 0;
        DeadlyTap tap(30 + random() % 60, static_cast<DeadlyTap::tMoment>(random() % 3));
        ChildProcess child([&](const Line& line) {
            std::unique_ptr<Watch> watch;
            if (inFlush) watch = std::make_unique<Watch>(folder.path(), tap);
            auto store = file(path(), tMode::kWrite);
            for (line.tell(model.batches());; line.tell(model.batches())) {
                model.next(store.get());
                store->flush();
            }
            return 0;
        });
        unsigned int acknowledged = model.batches();
        for (std::uint64_t heard = 0;; ++heard) {
            if (!inFlush && heard == 5) child.kill();
            const unsigned int said = child.hear();
            if (said == ChildProcess::kGone) break;
            acknowledged = said;
        }
        EXPECT_EQ(child.wait(), -1) << "the writer ended by itself";
        return acknowledged;
    }

    /// Opens the file in another process, at once, and flushes once more. Gives the number of the batch that it found,
    /// `kRefused`, or `kMixed`.
    unsigned int follow(Workload& model) {
        ChildProcess child([&](const Line& line) {
            std::unique_ptr<IDataStore> store;
            const std::string message = messageOf<StoreError>([&] { store = file(path(), tMode::kWrite); });
            if (!store) return line.tell(kRefused), 0;
            const std::uint64_t found = fingerprint(*store);
            const unsigned int last = model.batches();
            line.tell(found == model.after(last) ? last : found == model.after(last - 1) ? last - 1 : kMixed);
            store->version(1);
            store->flush();
            return 0;
        });
        const unsigned int said = child.hear();
        EXPECT_EQ(child.wait(), 0);
        return said;
    }

    FastFolder folder;
    std::mt19937_64 random{test_support::seed()};
};

// With a reader in the file its lock file is not made anew, and the next writer meets the mutex that the dead one held.
std::unique_ptr<ChildProcess> reader(const fs::path& path) {
    auto child = std::make_unique<ChildProcess>([&](const Line& line) {
        const auto store = file(path, tMode::kRead);
        line.tell(1);
        line.hear();
        return 0;
    });
    EXPECT_EQ(child->hear(), 1U);
    return child;
}

TEST_F(DeadWriter, BlocksNobody) {
    const std::uint64_t deaths = test_support::effort("LVP_DEAD_WRITERS", test_support::usually(100));
    for (std::uint64_t i = 0; i < deaths; ++i) {
        folder.clear();
        Workload model(random());
        file(path(), tMode::kWrite);
        const auto witness = i % 2 == 0 ? reader(path()) : nullptr;
        const unsigned int acknowledged = die(model);
        while (model.batches() <= acknowledged) model.next();
        const unsigned int found = follow(model);
        ASSERT_TRUE(found == acknowledged || found == acknowledged + 1) << found << " after " << acknowledged;
        EXPECT_EQ(file(path(), tMode::kRead)->version(), 1U);
    }
}

TEST_F(DeadWriter, IsNoticedWhereItsLockLivesOn) {
    ChildProcess heir([&](const Line& line) {
        auto store = file(path(), tMode::kWrite);
        ChildProcess grandchild([&](const Line& own) {
            own.tell(1);
            line.hear();  // holds what its parent had until the test is over
            return 0;
        });
        line.tell(grandchild.hear());
        ::raise(SIGKILL);
        return 0;
    });
    ASSERT_EQ(heir.hear(), 1U);
    EXPECT_EQ(heir.wait(), -1);
    Workload model(1);
    EXPECT_EQ(follow(model), kRefused);
    heir.tell(0);
}

}  // namespace
}  // namespace lumivard::platform::stores::disk
