#include "lumivard/platform/data/check/Check.h"

#include <limits>
#include <optional>
#include <stdexcept>
#include <utility>

#include "check/Examination.h"
#include "check/Overlay.h"
#include "record/Guard.h"

namespace lumivard::platform::data {

using check::Options;
using check::Repair;
using check::Report;
using check::Step;
using core::storage::datastore::IDataStore;

namespace {

/// One mending may show what another hid. Three rounds are all that was ever needed.
constexpr int kRounds = 8;

/// How often a plan is begun anew where the store fails now and then.
constexpr int kTries = 8;

bool isUnchanged(IDataStore& store, const Step& step) {
    const unsigned int size = store.size(step.offset);
    if (size != step.before.size()) return false;
    std::string now(size, '\0');
    store.read(step.offset, now.data(), std::numeric_limits<unsigned int>::max());
    return now == step.before;
}

void put(IDataStore& store, unsigned int offset, const std::string& bytes) {
    store.update(offset, bytes.data(), static_cast<unsigned int>(bytes.size()), true);
}

/// Changes that can be taken back.
class Changes {
public:
    explicit Changes(IDataStore& store) : _store(store) {}

    ~Changes() {
        if (_kept) return;
        for (auto step = _done.rbegin(); step != _done.rend(); ++step) {
            try {
                put(_store, (*step)->offset, (*step)->before);
            } catch (...) {
                // What threw before is on its way to the caller.
            }
        }
    }

    void make(const std::vector<Step>& steps) {
        _done.reserve(steps.size());
        for (const Step& step : steps) {
            if (step.erases) continue;
            put(_store, step.offset, step.after);
            _done.push_back(&step);
        }
        for (const Step& step : steps) {
            if (step.erases) _store.erase(step.offset);
        }
    }

    void keep() { _kept = true; }

private:
    IDataStore& _store;
    std::vector<const Step*> _done;
    bool _kept = false;
};

/// Mends one thing after the other until nothing is left. Nothing is returned where a record could be read in one round
/// and not in another: what hangs below it looks cut off where it cannot, and what is planned then is worth nothing.
std::optional<Repair> tryToPlan(IDataStore& store, const Options& options) {
    Check::Overlay overlay(store);
    Repair repair;
    std::vector<unsigned int> unreadable;
    for (int round = 0; round < kRounds; ++round) {
        Check::Examination examination(overlay, options);
        repair.after = examination.run();
        if (round == 0) {
            repair.before = repair.after;
            unreadable = examination.unreadable();
        } else if (examination.unreadable() != unreadable) {
            return std::nullopt;
        }
        if (!examination.edits().empty()) {
            examination.edits().applyTo(overlay);
            continue;
        }
        // What damage, or the mending of it, has cut off is content that somebody may want to have back.
        const bool reclaims =
            options.reclaim && options.without.empty() && repair.before.sound() && repair.before.searched;
        if (!reclaims || examination.unattached().empty()) {
            repair.steps = overlay.steps();
            return repair;
        }
        for (const unsigned int offset : examination.unattached()) overlay.erase(offset);
    }
    throw std::runtime_error("no plan of a repair: each mending shows another fault, " + std::to_string(kRounds) +
                             " times over; the store may be changing meanwhile");
}

}  // namespace

Report check::examine(IDataStore& store, const Options& options) {
    const Record::Guard guard(&store);
    return Check::Examination(store, options).run();
}

Repair check::plan(IDataStore& store, const Options& options) {
    const Record::Guard guard(&store);
    for (int tries = 0; tries < kTries; ++tries) {
        if (auto repair = tryToPlan(store, options)) return *std::move(repair);
    }
    throw std::runtime_error("no plan of a repair: the store gives out records at one time and not at another, " +
                             std::to_string(kTries) + " times over");
}

bool check::apply(IDataStore& store, const Repair& repair) {
    const Record::Guard guard(&store);
    for (const Step& step : repair.steps) {
        if (!isUnchanged(store, step)) return false;
    }
    if (repair.steps.empty()) return true;
    Changes changes(store);
    changes.make(repair.steps);
    store.flush();
    changes.keep();
    return true;
}

}  // namespace lumivard::platform::data
