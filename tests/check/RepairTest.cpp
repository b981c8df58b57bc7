// What a repair does about each finding.
#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <set>
#include <string>

#include "lumivard/platform/core.h"
#include "lumivard/platform/data/check/Check.h"
#include "lumivard/platform/store_contract/FailingStore.h"
#include "lumivard/platform/store_contract/ForwardingStore.h"
#include "record/Entity.h"
#include "tests/check/Describe.h"
#include "tests/check/PlaceFaults.h"
#include "tests/check/RepairFault.h"
#include "tests/check/SmallTree.h"
#include "tests/check/SoundStores.h"
#include "tests/check/Walks.h"
#include "tests/support/Offsets.h"
#include "tests/support/Sanitized.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::store_contract::FailingStore;
using lumivard::platform::store_contract::ForwardingStore;
using lumivard::platform::store_contract::InjectedFailure;
namespace check = lumivard::platform::data::check;
namespace data = lumivard::platform::data;
namespace core = lumivard::platform::core;

using lumivard::platform::test_support::BADOFF;

/// Repairs a store, and looks that nothing is left to be done.
check::Repair repair(core::storage::datastore::IDataStore& store, const check::Options& options = {}) {
    const auto plan = check::plan(store, options);
    EXPECT_TRUE(check::apply(store, plan));
    EXPECT_EQ(describe(check::examine(store, options)), describe(plan.after));
    EXPECT_TRUE(check::plan(store, options).steps.empty());
    return plan;
}

std::vector<unsigned int> entries(SmallTree& tree, unsigned int owner) {
    return stored::children(&tree.store, owner);
}

TEST(Repair, DoesNothingToASoundStore) {
    SmallTree tree;
    const auto plan = check::plan(tree.store);
    EXPECT_TRUE(plan.steps.empty());
    EXPECT_TRUE(plan.before.clean());
    EXPECT_TRUE(check::apply(tree.store, plan));
}

TEST(Repair, SetsStaleCountsToZero) {
    SmallTree tree;
    tree.word(tree.node, 5, 3);
    tree.word(tree.value, 5, BADOFF);
    const auto plan = repair(tree.store);
    EXPECT_EQ(plan.steps.size(), 2u);
    EXPECT_EQ(stored::refs(&tree.store, tree.node), 0u);
    EXPECT_EQ(stored::refs(&tree.store, tree.value), 0u);
    EXPECT_TRUE(plan.after.clean());
}

TEST(Repair, CutsReferencesToNothing) {
    SmallTree tree;
    tree.word(tree.leaf, 14, 999);
    tree.word(tree.leaf, 9, tree.value);
    tree.word(tree.below, 22, tree.leaf);
    EXPECT_TRUE(repair(tree.store).after.clean());
    EXPECT_EQ(stored::word(&tree.store, tree.leaf, 14), BADOFF);
    EXPECT_EQ(stored::word(&tree.store, tree.leaf, 9), BADOFF);
    EXPECT_EQ(stored::word(&tree.store, tree.below, 22), BADOFF);
}

TEST(Repair, DropsEntriesThatNameNoItem) {
    SmallTree tree;
    tree.enlist(tree.group, 999);
    tree.enlist(tree.group, tree.list);
    tree.enlist(tree.group, tree.node);
    tree.enlist(tree.group, 0);
    EXPECT_TRUE(repair(tree.store).after.clean());
    EXPECT_EQ(entries(tree, tree.group), (std::vector{tree.node, tree.table}));
}

TEST(Repair, CutsOffPartsOfEntries) {
    SmallTree tree;
    tree.grow(tree.list, 2);
    EXPECT_TRUE(repair(tree.store).after.clean());
    EXPECT_EQ(entries(tree, tree.node), std::vector{tree.leaf});
    EXPECT_EQ(tree.store.size(tree.list), 8u);
}

TEST(Repair, GivesAnItemTheParentThatListsIt) {
    SmallTree tree;
    tree.word(tree.leaf, 1, tree.value);
    tree.word(0, 1, tree.value);
    EXPECT_TRUE(repair(tree.store).after.clean());
    EXPECT_EQ(stored::word(&tree.store, tree.leaf, 1), tree.node);
    EXPECT_EQ(stored::word(&tree.store, 0, 1), BADOFF);
}

