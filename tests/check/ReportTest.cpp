// What a report tells besides the findings themselves.
#include <gtest/gtest.h>

#include <algorithm>

#include "lumivard/platform/data/check/Check.h"
#include "lumivard/platform/store_contract/ForwardingStore.h"
#include "tests/check/Describe.h"
#include "tests/check/SmallTree.h"

namespace {

using namespace lumivard::platform::test_support;
namespace check = lumivard::platform::data::check;
using lumivard::platform::store_contract::ForwardingStore;

TEST(Report, CountsRecordsByKindAndTheirBytes) {
    SmallTree tree;
    const auto before = check::examine(tree.store);
    EXPECT_EQ(before.byKind, (std::array<std::uint64_t, 6>{1, 1, 2, 5, 3, 1}));
    EXPECT_EQ(before.records, 13u);
    EXPECT_EQ(before.reached, 13u);
    EXPECT_EQ(before.depth, 3u);
    EXPECT_EQ(before.bytes, before.reachedBytes);
    const unsigned int stray = tree::container(&tree.store, L"stray");
    const auto report = check::examine(tree.store);
    EXPECT_EQ(report.records, 14u);
    EXPECT_EQ(report.reached, 13u);
    EXPECT_EQ(report.bytes - report.reachedBytes, tree.store.size(stray));
}

TEST(Report, KeepsTheFirstFindingsAndCountsAll) {
    SmallTree tree;
    for (const unsigned int item : {tree.value, tree.leaf, tree.node}) tree.word(item, 5, 1);
    for (std::size_t keep = 0; keep < 5; ++keep) {
        const auto report = check::examine(tree.store, {.keep = keep});
        EXPECT_EQ(report.findings.size(), std::min<std::size_t>(keep, 3));
        EXPECT_EQ(report.total(), 3u);
        EXPECT_EQ(report.byCode.at("live.stale-count"), 3u);
        EXPECT_EQ(report.count(check::tSeverity::kStale), 3u);
        EXPECT_TRUE(keep == 0 || report.findings.front().offset == tree.node);
    }
}

TEST(Report, IsOrderedByOffsetThenByCode) {
    SmallTree tree;
    tree.byte(tree.node, 18, 9);
    tree.byte(tree.node, 13, 0x80);
    tree.word(tree.node, 5, 1);
    tree.word(tree.group, 5, 1);
    std::string order;
    for (const auto& finding : check::examine(tree.store).findings) order += std::string(finding.code) + " ";
    EXPECT_EQ(order, "live.stale-count live.stale-count record.container-type record.flags ");
}

TEST(Report, TellsThePathOfItemsAndOfWhatTheyHave) {
    SmallTree tree;
    const auto path = [&](unsigned int offset) {
        for (const auto& finding : check::examine(tree.store).findings) {
            if (finding.offset == offset) return finding.path;
        }
        return std::wstring(L"(no finding)");
    };
    tree.word(tree.value, 5, 1);
    tree.byte(tree.names, 1, 0);
    tree.grow(tree.list, 1);
    tree.word(0, 5, 1);
    const unsigned int stray = tree::container(&tree.store, L"stray");
    EXPECT_EQ(path(tree.value), L"group.table.value");
    EXPECT_EQ(path(tree.names), L"group.node");
    EXPECT_EQ(path(tree.list), L"group.node");
    EXPECT_EQ(path(0), L"");
    EXPECT_EQ(path(stray), L"");
}

TEST(Report, ShortensLongPaths) {
    SmallTree tree;
    unsigned int owner = tree.leaf;
    for (int i = 0; i < 120; ++i) owner = tree::addContainer(&tree.store, owner, L"d");
    tree.word(owner, 5, 1);
    const auto report = check::examine(tree.store);
    ASSERT_EQ(report.findings.size(), 1u);
    EXPECT_EQ(report.findings[0].path.substr(0, 5), L"...d.");
    EXPECT_EQ(std::count(report.findings[0].path.begin(), report.findings[0].path.end(), L'd'), 100);
}

TEST(Report, ShortensLongNamesInPaths) {
    SmallTree tree;
    const std::wstring name(1'000'000, L'n');
    unsigned int owner = tree.leaf;
    for (int i = 0; i < 3; ++i) owner = tree::addContainer(&tree.store, owner, name.c_str());
    tree.word(owner, 5, 1);
    const auto report = check::examine(tree.store);
    ASSERT_EQ(report.findings.size(), 1u);
    const std::wstring shown = std::wstring(60, L'n') + L'\u2026';
    EXPECT_EQ(report.findings[0].path, L"group.node.leaf." + shown + L"." + shown + L"." + shown);
}

TEST(Report, BoundsTheLengthOfAPath) {
    SmallTree tree;
    const std::wstring name(80, L'n');
    unsigned int owner = tree.leaf;
    for (int i = 0; i < 40; ++i) owner = tree::addContainer(&tree.store, owner, name.c_str());
    tree.word(owner, 5, 1);
    const auto report = check::examine(tree.store);
    ASSERT_EQ(report.findings.size(), 1u);
    EXPECT_EQ(report.findings[0].path.substr(0, 4), L"...n");
    EXPECT_LT(report.findings[0].path.size(), 1100u);
}

TEST(Report, CountsWhatNothingReaches) {
    SmallTree tree;
    EXPECT_EQ(check::examine(tree.store).unattached, 0u);
    const unsigned int stray = tree::container(&tree.store, L"stray");
    const auto report = check::examine(tree.store);
    EXPECT_EQ(report.unattached, 1u);
    EXPECT_EQ(report.unattachedBytes, tree.store.size(stray));
}

TEST(Report, SaysWhatWasFoundAndWhatARepairDoes) {
    SmallTree tree;
    tree.word(tree.leaf, 1, tree.value);
    EXPECT_EQ(describe(check::examine(tree.store)),
              "graph.parent-differs @" + std::to_string(tree.leaf) + " group.node.leaf: listed by record " +
                  std::to_string(tree.node) + ", its parent is record " + std::to_string(tree.value) +
                  ", a primitive; set to " + std::to_string(tree.node) + "\n");
}

TEST(Report, IsTheSameEveryTime) {
    SmallTree tree;
    tree.word(tree.leaf, 14, tree.list);
    tree.enlist(tree.leaf, tree.group);
    EXPECT_EQ(describe(check::examine(tree.store)), describe(check::examine(tree.store)));
}

TEST(Options, LeaveRulesOut) {
    SmallTree tree;
    tree.word(tree.node, 5, 1);
    EXPECT_TRUE(check::examine(tree.store, {.without = {"live.stale-count"}}).clean());
    EXPECT_TRUE(check::plan(tree.store, {.without = {"live.stale-count"}}).steps.empty());
}

TEST(Options, LookAtValuesOnlyWhenAsked) {
    SmallTree tree;
    tree.word(tree.value, 22, 7);
    EXPECT_TRUE(check::examine(tree.store).clean());
    EXPECT_FALSE(check::examine(tree.store, {.whole = true}).clean());
}

/// A store with an extent that says nothing about its offsets.
class Vast final : public ForwardingStore {
public:
    Vast(IDataStore& under, unsigned long long extent) : ForwardingStore(under), _extent(extent) {}
    unsigned long long extent() override { return _extent; }
    unsigned int size(unsigned int offset) override {
        ++asked;
        return ForwardingStore::size(offset);
    }
    unsigned long long asked = 0;

private:
    unsigned long long _extent;
};

/// Counts how often one record is read.
class Counting final : public ForwardingStore {
public:
    Counting(IDataStore& under, unsigned int offset) : ForwardingStore(under), _offset(offset) {}
    void read(unsigned int offset, void* buffer, unsigned int size) override {
        if (offset == _offset) ++reads;
        ForwardingStore::read(offset, buffer, size);
    }
    int reads = 0;

private:
    unsigned int _offset;
};

TEST(SharedList, IsReadNoMoreOftenForMoreOwners) {
    const auto reads = [](int owners) {
        SmallTree tree;
        for (int i = 0; i < owners; ++i) {
            const std::wstring name = L"o" + std::to_wstring(i);
            tree.word(tree::addContainer(&tree.store, tree.group, name.c_str()), 14, tree.list);
        }
        // The items name an owner to whom the walk comes last.
        tree.word(tree.leaf, 1, stored::children(&tree.store, tree.group).back());
        Counting store(tree.store, tree.list);
        EXPECT_EQ(check::examine(store).byCode.at("reference.shared"), static_cast<std::uint64_t>(owners));
        return store.reads;
    };
    EXPECT_EQ(reads(200), reads(2));
}

TEST(Offsets, AreFollowedWhereTheyAreTooManyToBeAskedFor) {
    SmallTree tree;
    tree.word(tree.leaf, 5, 1);
    tree::container(&tree.store, L"stray");
    Vast store(tree.store, 1ull << 32);
    const auto report = check::examine(store);
    EXPECT_FALSE(report.searched);
    EXPECT_EQ(report.records, 13u);
    EXPECT_EQ(codes(report), "live.stale-count ");
    EXPECT_LT(store.asked, 1000u);
}

TEST(Offsets, AreFollowedBeyondTheExtent) {
    SmallTree tree;
    Vast store(tree.store, 3);
    EXPECT_TRUE(check::examine(store).clean());
    EXPECT_EQ(check::examine(store).records, 13u);
}

TEST(Rules, StandInTheOrderOfTheirCodes) {
    std::vector<std::string> all;
    for (const check::Rule& rule : check::rules()) all.emplace_back(rule.code);
    EXPECT_TRUE(std::is_sorted(all.begin(), all.end()));
    EXPECT_EQ(std::adjacent_find(all.begin(), all.end()), all.end());
    EXPECT_EQ(all.size(), 34u);
}

}  // namespace
