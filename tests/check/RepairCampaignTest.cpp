// After any faults a repair loses nothing that could be reached, leaves nothing to be done, and leaves a store that can
// be used.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "lumivard/platform/data/check/Check.h"
#include "tests/check/Describe.h"
#include "tests/check/FieldFaults.h"
#include "tests/check/SoundStores.h"
#include "tests/check/Walks.h"
#include "tests/support/Campaign.h"
#include "tests/support/StoredRecords.h"

namespace {

using namespace lumivard::platform::test_support;
namespace check = lumivard::platform::data::check;
namespace core = lumivard::platform::core;

using tItems = std::map<unsigned int, walks::tItem>;

/// What was reached before and is not reached any more, or not as it was; empty for nothing. A new name is one made of
/// the old one.
std::string lost(const tItems& before, const tItems& after) {
    for (const auto& [offset, item] : before) {
        const auto found = after.find(offset);
        if (found == after.end()) return "record " + std::to_string(offset) + " is not reached any more";
        if (found->second.value != item.value) return "record " + std::to_string(offset) + " has another value";
        const std::wstring& name = found->second.name;
        if (name != item.name && name.rfind(item.name + L'~', 0) != 0) {
            return "record " + std::to_string(offset) + " has another name";
        }
    }
    return {};
}

/// A repair at which nothing is left that a repair would do something about.
bool isDone(const check::Report& report) {
    for (const auto& finding : report.findings) {
        const std::string code = finding.code;
        if (!finding.repair.empty() && code != "live.unattached") return false;
    }
    return true;
}

/// Whether all that stands at the top is what the front end opens.
bool hasOnlyContainersAtTop(core::storage::datastore::IDataStore& store) {
    const auto top = stored::children(&store, 0);
    return std::all_of(top.begin(), top.end(), [&](unsigned int item) { return stored::byte(&store, item, 0) == 4; });
}

/// Plants up to `most` faults in a filled store, repairs it and looks at what is left; what is wrong with that, in
/// words.
std::string campaign(std::mt19937_64& random, unsigned int most, bool reclaim) {
    const auto store = sound::filled();
    FieldFaults faults(*store, random);
    std::vector<tFault> drawn;
    for (std::uint64_t i = random() % most + 1; i > 0; --i) drawn.push_back(faults.draw());
    std::string words;
    for (const tFault& fault : drawn) {
        FieldFaults::plant(*store, fault);
        words += fault.words + "\n";
    }
    const tItems before = walks::reachable(*store);
    const check::Options options{.reclaim = reclaim, .keep = 100'000};
    const auto plan = check::plan(*store, options);
    if (!check::apply(*store, plan)) return words + "the plan does not fit";
    const auto left = check::examine(*store, options);
    if (describe(left) != describe(plan.after)) return words + "the plan foretells something else";
    if (!isDone(left)) return words + "left to be done:\n" + describe(left);
    if (!check::plan(*store, options).steps.empty()) return words + "a second repair has something to do";
    const std::string gone = lost(before, walks::reachable(*store));
    if (!gone.empty()) return words + gone;
    std::set<std::wstring> unfound;
    const std::size_t asked = walks::askEverything(*store, unfound);
    bool everything = left.sound() && hasOnlyContainersAtTop(*store);
    for (const char* hides : {"graph.misplaced", "set.empty-name"}) everything &= !left.byCode.contains(hides);
    if (everything && asked != walks::reachable(*store).size()) return words + "not everything can be walked to";
    if (left.clean() && !unfound.empty()) return words + "not everything can be found";
    return {};
}

TEST(RepairCampaign, LosesNothingAfterOneFault) {
    std::mt19937_64 random(seed());
    for (std::uint64_t i = effort("LVP_REPAIRS", 1000); i > 0; --i) ASSERT_EQ(campaign(random, 1, i % 2 == 0), "");
}

TEST(RepairCampaign, LosesNothingAfterManyFaults) {
    std::mt19937_64 random(seed());
    for (std::uint64_t i = effort("LVP_REPAIRS", 1000); i > 0; --i) ASSERT_EQ(campaign(random, 12, i % 2 == 0), "");
}

TEST(RepairComparison, SeesAnItemThatWasDropped) {
    const auto store = sound::filled();
    const tItems before = walks::reachable(*store);
    for (const auto& [offset, item] : before) {
        const auto spoilt = sound::copyOf(*store);
        const unsigned int owner = stored::word(spoilt.get(), offset, stored::kParent);
        const unsigned int list = stored::word(spoilt.get(), owner, stored::kChildren);
        std::string entries = stored::bytes(spoilt.get(), list);
        for (std::size_t at = 4; at < entries.size(); at += 4) {
            if (stored::word(spoilt.get(), list, static_cast<unsigned int>(at)) == offset) entries.erase(at, 4);
        }
        spoilt->update(list, entries.data(), static_cast<unsigned int>(entries.size()), true);
        EXPECT_NE(lost(before, walks::reachable(*spoilt)), "") << offset;
    }
}

TEST(RepairComparison, SeesAnotherValueAndAnotherName) {
    const auto store = sound::filled();
    const tItems before = walks::reachable(*store);
    tItems after = before;
    after.begin()->second.value += 'x';
    EXPECT_NE(lost(before, after), "");
    after = before;
    after.begin()->second.name = L"something else";
    EXPECT_NE(lost(before, after), "");
}

}  // namespace