TEST(Repair, LeavesAnItemWhereItSaysThatItStands) {
    SmallTree tree;
    // The root comes first on every walk.
    tree.enlist(tree.root, tree.leaf);
    EXPECT_TRUE(repair(tree.store).after.clean());
    EXPECT_EQ(entries(tree, tree.root), std::vector{tree.group});
    EXPECT_EQ(entries(tree, tree.node), std::vector{tree.leaf});
}

TEST(Repair, LeavesAnItemWhereItIsMetFirstWhenItSaysNothing) {
    SmallTree tree;
    tree.enlist(tree.root, tree.leaf);
    tree.word(tree.leaf, 1, 999);
    EXPECT_TRUE(repair(tree.store).after.clean());
    EXPECT_EQ(entries(tree, tree.root), (std::vector{tree.group, tree.leaf}));
    EXPECT_EQ(entries(tree, tree.node), std::vector<unsigned int>{});
    EXPECT_EQ(stored::word(&tree.store, tree.leaf, 1), tree.root);
}

TEST(Repair, CutsARingWhereItReturns) {
    SmallTree tree;
    tree.enlist(tree.leaf, tree.group);
    EXPECT_TRUE(repair(tree.store).after.clean());
    EXPECT_EQ(entries(tree, tree.leaf), std::vector<unsigned int>{});
    EXPECT_EQ(entries(tree, tree.root), std::vector{tree.group});
}

TEST(Repair, CutsARingThoughTheItemsNameEachOther) {
    SmallTree tree;
    tree.enlist(tree.leaf, tree.group);
    tree.word(tree.group, 1, tree.leaf);
    EXPECT_TRUE(repair(tree.store).after.clean());
    EXPECT_EQ(entries(tree, tree.root), std::vector{tree.group});
    EXPECT_EQ(stored::word(&tree.store, tree.group, 1), tree.root);
}

TEST(Repair, GivesAListToTheOwnerThatItsItemsName) {
    SmallTree tree;
    // The node comes before the table on every walk.
    const unsigned int all = stored::word(&tree.store, tree.table, 14);
    tree.word(tree.node, 14, all);
    EXPECT_TRUE(repair(tree.store).after.sound());
    EXPECT_EQ(stored::word(&tree.store, tree.table, 14), all);
    EXPECT_EQ(stored::word(&tree.store, tree.node, 14), BADOFF);
}

TEST(Repair, GivesAListThatCannotBeReachedOtherwiseToWhoeverReachesIt) {
    SmallTree tree;
    const unsigned int all = stored::word(&tree.store, tree.table, 14);
    tree.word(tree.node, 14, all);
    tree.word(stored::word(&tree.store, tree.group, 14), 8, 999);  // the table leaves the group
    repair(tree.store);
    EXPECT_EQ(stored::word(&tree.store, tree.node, 14), all);
    EXPECT_EQ(stored::word(&tree.store, tree.value, 1), tree.node);
    EXPECT_EQ(stored::word(&tree.store, tree.table, 14), BADOFF);
}

TEST(Repair, LeavesAnItemWhereCursorsGetToItWhateverItSays) {
    SmallTree tree;
    tree.enlist(tree.table, tree.leaf);
    tree.word(tree.leaf, 1, tree.table);
    EXPECT_TRUE(repair(tree.store).after.clean());
    EXPECT_EQ(entries(tree, tree.node), std::vector{tree.leaf});
    EXPECT_EQ(entries(tree, tree.table), (std::vector{tree.value, tree.below}));
    EXPECT_EQ(stored::word(&tree.store, tree.leaf, 1), tree.node);
}

TEST(Repair, LeavesWhatIsBelowAnItemWhereCursorsGetToIt) {
    SmallTree tree;
    const unsigned int hidden = tree::container(&tree.store, L"hidden");
    tree::add(&tree.store, tree.table, hidden);
    const unsigned int both = tree::addContainer(&tree.store, hidden, L"both");
    tree.enlist(tree.node, both);
    repair(tree.store);
    EXPECT_EQ(entries(tree, tree.node), (std::vector{tree.leaf, both}));
    EXPECT_EQ(entries(tree, hidden), std::vector<unsigned int>{});
}

