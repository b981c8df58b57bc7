// After any faults a repair loses nothing that could be reached, leaves nothing to be done, and leaves a store that can
// be used.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "lumivard/platform/data/check/Check.h"
#include "tests/check/Describe.h"
#include "tests/check/FieldFaults.h"
#include "tests/check/RepairFault.h"
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
    const check::Options options{.reclaim = reclaim, .keep = 100'000};
    const std::string fault = faultOfRepair(*store, options);
    if (!fault.empty()) return words + fault;
    const auto left = check::examine(*store, options);
    std::set<std::wstring> unfound;
    const std::size_t asked = walks::askEverything(*store, unfound);
    const bool everything = left.sound() && hasOnlyContainersAtTop(*store) && !left.byCode.contains("set.empty-name");
    if (everything && asked != walks::byCursors(*store).size()) return words + "not everything can be walked to";
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
    const auto before = walks::reachable(*store);
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
    const auto all = walks::reachable(tree.store);
    const auto near = walks::byCursors(tree.store);
    tree.resize(tree.list, 4);  // the node's list loses the leaf, the table's keeps it
    EXPECT_EQ(lost(all, walks::reachable(tree.store)), "");
    EXPECT_NE(outOfReach(near, walks::byCursors(tree.store)), "");
}

TEST(RepairComparison, SeesAnotherValueAndAnotherName) {
    const auto store = sound::filled();
    const auto before = walks::reachable(*store);
    auto after = before;
    after.begin()->second.value += 'x';
    EXPECT_NE(lost(before, after), "");
    after = before;
    after.begin()->second.name = L"something else";
    EXPECT_NE(lost(before, after), "");
}

}  // namespace
