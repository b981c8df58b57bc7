#include "tests/postgres/load/Check.h"

#include <algorithm>
#include <map>
#include <memory>
#include <vector>

#include "lumivard/platform/stores.h"
#include "lumivard/platform/stores/Postgres.h"
#include "tests/postgres/load/Ledger.h"
#include "tests/postgres/load/Notes.h"

namespace lumivard::platform::stores::load {
namespace {

/// What all writers together have noted since a moment.
struct tSum {
    std::map<tOutcome, std::uint64_t> counts;
    std::vector<std::uint64_t> times;  // of what was acknowledged

    std::uint64_t longestGap() {
        std::sort(times.begin(), times.end());
        std::uint64_t longest = 0;
        for (std::size_t i = 1; i < times.size(); ++i) longest = std::max(longest, times[i] - times[i - 1]);
        return longest;
    }
};

void add(tSum& sum, const std::vector<tNote>& notes, std::uint64_t since) {
    for (const tNote& note : notes) {
        if (note.time < since) continue;
        ++sum.counts[note.outcome];
        if (note.outcome == tOutcome::kAcknowledged) sum.times.push_back(note.time);
    }
}

// Steps that were acknowledged and are not there. The store has the first `stored` ones: the journal shows it.
std::uint64_t lost(const std::vector<tNote>& notes, std::uint64_t stored) {
    return static_cast<std::uint64_t>(std::count_if(notes.begin(), notes.end(), [&](const tNote& note) {
        return note.outcome == tOutcome::kAcknowledged && note.step > stored;
    }));
}

// A step that is there has been acknowledged, or it was said not to be known; or another one came after it, before
// which it was found.
void requireReason(unsigned int writer, const std::vector<tNote>& notes, std::uint64_t stored) {
    const bool isKnown = stored == 0 || std::any_of(notes.begin(), notes.end(), [&](const tNote& note) {
                             return note.step == stored &&
                                    (note.outcome == tOutcome::kAcknowledged || note.outcome == tOutcome::kUnknown);
                         });
    if (isKnown) return;
    throw Fault("step " + std::to_string(stored) + " of writer " + std::to_string(writer) +
                " is there, which was never acknowledged");
}

std::uint64_t epochOf(const std::string& location, const std::string& store) {
    for (const PostgresStore& each : postgresStores(location)) {
        if (each.name == store) return each.epoch;
    }
    throw Fault("the store is gone");
}

}  // namespace

void check(const std::string& location, const std::string& store, const std::filesystem::path& folder,
           std::uint64_t since, std::ostream& figures) {
    const auto opened = postgres(location, tMode::kRead);
    const std::unique_ptr<IDataStore::ILock> guard(opened->lock());
    Ledger ledger(*opened);
    const Ledger::tTotals totals = ledger.look();
    tSum sum;
    std::uint64_t gone = 0;
    std::vector<std::vector<tNote>> all;
    for (unsigned int writer = 0; writer < totals.counters.size(); ++writer) {
        all.push_back(Notes::read(folder / ("writer." + std::to_string(writer))));
        add(sum, all.back(), since);
        gone += lost(all.back(), totals.counters[writer]);
    }
    figures << "acknowledged=" << sum.counts[tOutcome::kAcknowledged] << " lost=" << gone
            << " unknown=" << sum.counts[tOutcome::kUnknown] << " given_up=" << sum.counts[tOutcome::kGivenUp]
            << " refused=" << sum.counts[tOutcome::kRefused] << " failed=" << sum.counts[tOutcome::kFailed]
            << " gap=" << sum.longestGap() / 1000 << " steps=" << totals.tally << "\n";

    if (gone != 0) throw Fault(std::to_string(gone) + " acknowledged flushes are lost");
    for (unsigned int writer = 0; writer < totals.counters.size(); ++writer) {
        ledger.requireJournal(writer, totals.counters[writer]);
        requireReason(writer, all[writer], totals.counters[writer]);
    }
    // One to fill the store, and one for each step, if none was done twice.
    const std::uint64_t epoch = epochOf(location, store);
    if (epoch != totals.tally + 1) {
        throw Fault(std::to_string(totals.tally) + " steps have taken " + std::to_string(epoch - 1) + " commits");
    }
}

}  // namespace lumivard::platform::stores::load