TEST(Repair, LeavesAListToTheOwnerFromWhichCursorsGetToItsItems) {
    SmallTree tree;
    tree.word(tree.table, 14, tree.list);
    tree.word(tree.leaf, 1, tree.table);
    EXPECT_TRUE(repair(tree.store).after.sound());
    EXPECT_EQ(stored::word(&tree.store, tree.node, 14), tree.list);
    EXPECT_EQ(stored::word(&tree.store, tree.table, 14), BADOFF);
    EXPECT_EQ(stored::word(&tree.store, tree.leaf, 1), tree.node);
}

TEST(Repair, LeavesAListToSuchAnOwnerThoughItIsMetLater) {
    SmallTree tree;
    tree.word(tree.table, 14, tree.list);
    const unsigned int all = stored::word(&tree.store, tree.group, 14);
    tree.word(all, 4, tree.table);
    tree.word(all, 8, tree.node);
    EXPECT_TRUE(repair(tree.store).after.sound());
    EXPECT_EQ(stored::word(&tree.store, tree.node, 14), tree.list);
    EXPECT_EQ(stored::word(&tree.store, tree.table, 14), BADOFF);
}

/// Puts a value right under the root, where no cursor gets to, and gives a set the root's list, so that they do.
unsigned int shareValueAtTop(SmallTree& tree, unsigned int set) {
    const unsigned int value = tree::primitive(&tree.store, L"value", data::metadata::kUInt8);
    tree.enlist(tree.root, value);
    tree.word(value, 1, tree.root);
    tree.word(set, 14, stored::word(&tree.store, tree.root, 14));
    return value;
}

TEST(Repair, CutsNoWayThatIsTheOnlyOneForCursors) {
    SmallTree tree;
    const unsigned int value = shareValueAtTop(tree, tree.group);
    repair(tree.store);
    EXPECT_EQ(stored::word(&tree.store, tree.group, 14), stored::word(&tree.store, tree.root, 14));
    EXPECT_EQ(entries(tree, tree.root).back(), value);
}

// Nothing but another list could end this ring, and a repair makes no records. What walks through a whole store
// remembers where it has been.
TEST(Repair, TellsOfARingThatItCannotCut) {
    SmallTree tree;
    shareValueAtTop(tree, tree.leaf);
    const auto plan = repair(tree.store);
    EXPECT_EQ(codes(plan.before), "graph.cycle graph.misplaced reference.shared ");
    EXPECT_EQ(codes(plan.after), codes(plan.before));
    EXPECT_FALSE(plan.after.sound());
    core::io::MemoryWriter document;
    data::format::xml::IXMLFrontEnd::serialize(&tree.store, &document, nullptr, 0);
    EXPECT_FALSE(document.bytes().empty());
    const auto other = data::structure::IContainerFrontEnd::toplevel(&tree.store, L"other");
    EXPECT_TRUE(other->copy(data::structure::IContainerFrontEnd::find(&tree.store, L"group")));
}

TEST(Repair, CutsARingThatNoCursorGetsTo) {
    SmallTree tree;
    const unsigned int hidden = tree::container(&tree.store, L"hidden");
    tree::add(&tree.store, tree.table, hidden);
    tree.word(hidden, 14, stored::word(&tree.store, tree.table, 14));
    EXPECT_TRUE(repair(tree.store).after.sound());
    EXPECT_EQ(stored::word(&tree.store, hidden, 14), BADOFF);
    EXPECT_EQ(entries(tree, tree.table), (std::vector{tree.value, tree.below, hidden}));
}

TEST(Repair, LeavesSharedNamesAndDefaults) {
    SmallTree tree;
    tree.word(tree.leaf, 9, tree.names);
    tree.word(tree.below, 22, tree.defaults);
    EXPECT_TRUE(check::plan(tree.store).steps.empty());
}

