// After any faults a repair loses nothing that could be reached, leaves nothing to be done, and leaves a store that can
// be used.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "lumivard/platform/data/check/Check.h"
#include "tests/check/Describe.h"
#include "tests/check/FieldFaults.h"
#include "tests/check/PlaceFaults.h"
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

TEST(RepairComparison, SeesAnotherName) {
    const auto store = sound::filled();
    const auto before = walks::reachable(*store);
    auto after = before;
    after.begin()->second.name = L"something else";
    EXPECT_NE(lost(before, after), "");
}

/// What the comparison says where a byte of a record is another one; empty where it takes that for the same.
std::string differenceAt(IDataStore& store, unsigned int offset, unsigned int position) {
    const auto before = walks::reachable(store);
    const unsigned char was = stored::byte(&store, offset, position);
    stored::putByte(&store, offset, position, was ^ 1u);
    const std::string difference = lost(before, walks::reachable(store));
    stored::putByte(&store, offset, position, was);
    return difference.substr(difference.rfind(" another ") + 1);
}

TEST(RepairComparison, SeesWhateverElseAnItemTells) {
    SmallTree tree;
    const auto seen = [&](unsigned int offset, unsigned int position) {
        return differenceAt(tree.store, offset, position);
    };
    tree.put(tree.node, stored::bytes(&tree.store, tree.node) + std::string("B\0\0\0\0\0\0\0T\0\0\0\0\0\0\0", 16));
    tree.word(tree.node, 23, 8);
    tree.word(tree.node, 27, 8);
    EXPECT_EQ(seen(tree.node, stored::kFlags), "another flags");
    EXPECT_EQ(seen(tree.node, stored::kContainerType), "another type");
    EXPECT_EQ(seen(tree.node, 52), "another base");
    EXPECT_EQ(seen(tree.node, 60), "another target");
    EXPECT_EQ(seen(tree.names, 8), "another localized names");
    EXPECT_EQ(seen(tree.node, stored::kLocale), "another localized names");

    tree.put(tree.table, stored::bytes(&tree.store, tree.table) + std::string("B\0\0\0\0\0\0\0", 8));
    tree.word(tree.table, 30, 8);
    EXPECT_EQ(seen(tree.table, 60), "another base");
    EXPECT_EQ(seen(tree.defaults, 4), "another defaults");
    EXPECT_EQ(seen(tree.table, 22), "another defaults");

    const std::string value = stored::bytes(&tree.store, tree.value);
    tree.put(tree.value, value.substr(0, 44) + std::string("L\0\0\0\0\0\0\0", 8) + value.substr(44, 24) +
                             std::string("S\0\0\0\0\0\0\0", 8) + value.substr(68));
    tree.word(tree.value, 26, 8);
    tree.word(tree.value, 34, 8);
    EXPECT_EQ(seen(tree.value, 18), "another unit");
    EXPECT_EQ(seen(tree.value, 22), "another kind of value");
    EXPECT_EQ(seen(tree.value, 44), "another locale of the value");
    EXPECT_EQ(seen(tree.value, 76), "another schema");
    EXPECT_EQ(seen(tree.value, 84), "another value");
    const auto before = walks::reachable(tree.store);
    tree.byte(tree.value, 0, 2);
    EXPECT_NE(lost(before, walks::reachable(tree.store)), "");
}

TEST(RepairComparison, PassesOverWhatARepairMaySetRight) {
    SmallTree tree;
    for (const unsigned int position : {stored::kParent, stored::kRefs}) {
        EXPECT_EQ(differenceAt(tree.store, tree.leaf, position), "");
    }
    EXPECT_EQ(differenceAt(tree.store, tree.leaf, stored::kChildren), "");  // from none to nowhere
}

}  // namespace
