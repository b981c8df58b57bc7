// A tree of the library and one in plain memory under the same random operations.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <random>

#include "lumivard/platform/stores.h"
#include "tests/model/FaultyStores.h"
#include "tests/model/RealTree.h"
#include "tests/model/TreeRun.h"
#include "tests/support/Campaign.h"
#include "tests/support/OddStore.h"
#include "tests/support/Sanitized.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivard::platform::model {
namespace {

using core::storage::datastore::IDataStore;
using test_support::effort;
using test_support::seed;

constexpr std::uint64_t kLeg = 500;            // operations between two comparisons of everything
constexpr std::uint64_t kTreeAge = 4000;       // the most for one pair of trees
constexpr std::uint64_t kNoticed = 5'000'000;  // where a fault that was planted has to be noticed at the latest

/// Goes through one pair of trees after the other until `count` operations are done; gives the first difference.
template <class MakeTree>
std::string campaign(std::uint64_t count, MakeTree makeTree, const PlainTree::tRules& rules = {}) {
    std::mt19937_64 random(seed());
    for (std::uint64_t done = 0; done < count;) {
        const std::unique_ptr<RealTree> tree = makeTree();
        TreeRun run(*tree, random(), rules);
        std::uint64_t before = run.done();
        do {
            before = run.done();
            run.go(std::min(kLeg, count - done));
            if (!run.compare()) return run.difference();
            done += run.done() - before;
        } while (run.done() == before + kLeg && run.done() < kTreeAge);
    }
    return {};
}

std::uint64_t operations(std::uint64_t usual) {
    return effort("LVP_TREE_OPERATIONS", test_support::usually(usual));
}

void expectNone(const std::string& difference) {
    EXPECT_TRUE(difference.empty()) << difference;
}

TEST(TreeModel, ATreeInMemoryIsATreeOfStructs) {
    std::unique_ptr<IDataStore> store;
    expectNone(campaign(operations(100'000), [&] {
        store = stores::memory();
        return RealTree::kept(*store);
    }));
}

TEST(TreeModel, ATreeInAStoreOfTheContractAndNoMoreIsATreeOfStructs) {
    std::unique_ptr<IDataStore> store;
    expectNone(campaign(operations(20'000), [&] {
        store = std::make_unique<test_support::OddStore>();
        return RealTree::kept(*store);
    }));
}

TEST(TreeModel, ATreeInAFileIsATreeOfStructsThatOutlivesItsClosing) {
    const TemporaryFolder folder;
    EXPECT_EQ(
        campaign(operations(20'000),
                 [&] {
                     std::filesystem::remove(folder / "a.lvp");
                     return RealTree::reopened([&] { return stores::file(folder / "a.lvp", stores::tMode::kWrite); });
                 }),
        "");
}

/// What a campaign finds over a memory store that does wrong once in so many times. Few operations add to a record.
template <class Faulty>
std::string withFault(unsigned int every) {
    std::unique_ptr<IDataStore> under;
    std::unique_ptr<Faulty> store;
    unsigned int calls = 0;
    return campaign(kNoticed, [&] {
        store.reset();
        under = stores::memory();
        store = std::make_unique<Faulty>(*under, every, calls);
        return RealTree::kept(*store);
    });
}

TEST(TreeModelNotices, AByteThatAStoreDropsInOneOfThreeHundredAppends) {
    EXPECT_NE(withFault<DroppingStore>(300), "");
}

TEST(TreeModelNotices, OneOfAThousandUpdatesThatGoesToTheNeighbour) {
    EXPECT_NE(withFault<NeighbourStore>(1000), "");
}

/// What a campaign finds with a model that does otherwise than the library.
std::string withRules(const PlainTree::tRules& rules) {
    std::unique_ptr<IDataStore> store;
    return campaign(
        kNoticed,
        [&] {
            store = stores::memory();
            return RealTree::kept(*store);
        },
        rules);
}

TEST(TreeModelNotices, ARenameThatReachesOpenObjects) {
    EXPECT_NE(withRules({true, false, false}), "");
}

TEST(TreeModelNotices, CopiesThatShareTheirTexts) {
    EXPECT_NE(withRules({false, true, false}), "");
}

TEST(TreeModelNotices, ADestroyThatIgnoresOpenObjects) {
    EXPECT_NE(withRules({false, false, true}), "");
}

}  // namespace
}  // namespace lumivard::platform::model