TEST(Repair, TouchesNoListThatMayBeDefaults) {
    SmallTree tree;
    tree.word(tree.below, 14, tree.defaults);
    EXPECT_TRUE(check::plan(tree.store).steps.empty());
    EXPECT_FALSE(check::examine(tree.store).sound());
}

TEST(Repair, RenamesAllButTheFirstOfAName) {
    SmallTree tree;
    for (const wchar_t* name : {L"node", L"node~2", L"node"}) tree.enlistNew(tree.group, name);
    EXPECT_TRUE(repair(tree.store).after.clean());
    std::vector<std::wstring> names;
    for (const unsigned int item : entries(tree, tree.group)) {
        names.push_back(data::Record::Entity(&tree.store, item).name());
    }
    EXPECT_EQ(names, (std::vector<std::wstring>{L"node", L"table", L"node~3", L"node~2", L"node~4"}));
}

TEST(Repair, GuessesNoLengthsAndKinds) {
    for (const auto& plant : std::vector<std::function<void(SmallTree&)>>{
             [](SmallTree& t) { t.word(t.value, 38, 13); },
             [](SmallTree& t) { t.word(t.value, 22, 99); },
             [](SmallTree& t) { t.resize(t.value, 40); },
             [](SmallTree& t) { t.rename(t.node, "no"); },
             [](SmallTree& t) { t.byte(t.node, 18, 9); },
             [](SmallTree& t) { t.texts("x\0\0", 3); },
         }) {
        SmallTree tree;
        plant(tree);
        EXPECT_TRUE(check::plan(tree.store).steps.empty());
        EXPECT_FALSE(check::examine(tree.store).sound());
    }
}

TEST(Repair, LeavesWhatNothingReaches) {
    SmallTree tree;
    const unsigned int stray = tree::container(&tree.store, L"stray");
    EXPECT_TRUE(repair(tree.store).steps.empty());
    EXPECT_NE(tree.store.size(stray), 0u);
}

TEST(Repair, ErasesWhatNothingReachesWhenAsked) {
    SmallTree tree;
    const unsigned int stray = tree::container(&tree.store, L"stray");
    tree::addContainer(&tree.store, stray, L"below");
    tree.word(stray, 5, 1);
    const auto plan = repair(tree.store, {.reclaim = true});
    EXPECT_EQ(plan.steps.size(), 3u);
    EXPECT_TRUE(plan.after.clean());
    EXPECT_EQ(tree.store.size(stray), 0u);
}

// It names the localized names of another record, and children that are gone.
TEST(Repair, ErasesAStrayThatNamesWhatIsNotItsOwnWhenAsked) {
    SmallTree tree;
    const unsigned int copy =
        tree.store.create(stored::bytes(&tree.store, tree.node).data(), tree.store.size(tree.node));
    tree.word(copy, stored::kChildren, 12345);
    const check::Options options{.reclaim = true};
    const auto plan = check::plan(tree.store, options);
    EXPECT_TRUE(plan.before.sound()) << describe(plan.before);
    EXPECT_EQ(plan.before.byCode.at("reference.shared"), 1u);
    EXPECT_EQ(plan.before.byCode.at("reference.children"), 1u);
    ASSERT_TRUE(check::apply(tree.store, plan));
    EXPECT_TRUE(check::examine(tree.store).clean());
    EXPECT_EQ(tree.store.size(copy), 0u);
    EXPECT_NE(tree.store.size(tree.names), 0u);
}

// What hangs below a record that the store does not give out, be it once, seems to be reached by nothing.
TEST(Repair, ErasesNothingElseWhereTheStoreFailsOnce) {
    const check::Options options{.reclaim = true};
    for (int calls = 0;; ++calls) {
        SmallTree tree;
        const unsigned int stray = tree::container(&tree.store, L"stray");
        tree.word(tree.value, stored::kRefs, 1);  // to be mended in a round of its own
        FailingStore failing(tree.store);
        failing.failAfter(calls, FailingStore::kAllCalls, FailingStore::tTimes::kOnce);
        check::Repair plan;
        try {
            plan = check::plan(failing, options);
        } catch (const InjectedFailure&) {
        }
        for (const check::Step& step : plan.steps) {
            EXPECT_TRUE(step.offset == tree.value || step.offset == stray) << step.offset << ", failing at " << calls;
        }
        if (failing.failed() == 0) {
            EXPECT_EQ(plan.steps.size(), 2u);
            EXPECT_GT(calls, 100);
            break;
        }
    }
}

