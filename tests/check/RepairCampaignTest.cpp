// After any faults a repair loses nothing that could be reached, leaves nothing to be done, and leaves a store that can
// be used.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "lumivard/platform/data/check/Check.h"
#include "tests/check/Describe.h"
#include "tests/check/FieldFaults.h"
#include "tests/check/SmallTree.h"
#include "tests/check/SoundStores.h"
#include "tests/check/Walks.h"
#include "tests/support/Campaign.h"
#include "tests/support/Sanitized.h"
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

/// What cursors got to before and do not get to any more.
std::string outOfReach(const std::set<unsigned int>& before, const std::set<unsigned int>& after) {
    for (const unsigned int offset : before) {
        if (!after.contains(offset)) return "no cursor gets to record " + std::to_string(offset) + " any more";
    }
    return {};
}

/// How many records a repair erases.
std::size_t erased(const check::Repair& plan) {
    return static_cast<std::size_t>(
        std::count_if(plan.steps.begin(), plan.steps.end(), [](const check::Step& step) { return step.erases; }));
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

/// Plants up to `most` faults of any fields; tells them in words.
std::string plantFields(core::storage::datastore::IDataStore& store, std::mt19937_64& random, unsigned int most) {
    FieldFaults faults(store, random);
    std::vector<tFault> drawn;
    for (std::uint64_t i = random() % most + 1; i > 0; --i) drawn.push_back(faults.draw());
    std::string words;
    for (const tFault& fault : drawn) {
        FieldFaults::plant(store, fault);
        words += fault.words + "\n";
    }
    return words;
}

/// Lets up to `most` sets have the items of others, one or all of them, which may say that they are theirs.
std::string plantPlaces(core::storage::datastore::IDataStore& store, std::mt19937_64& random, unsigned int most) {
    std::vector<unsigned int> items;
    std::vector<unsigned int> sets{0};
    for (const unsigned int item : walks::byCursors(store)) {
        items.push_back(item);
        if (stored::word(&store, item, stored::kChildren) != stored::BADOFF) sets.push_back(item);
    }
    std::string words;
    for (std::uint64_t i = random() % most + 1; i > 0; --i) {
        const unsigned int set = sets[random() % sets.size()];
        const unsigned int item = items[random() % items.size()];
        const unsigned int list = stored::word(&store, item, stored::kChildren);
        if (random() % 3 == 0 && stored::byte(&store, item, 0) != 1 && list != stored::BADOFF) {
            stored::putWord(&store, set, stored::kChildren, list);
            words += "record " + std::to_string(set) + " has the list of record " + std::to_string(item) + "\n";
        } else {
            stored::enlist(&store, set, item);
            if (random() % 2 == 0) stored::putWord(&store, item, stored::kParent, set);
            words += "record " + std::to_string(set) + " has record " + std::to_string(item) + "\n";
        }
    }
    return words;
}

/// Repairs a filled store in which something was planted and looks at what is left; what is wrong with that, in words.
template <class Plant>
std::string campaign(Plant plant, std::mt19937_64& random, unsigned int most, bool reclaim) {
    const auto store = sound::filled();
    const std::string words = plant(*store, random, most);
    const tItems before = walks::reachable(*store);
    const auto nearBefore = walks::byCursors(*store);
    const check::Options options{.reclaim = reclaim, .keep = 100'000};
    const auto plan = check::plan(*store, options);
    if (!check::apply(*store, plan)) return words + "the plan does not fit";
    const auto left = check::examine(*store, options);
    if (describe(left) != describe(plan.after)) return words + "the plan foretells something else";
    if (!isDone(left)) return words + "left to be done:\n" + describe(left);
    const bool wasSound = plan.before.sound();
    if (!wasSound && erased(plan) != 0) return words + "what damage may have cut off is erased";
    const auto second = check::plan(*store, options);
    const std::size_t rest = reclaim && !wasSound ? erased(second) : 0;
    if (second.steps.size() != rest) return words + "a second repair has something to do";
    const auto nearAfter = walks::byCursors(*store);
    const std::string far = outOfReach(nearBefore, nearAfter);
    if (!far.empty()) return words + far;
    const std::string gone = lost(before, walks::reachable(*store));
    if (!gone.empty()) return words + gone;
    std::set<std::wstring> unfound;
    const std::size_t asked = walks::askEverything(*store, unfound);
    const bool everything = left.sound() && hasOnlyContainersAtTop(*store) && !left.byCode.contains("set.empty-name");
    if (everything && asked != nearAfter.size()) return words + "not everything can be walked to";
    if (left.clean() && !unfound.empty()) return words + "not everything can be found";
    return {};
}

TEST(RepairCampaign, LosesNothingAfterOneFault) {
    std::mt19937_64 random(seed());
    for (std::uint64_t i = effort("LVP_REPAIRS", lumivard::platform::test_support::usually(1000)); i > 0; --i)
        ASSERT_EQ(campaign(plantFields, random, 1, i % 2 == 0), "");
}

TEST(RepairCampaign, LosesNothingAfterManyFaults) {
    std::mt19937_64 random(seed());
    for (std::uint64_t i = effort("LVP_REPAIRS", lumivard::platform::test_support::usually(1000)); i > 0; --i)
        ASSERT_EQ(campaign(plantFields, random, 12, i % 2 == 0), "");
}

TEST(RepairCampaign, LosesNothingWhereManyHaveTheSame) {
    std::mt19937_64 random(seed());
    for (std::uint64_t i = effort("LVP_REPAIRS", lumivard::platform::test_support::usually(1000)); i > 0; --i) {
        ASSERT_EQ(campaign(plantPlaces, random, 6, i % 2 == 0), "");
    }
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

TEST(RepairComparison, SeesAPlaceThatNoCursorGetsTo) {
    SmallTree tree;
    tree.enlist(tree.table, tree.leaf);
    const tItems all = walks::reachable(tree.store);
    const auto near = walks::byCursors(tree.store);
    tree.resize(tree.list, 4);  // the node's list loses the leaf, the table's keeps it
    EXPECT_EQ(lost(all, walks::reachable(tree.store)), "");
    EXPECT_NE(outOfReach(near, walks::byCursors(tree.store)), "");
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
