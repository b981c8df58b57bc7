// A repair that is broken off, wherever that is, leaves what was there before it or what it was to make; the next one
// comes to the end to which the first would have come, and nothing is lost on the way.
#include <gtest/gtest.h>

#include <random>

#include "lumivard/platform/data/check/Check.h"
#include "lumivard/platform/store_contract/FailingStore.h"
#include "lumivard/platform/store_contract/ForgetfulStore.h"
#include "lumivard/platform/store_contract/ForwardingStore.h"
#include "tests/check/FieldFaults.h"
#include "tests/check/PlaceFaults.h"
#include "tests/check/RepairFault.h"
#include "tests/check/SoundStores.h"
#include "tests/support/Campaign.h"
#include "tests/support/Sanitized.h"
#include "tests/support/StoredRecords.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::store_contract::FailingStore;
using lumivard::platform::store_contract::ForgetfulStore;
using lumivard::platform::store_contract::ForwardingStore;
using lumivard::platform::store_contract::InjectedFailure;
namespace check = lumivard::platform::data::check;

/// Thrown in place of a death. It is no exception of the standard's, which the checker would take for a record that
/// cannot be read.
struct tDeath {};

/// A process that dies before one of its calls: none that follows happens either.
class Mortal final : public ForwardingStore {
public:
    Mortal(IDataStore& under, std::uint64_t passing) : ForwardingStore(under), _left(passing) {}

    ILock* lock() override { return step(), ForwardingStore::lock(); }
    void flush() override {
        step();
        ForwardingStore::flush();
        step();  // a death just after a flush is another one than just before
    }
    unsigned long long extent() override { return step(), ForwardingStore::extent(); }
    void update(unsigned int offset, const void* data, unsigned int size, bool changed) override {
        step();
        ForwardingStore::update(offset, data, size, changed);
    }
    unsigned int size(unsigned int offset) override { return step(), ForwardingStore::size(offset); }
    void read(unsigned int offset, void* buffer, unsigned int size) override {
        step();
        ForwardingStore::read(offset, buffer, size);
    }
    void erase(unsigned int offset) override {
        step();
        ForwardingStore::erase(offset);
    }

    /// How many calls came.
    std::uint64_t calls = 0;

private:
    void step() {
        ++calls;
        if (_left == 0) throw tDeath();
        --_left;
    }

    std::uint64_t _left;
};

/// Stores that need a repair, of which each is broken off once. `Apply`: what takes the place of `check::apply`.
template <class Apply>
class Campaign {
public:
    Campaign(std::uint64_t seed, Apply apply) : _random(seed), _apply(apply), _sound(sound::filled()) {}

