// Processes that write a store and are killed, at each call of the system and at any other moment.
#include <gtest/gtest.h>

#include <array>
#include <iostream>
#include <random>

#include "lumivard/platform/stores.h"
#include "tests/fault/disk/DeadlyTap.h"
#include "tests/fault/disk/Finding.h"
#include "tests/stores/ChildProcess.h"
#include "tests/support/Campaign.h"
#include "tests/support/Sanitized.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivard::platform::stores::disk {
namespace {

namespace fs = std::filesystem;
using Line = ChildProcess::Line;

// What a writer is about to do. It tells that with this bit set, other numbers are acknowledged flushes.
enum tPhase : unsigned int { kCreating, kOpening, kFlushing, kClosing, kCompacting, kPhases };
constexpr unsigned int kIsPhase = 0x80000000;
constexpr std::array<const char*, kPhases> kPhaseNames = {"creating", "opening", "flushing", "closing", "compacting"};

/// What a writer has told.
struct Heard {
    unsigned int acknowledged = 0;
    unsigned int phase = kCreating;

    /// False when that was all.
    bool take(unsigned int said) {
        if (said == ChildProcess::kGone) return false;
        if (said & kIsPhase) {
            phase = said & ~kIsPhase;
        } else {
            acknowledged = said;
        }
        return true;
    }
};

/// Writes for ever, in sessions of a few flushes, of which the last is that of the store's closing, and
/// compacts the file now and then.
class Writer {
public:
    enum class tHonesty { kHonest, kAcknowledgesTooEarly };

    Writer(const fs::path& path, Workload& model, tHonesty honesty, const Line& line)
        : _path(path), _model(model), _honesty(honesty), _line(line) {}

    int run() {
        for (;;) session();
    }

private:
    void session() {
        tell(fs::exists(_path) ? kOpening : kCreating);
        auto store = file(_path, tMode::kWrite);
        const unsigned int flushes = _model.batches() % 4;
        for (unsigned int i = 0; i < flushes; ++i) flush(kFlushing, *store, [&] { store->flush(); });
        flush(kClosing, *store, [&] { store.reset(); });
        if (flushes != 0) return;
        tell(kCompacting);
        compact(_path);
    }

    template <class Work>
    void flush(tPhase phase, IDataStore& store, Work work) {
        _model.next(&store);
        tell(phase);
        if (_honesty == tHonesty::kAcknowledgesTooEarly) _line.tell(_model.batches());
        work();
        if (_honesty == tHonesty::kHonest) _line.tell(_model.batches());
    }

    void tell(tPhase phase) const { _line.tell(kIsPhase | phase); }

    const fs::path& _path;
    Workload& _model;
    const tHonesty _honesty;
    const Line& _line;
};

class KilledWriter : public testing::Test {
protected:
    /// One file after the other, each written by several processes that are killed, until `kills` are.
    void campaign(std::uint64_t kills, Writer::tHonesty honesty) {
        std::mt19937_64 random(test_support::seed());
        while (tally.all() < kills) {
            folder.clear();
            life(random, kills, honesty);
            if (HasFatalFailure()) return;
        }
        std::cout << tally;
        for (unsigned int i = 0; i < kPhases; ++i) std::cout << ", " << kPhaseNames[i] << ' ' << killedWhen[i];
        std::cout << std::endl;
    }

    unsigned int broken() const { return tally.broken() + lostFiles; }

    FastFolder folder;
    Tally tally;
    unsigned int lostFiles = 0;
    std::array<unsigned int, kPhases> killedWhen{};

private:
    fs::path path() const { return folder / "a.lvp"; }

    // What was broken once is no base for going on.
    void life(std::mt19937_64& random, std::uint64_t kills, Writer::tHonesty honesty) {
        Workload model(random());
        for (std::uint64_t rounds = 1 + random() % 8; rounds != 0 && tally.all() < kills; --rounds) {
            const bool existed = fs::exists(path());
            const unsigned int acknowledged = killOne(random, model, honesty);
            while (model.batches() <= acknowledged) model.next();
            const tMode mode = random() % 2 == 0 ? tMode::kRead : tMode::kWrite;
            const Finding finding = lookAt(path(), mode, model, acknowledged);
            tally.add(finding.found);
            if (finding.found == tFound::kAbsent && (existed || acknowledged != 0)) ++lostFiles;
            if (broken() != 0 && honesty == Writer::tHonesty::kHonest) {
                FAIL() << finding.found << " after flush " << acknowledged << ' ' << finding.message;
            }
            if (finding.found != tFound::kLast && finding.found != tFound::kNext) return;
            forget(model, acknowledged, finding.found);
        }
    }

    // Goes back to what the file holds.
    static void forget(Workload& model, unsigned int acknowledged, tFound found) {
        const unsigned int held = found == tFound::kNext ? acknowledged + 1 : acknowledged;
        if (model.batches() == held) return;
        Workload again(model.seed());
        while (again.batches() < held) again.next();
        model = again;
    }

    /// Gives the number of the last acknowledged flush.
    unsigned int killOne(std::mt19937_64& random, Workload& model, Writer::tHonesty honesty) {
        const bool atCall = random() % 4 != 0;
        DeadlyTap tap = death(atCall ? random() % 4 : 4, random);
        ChildProcess child([&](const Line& line) {
            const Watch watch(folder.path(), tap);
            return Writer(path(), model, honesty, line).run();
        });
        Heard heard{.acknowledged = model.batches()};
        if (!atCall) {
            for (std::uint64_t messages = 1 + random() % 30; messages != 0; --messages) heard.take(child.hear());
            for (volatile std::uint64_t spin = random() % 100000; spin != 0;) spin = spin - 1;
            child.kill();
        }
        while (heard.take(child.hear())) continue;
        EXPECT_EQ(child.wait(), -1) << "the writer ended by itself";
        ++killedWhen[heard.phase];
        return heard.acknowledged;
    }

    // At any call, at the one that ends a flush, or not by itself.
    DeadlyTap death(std::uint64_t kind, std::mt19937_64& random) const {
        const auto moment = static_cast<DeadlyTap::tMoment>(random() % 3);
        if (kind > 3) return {UINT64_MAX, moment};
        if (kind == 3) return {random() % 12, moment, DeadlyTap::tCalls::kCommits};
        return {random() % (fs::exists(path()) ? 250 : 60), moment};
    }
};

TEST_F(KilledWriter, LeavesExactlyTheLastFlushOrTheOneUnderWay) {
    const std::uint64_t kills = test_support::effort("LVP_KILLS", test_support::usually(300));
    campaign(kills, Writer::tHonesty::kHonest);
    EXPECT_EQ(broken(), 0U);
    EXPECT_EQ(tally.all(), kills);
    EXPECT_GT(tally[tFound::kLast], 0U);
    if (test_support::kSanitized) return;  // too few
    EXPECT_GT(tally[tFound::kNext], 0U) << "no flush was ever interrupted";
    for (unsigned int phase = 0; phase < kPhases; ++phase) EXPECT_GT(killedWhen[phase], 0U) << kPhaseNames[phase];
}

TEST_F(KilledWriter, IsCaughtWhenItAcknowledgesWhatIsNotFlushed) {
    campaign(test_support::kSanitized ? 40 : 100, Writer::tHonesty::kAcknowledgesTooEarly);
    EXPECT_GT(broken(), 0U);
}

}  // namespace
}  // namespace lumivard::platform::stores::disk