TEST(Repair, ErasesNothingAsLongAsDamageRemains) {
    SmallTree tree;
    tree::container(&tree.store, L"stray");
    tree.word(tree.value, 22, 99);
    EXPECT_TRUE(check::plan(tree.store, {.reclaim = true}).steps.empty());
}

TEST(Repair, NeverErasesWhatDamageOrItsOwnCutsHaveFreed) {
    for (const auto& plant : std::vector<std::function<void(SmallTree&)>>{
             [](SmallTree& t) { t.word(t.node, 14, t.value); },
             [](SmallTree& t) { t.word(t.node, 14, stored::word(&t.store, t.table, 14)); },
             [](SmallTree& t) { t.byte(t.list, 0, 1); },
             [](SmallTree& t) { t.byte(t.node, 0, 3); },
         }) {
        SmallTree tree;
        plant(tree);
        const auto first = check::plan(tree.store, {.reclaim = true});
        EXPECT_FALSE(first.before.sound());
        EXPECT_TRUE(check::apply(tree.store, first));
        EXPECT_NE(tree.store.size(tree.leaf), 0u);
        EXPECT_NE(tree.store.size(tree.list), 0u);
    }
}

TEST(Repair, ErasesInASecondRunWhatTheFirstHasLeft) {
    SmallTree tree;
    tree.word(tree.node, 14, tree.value);
    EXPECT_TRUE(check::apply(tree.store, check::plan(tree.store, {.reclaim = true})));
    EXPECT_TRUE(repair(tree.store, {.reclaim = true}).after.clean());
    EXPECT_EQ(tree.store.size(tree.leaf), 0u);
}

/// Plans and does a repair, letting each call fail once in turn, for as long as one does. `Plant` spoils a tree, `Look`
/// sees what is left of it.
template <class Plant, class Look>
void repairWithEachCallFailing(Plant plant, Look look) {
    for (long long k = 0;; ++k) {
        SmallTree tree;
        plant(tree);
        FailingStore store(tree.store);
        store.failAfter(k, FailingStore::kAllCalls, FailingStore::tTimes::kOnce);
        try {
            check::apply(store, check::plan(store, {.reclaim = true}));
        } catch (const InjectedFailure&) {
        }
        look(tree, k);
        if (store.failed() == 0) break;
    }
}

// A record that could be read a moment ago, when no damage was found.
TEST(Repair, ErasesNothingThatIsReachedWhereTheStoreFailsForAMoment) {
    const auto plant = [](SmallTree& tree) {
        tree.word(tree.node, 5, 3);
        stored::makeList(&tree.store);
    };
    repairWithEachCallFailing(plant, [](SmallTree& tree, long long k) {
        EXPECT_TRUE(check::examine(tree.store).sound()) << k;
        for (unsigned int offset = 0; offset <= tree.list; ++offset) EXPECT_NE(tree.store.size(offset), 0u) << k;
    });
}

TEST(Repair, CutsNoWayForCursorsWhereTheStoreFailsForAMoment) {
    const auto plant = [](SmallTree& tree) { shareValueAtTop(tree, tree.group); };
    repairWithEachCallFailing(plant, [](SmallTree& tree, long long k) {
        EXPECT_EQ(stored::word(&tree.store, tree.group, 14), stored::word(&tree.store, tree.root, 14)) << k;
    });
}

TEST(Repair, CutsNoWayOfWhateverPlacesWhereTheStoreFailsForAMoment) {
    for (unsigned int seed = 0; seed < usually(40); ++seed) {
        std::set<unsigned int> before;
        std::string words;
        const auto plant = [&](SmallTree& tree) {
            std::mt19937_64 random(seed);
            words = plantPlaces(tree.store, random, 5);
            before = walks::byCursors(tree.store);
        };
        repairWithEachCallFailing(plant, [&](SmallTree& tree, long long k) {
            EXPECT_EQ(outOfReach(before, walks::byCursors(tree.store)), "") << words << "failing after " << k;
        });
    }
}