    /// What goes wrong first in that many repairs, in words; empty for nothing.
    std::string run(std::uint64_t times) {
        for (std::uint64_t i = 0; i < times; ++i) {
            ForgetfulStore store;
            sound::copy(*_sound, store);
            const std::string words = plant(store);
            store.flush();
            const check::Options options{.reclaim = _random() % 2 == 0, .keep = 100'000};
            const std::string fault = i % 4 == 3 ? faultOfFailure(store, options) : faultOfDeath(store, options);
            if (!fault.empty()) return words + fault;
        }
        return {};
    }

    std::uint64_t repaired = 0;  ///< deaths after which the repair was there
    std::uint64_t undone = 0;    ///< deaths after which it was not

private:
    /// Damage, or only what an application leaves that died.
    std::string plant(IDataStore& store) {
        switch (_random() % 3) {
            case 0:
                return plantFields(store, _random, 8);
            case 1:
                return plantPlaces(store, _random, 6);
            default:
                for (int i = 0; i < 4; ++i) {
                    const unsigned int entry = stored::children(&store, 0).at(_random() % 2);
                    stored::putWord(&store, entry, stored::kRefs, 1);
                    stored::makeList(&store);
                }
                return "stale counts and lists that nothing reaches\n";
        }
    }

    std::string faultOfDeath(ForgetfulStore& store, const check::Options& options) {
        const tReach reach(store);
        const auto before = stored::contents(store);
        const auto copy = sound::copyOf(store);
        Mortal undisturbed(*copy, UINT64_MAX);
        const auto plan = check::plan(undisturbed, options);
        const std::uint64_t planning = undisturbed.calls;
        if (!check::apply(undisturbed, plan)) return "the plan does not fit";
        const auto after = stored::contents(*copy);

        die(store, options, planning, undisturbed.calls);
        const auto left = stored::contents(store);
        if (left != before && left != after) return "what is left is neither the old state nor the repaired one";
        if (before != after) ++(left == after ? repaired : undone);
        if (left == before) {
            if (!_apply(store, check::plan(store, options))) return "the second plan does not fit";
            store.crash();
            if (stored::contents(store) != after) return "the second repair ends elsewhere";
        }
        return missing(reach, store);
    }

    /// A repair that dies inside its flush, at one of its last calls, which apply it, or at any.
    void die(ForgetfulStore& store, const check::Options& options, std::uint64_t planning, std::uint64_t calls) {
        std::uint64_t end = UINT64_MAX;
        switch (_random() % 4) {
            case 0:
                store.dieInFlush(static_cast<unsigned int>(_random()));
                break;
            case 1:
                end = _random() % calls;
                break;
            default:
                end = planning + _random() % (calls - planning);
        }
        try {
            Mortal mortal(store, end);
            _apply(mortal, check::plan(mortal, options));
        } catch (const tDeath&) {
        } catch (const InjectedFailure&) {
        }
        store.crash();
    }

    /// A call that fails once, in a process that lives on. Where that was a read, the repair goes by a record that
    /// could not be read, and does what else there is to do.
    std::string faultOfFailure(ForgetfulStore& store, const check::Options& options) {
        const tReach reach(store);
        const auto before = stored::contents(store);
        const auto copy = sound::copyOf(store);
        FailingStore counted(*copy);
        check::apply(counted, check::plan(counted, options));
        FailingStore failing(store);
        const bool changes = _random() % 2 == 0;
        const auto which = changes ? FailingStore::kUpdate | FailingStore::kFlush : FailingStore::kAllCalls;
        const auto calls = static_cast<std::uint64_t>(counted.count(which)) + 1;  // or none fails
        failing.failAfter(static_cast<long long>(_random() % calls), which, FailingStore::tTimes::kOnce);
        try {
            _apply(failing, check::plan(failing, options));
        } catch (const InjectedFailure&) {
            // An erased record cannot be put back; none is erased where there is damage.
            const bool mayErase = options.reclaim && check::examine(store, options).sound();
            if (!mayErase && stored::contents(store) != before) return "what failed has not been taken back";
        }
        const std::string fault = faultOfRepair(store, options);
        if (!fault.empty()) return "after a failure: " + fault;
        return missing(reach, store);
    }

    std::mt19937_64 _random;
    Apply _apply;
    std::unique_ptr<IDataStore> _sound;
};

TEST(BrokenOffRepair, IsDoneInWholeOrNotAtAllAndTheNextOneEndsIt) {
    const std::uint64_t times = effort("LVP_BROKEN_OFF", usually(1000));
    Campaign campaign(seed(), check::apply);
    EXPECT_EQ(campaign.run(times), "");
    std::cout << "undone " << campaign.undone << ", repaired " << campaign.repaired << std::endl;
    EXPECT_GT(campaign.undone, 0u);
    EXPECT_GT(campaign.repaired, 0u);
}

/// The steps from one to another, as a repair.
check::Repair part(const check::Repair& repair, std::size_t begin, std::size_t end) {
    check::Repair some;
    for (std::size_t i = begin; i < end; ++i) some.steps.push_back(repair.steps[i]);
    return some;
}

TEST(BrokenOffRepair, WouldShowIfItWereAppliedInHalves) {
    Campaign campaign(1, [](IDataStore& store, const check::Repair& repair) {
        const std::size_t half = repair.steps.size() / 2;
        return check::apply(store, part(repair, 0, half)) &&
               check::apply(store, part(repair, half, repair.steps.size()));
    });
    EXPECT_NE(campaign.run(1000), "");
}

TEST(BrokenOffRepair, WouldShowIfNothingWereFlushed) {
    Campaign campaign(1, [](IDataStore& store, const check::Repair& repair) {
        for (const check::Step& step : repair.steps) {
            store.update(step.offset, step.after.data(), static_cast<unsigned int>(step.after.size()), true);
        }
        return true;
    });
    EXPECT_NE(campaign.run(1000), "");
}

}  // namespace
