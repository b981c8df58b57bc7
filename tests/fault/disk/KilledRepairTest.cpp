// Processes that are killed at a call of the system while they repair a file.
#include <gtest/gtest.h>

#include <iostream>
#include <memory>
#include <random>
#include <string>

#include "lumivard/platform/data/check/Check.h"
#include "lumivard/platform/stores.h"
#include "tests/check/FieldFaults.h"
#include "tests/check/SoundStores.h"
#include "tests/fault/disk/DeadlyTap.h"
#include "tests/fault/disk/Workload.h"
#include "tests/stores/ChildProcess.h"
#include "tests/support/Campaign.h"
#include "tests/support/Sanitized.h"
#include "tests/support/StoredRecords.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivard::platform::stores::disk {
namespace {

namespace check = data::check;
namespace sound = test_support::sound;
namespace stored = test_support::stored;

const check::Options kReclaim{.reclaim = true};

class KilledRepair : public testing::Test {
protected:
    /// Repairs one file after the other until so many repairs were killed, and returns what went wrong first, in words;
    /// empty for nothing. `apply`: what takes the place of `check::apply`.
    template <class Apply>
    std::string campaign(std::uint64_t kills, std::uint64_t seed, Apply apply) {
        std::mt19937_64 random(seed);
        while (undone + repaired < kills) {
            std::string words;
            const auto model = spoilt(random, words);
            folder.clear();
            sound::copy(*model, *file(path(), tMode::kWrite));
            const std::uint64_t before = fingerprint(*model);
            check::apply(*model, check::plan(*model, kReclaim));
            const std::uint64_t after = fingerprint(*model);

            const bool killed = isKilled(random, apply);
            const auto store = file(path(), tMode::kWrite);
            const std::uint64_t left = fingerprint(*store);
            if (left != before && left != after) return words + "neither the old state nor the repaired one is there";
            if (killed) ++(left == before ? undone : repaired);
            if (left == before) check::apply(*store, check::plan(*store, kReclaim));
            if (fingerprint(*store) != after) return words + "the next repair ends elsewhere";
        }
        return {};
    }

    std::uint64_t undone = 0;    ///< kills after which the old state was there
    std::uint64_t repaired = 0;  ///< kills after which the repair was

private:
    std::filesystem::path path() const { return folder / "a.lvp"; }

    /// A store in memory with damage, or with a stale count and records that are to be erased; `words` tells the
    /// damage.
    std::unique_ptr<IDataStore> spoilt(std::mt19937_64& random, std::string& words) const {
        auto store = sound::copyOf(*_sound);
        if (random() % 3 == 0) {
            stored::putWord(store.get(), 0, stored::kRefs, 1);
            for (int i = 0; i < 5; ++i) stored::makeList(store.get());
            return store;
        }
        words = test_support::plantFields(*store, random, 6);
        return store;
    }

    template <class Apply>
    bool isKilled(std::mt19937_64& random, Apply apply) const {
        const auto moment = static_cast<DeadlyTap::tMoment>(random() % 3);
        const auto calls = random() % 2 == 0 ? DeadlyTap::tCalls::kCommits : DeadlyTap::tCalls::kAll;
        DeadlyTap tap(random() % (calls == DeadlyTap::tCalls::kAll ? 40 : 2), moment, calls);
        ChildProcess child([&](const ChildProcess::Line&) {
            const Watch watch(folder.path(), tap);
            const auto store = file(path(), tMode::kWrite);
            apply(*store, check::plan(*store, kReclaim));
            return 0;
        });
        const int status = child.wait();
        EXPECT_TRUE(status == 0 || status == -1) << status;
        return status == -1;
    }

    FastFolder folder;
    const std::unique_ptr<IDataStore> _sound = sound::filled();
};

TEST_F(KilledRepair, LeavesTheOldStateOrTheRepairedOneAndTheNextOneEndsIt) {
    const std::uint64_t kills = test_support::effort("LVP_KILLED_REPAIRS", test_support::usually(100));
    EXPECT_EQ(campaign(kills, test_support::seed(), check::apply), "");
    std::cout << "undone " << undone << ", repaired " << repaired << std::endl;
    if (test_support::kSanitized) return;  // too few
    EXPECT_GT(undone, 0U);
    EXPECT_GT(repaired, 0U);
}

TEST_F(KilledRepair, WouldShowIfItFlushedStepByStep) {
    const auto stepByStep = [](IDataStore& store, const check::Repair& repair) {
        for (const check::Step& step : repair.steps) check::apply(store, {.steps = {step}, .before = {}, .after = {}});
    };
    EXPECT_NE(campaign(200, 1, stepByStep), "");
}

}  // namespace
}  // namespace lumivard::platform::stores::disk