/// A store that gives out one of its records every second time that somebody looks through all.
class Moody final : public ForwardingStore {
public:
    Moody(IDataStore& under, unsigned int offset) : ForwardingStore(under), _offset(offset) {}
    unsigned long long extent() override { return ++_asked, ForwardingStore::extent(); }
    void read(unsigned int offset, void* buffer, unsigned int size) override {
        const bool refuses = _asked % 4 < 2;  // it is asked twice each time
        if (offset == _offset && refuses) throw InjectedFailure("not now");
        ForwardingStore::read(offset, buffer, size);
    }

private:
    const unsigned int _offset;
    unsigned int _asked = 0;
};

TEST(Repair, IsNotPlannedWhereTheStoreGivesOutARecordNowAndThen) {
    SmallTree tree;
    tree.word(tree.value, stored::kRefs, 1);
    Moody store(tree.store, tree.leaf);
    EXPECT_THROW(check::plan(store), std::runtime_error);
    EXPECT_EQ(stored::word(&tree.store, tree.value, stored::kRefs), 1u);
}

/// A store in which another record is stale each time that somebody looks.
class Restless final : public ForwardingStore {
public:
    explicit Restless(SmallTree& tree) : ForwardingStore(tree.store), _tree(tree) {}
    unsigned long long extent() override {
        const unsigned int made = tree::container(&_tree.store, L"another");
        _tree.word(made, 5, 1);
        return ForwardingStore::extent();
    }

private:
    SmallTree& _tree;
};

TEST(Repair, HandsOutNoPlanThatIsNotFinal) {
    SmallTree tree;
    Restless store(tree);
    EXPECT_THROW(check::plan(store), std::runtime_error);
}

TEST(Repair, IsRefusedWhereTheStoreHasChangedSinceThePlan) {
    SmallTree tree;
    tree.word(tree.node, 5, 3);
    tree.word(tree.leaf, 5, 3);
    const auto plan = check::plan(tree.store);
    tree.word(tree.leaf, 5, 4);
    EXPECT_FALSE(check::apply(tree.store, plan));
    EXPECT_EQ(stored::refs(&tree.store, tree.node), 3u);
}

TEST(Repair, FlushesOnceAtItsEnd) {
    SmallTree tree;
    tree.word(tree.node, 5, 3);
    tree.enlist(tree.leaf, tree.group);
    const auto plan = check::plan(tree.store);
    FailingStore store(tree.store);
    store.failAfter(1'000'000, FailingStore::kAllCalls);
    EXPECT_TRUE(check::apply(store, plan));
    EXPECT_EQ(store.count(FailingStore::kFlush), 1);
    EXPECT_EQ(store.count(FailingStore::kUpdate), static_cast<long long>(plan.steps.size()));
    EXPECT_EQ(store.count(FailingStore::kBookkeeping), 0);
}

TEST(Repair, ChangesNothingInPlanning) {
    SmallTree tree;
    tree.word(tree.node, 5, 3);
    tree.enlist(tree.leaf, tree.group);
    FailingStore store(tree.store);
    store.failAfter(0, FailingStore::kAllChanges | FailingStore::kFlush);
    EXPECT_EQ(check::plan(store, {.reclaim = true}).steps.size(), 2u);
    EXPECT_EQ(store.failed(), 0);
}

TEST(Repair, TakesBackWhatItDidWhereTheStoreFails) {
    for (int k = 0; k < 3; ++k) {
        SmallTree tree;
        tree.word(tree.node, 5, 3);
        tree.word(tree.leaf, 5, 3);
        tree.word(tree.value, 5, 3);
        const auto plan = check::plan(tree.store);
        FailingStore store(tree.store);
        store.failAfter(k, FailingStore::kUpdate | FailingStore::kFlush, FailingStore::tTimes::kOnce);
        EXPECT_THROW(check::apply(store, plan), InjectedFailure);
        for (const unsigned int item : {tree.node, tree.leaf, tree.value}) {
            EXPECT_EQ(stored::refs(&tree.store, item), 3u) << k;
        }
    }
}

}  // namespace
