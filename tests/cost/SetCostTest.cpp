// What is done in a set costs what it touches, however many children the set has.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <memory>
#include <string>

#include "lumivard/platform/data.h"
#include "lumivard/platform/data/easy.h"
#include "lumivard/platform/stores.h"
#include "tests/cost/Cost.h"

namespace {

using namespace lumivard::platform;
using namespace lumivard::platform::data;
using core::memory::SharedPtr;
using structure::IContainer;
using structure::IContainerFrontEnd;
using test_support::costOf;
using test_support::CountingStore;
using test_support::tCost;

std::wstring nameOf(unsigned int number) {
    const std::wstring digits = std::to_wstring(number);
    return L"child_" + std::wstring(6 - digits.size(), L'0') + digits;
}

/// A tree in which `top.wide` has so many children, with a number `value` in each.
class WideTree {
public:
    explicit WideTree(unsigned int children) : _under(stores::memory()), _store(*_under) {
        _top = IContainerFrontEnd::toplevel(&_store, L"top");
        _wide = _top->create(IContainer::kGroup, L"wide", nullptr);
        for (unsigned int number = 0; number < children; ++number) {
            const auto child = _wide->create(IContainer::kGroup, nameOf(number).c_str(), nullptr);
            const double value = number;
            child->create(L"value", metadata::kDouble)->set(&value, 0, 1);
        }
        static_cast<void>(_top->container(L"wide"));  // once, so that everybody knows the set
    }

    CountingStore& store() { return _store; }
    IContainer& top() { return *_top; }
    IContainer& wide() { return *_wide; }

private:
    std::unique_ptr<core::storage::datastore::IDataStore> _under;
    CountingStore _store;
    SharedPtr<IContainer> _top;
    SharedPtr<IContainer> _wide;
};

/// What a piece of work costs in a set of a hundred children, after it was done once, which has to be what it costs in
/// one of ten thousand.
tCost costInAnySet(const std::function<void(WideTree&)>& work) {
    WideTree small(100);
    WideTree large(10'000);
    work(small);
    work(large);
    const tCost cost = costOf(small.store(), [&] { work(small); });
    EXPECT_EQ(costOf(large.store(), [&] { work(large); }), cost);
    return cost;
}

TEST(CostInASet, OfOpeningItIsThatOfItsOwnRecord) {
    const tCost cost = costInAnySet([](WideTree& tree) { EXPECT_TRUE(tree.top().container(L"wide")); });
    EXPECT_LE(cost.calls, 12u);
    EXPECT_LE(cost.bytes, 8u);  // one count up and down
    EXPECT_LE(cost.requests, 4);
}

TEST(CostInASet, OfAskingForAChildByItsPathIsThatOfTheWay) {
    const tCost cost = costInAnySet([](WideTree& tree) {
        const auto value = tree.top().property(L"wide.child_000042.value");
        double number = 0;
        EXPECT_TRUE(metadata::IPrimitive::to(value.get())->get(&number, 0, 1));
        EXPECT_EQ(number, 42);
    });
    EXPECT_LE(cost.calls, 24u);
    EXPECT_LE(cost.bytes, 8u);
    EXPECT_LE(cost.requests, 6);
}

/// Takes in numbers.
class Numbers : public structure::IVisitor {
public:
    void primitive(const tPrimitive& item) override {
        double number = 0;
        EXPECT_TRUE(item.get(&number, 0, 1));
        sum += number;
        ++count;
    }
    double sum = 0;
    unsigned int count = 0;
};

TEST(CostInASet, OfVisitingAValueByItsPathIsALookAtEachRecordOnTheWay) {
    const tCost cost = costInAnySet([](WideTree& tree) {
        Numbers numbers;
        EXPECT_TRUE(structure::IVisitor::visit(&tree.store(), L"top.wide.child_000042.value", numbers));
        EXPECT_EQ(numbers.sum, 42);
    });
    EXPECT_LE(cost.calls, 14u);
    EXPECT_EQ(cost.bytes, 0u) << "nothing is written";
    EXPECT_LE(cost.guards, 1u);
    EXPECT_LE(cost.requests, 1) << "room for a name";
}

TEST(CostInASet, OfVisitingAllIsAFewLooksAtEachRecord) {
    for (const unsigned int children : {100u, 10'000u}) {
        WideTree tree(children);
        Numbers numbers;
        const tCost cost =
            costOf(tree.store(), [&] { EXPECT_TRUE(structure::IVisitor::visit(&tree.store(), L"", numbers)); });
        EXPECT_EQ(numbers.count, children);
        EXPECT_LE(cost.calls, children * 6u + 20);
        EXPECT_EQ(cost.bytes, 0u);
        EXPECT_LE(cost.guards, 1u);
        EXPECT_LE(cost.requests, 12) << "whatever there is to be seen";
    }
}

TEST(CostInASet, OfFindingAChildFromTheFrontEndIsThatOfTheWay) {
    const tCost cost = costInAnySet(
        [](WideTree& tree) { EXPECT_TRUE(IContainerFrontEnd::find(&tree.store(), L"top.wide.child_000042")); });
    EXPECT_LE(cost.calls, 24u);
    EXPECT_LE(cost.bytes, 8u);
    EXPECT_LE(cost.requests, 8);
}

TEST(CostInASet, OfAskingWhetherAChildIsThereIsNothingInTheStore) {
    const tCost cost = costInAnySet([](WideTree& tree) { EXPECT_TRUE(tree.wide().has(L"child_000042")); });
    EXPECT_EQ(cost.calls, 0u);
    EXPECT_LE(cost.requests, 1);
}

TEST(CostInASet, OfGoingToTheOwnerIsThatOfItsOwnRecord) {
    const tCost cost = costInAnySet([](WideTree& tree) {
        const auto child = tree.wide().container(L"child_000007");
        EXPECT_TRUE(child->parent());
    });
    EXPECT_LE(cost.calls, 24u);
    EXPECT_LE(cost.bytes, 16u);
}

TEST(CostInASet, OfTakingAChildOutOfACursorIsThatOfTheChild) {
    WideTree small(100);
    WideTree large(10'000);
    const auto step = [](WideTree& tree) {
        const auto children = tree.wide().containers();
        return costOf(tree.store(), [&] {
            EXPECT_TRUE(children->next());
            EXPECT_TRUE(children->current());
        });
    };
    const tCost cost = step(small);
    EXPECT_EQ(step(large), cost);
    EXPECT_LE(cost.calls, 16u);
    EXPECT_LE(cost.bytes, 8u);
}

/// What it costs to make one more child, where growing tables of names do not disturb: the least of several.
tCost leastCostOfAChild(WideTree& tree, const std::function<void(WideTree&, const wchar_t*)>& make) {
    tCost least{~0ull, ~0ull, ~0ull, 1'000'000};
    for (unsigned int number = 0; number < 8; ++number) {
        const std::wstring name = nameOf(900'000 + number);
        const tCost cost = costOf(tree.store(), [&] { make(tree, name.c_str()); });
        if (cost.requests < least.requests) least = cost;
    }
    return least;
}

TEST(CostInASet, OfMakingAChildIsThatOfTheChild) {
    WideTree small(100);
    WideTree large(10'000);
    const auto make = [](WideTree& tree, const wchar_t* name) {
        EXPECT_TRUE(tree.wide().create(IContainer::kGroup, name, nullptr));
    };
    const tCost cost = leastCostOfAChild(small, make);
    EXPECT_EQ(leastCostOfAChild(large, make), cost);
    EXPECT_LE(cost.calls, 16u);
    EXPECT_LE(cost.bytes, 200u);
}

TEST(CostInASet, OfMakingAChildAndOpeningTheSetAnewIsThatOfBoth) {
    WideTree small(100);
    WideTree large(10'000);
    const auto make = [](WideTree& tree, const wchar_t* name) {
        EXPECT_TRUE(tree.wide().create(IContainer::kGroup, name, nullptr));
        EXPECT_TRUE(tree.top().container((std::wstring(L"wide.") + name).c_str())->parent());
    };
    const tCost cost = leastCostOfAChild(small, make);
    EXPECT_EQ(leastCostOfAChild(large, make), cost);
    EXPECT_LE(cost.calls, 50u);
}

TEST(CostInASet, OfMakingAChildByItsPathIsThatOfTheChild) {
    WideTree small(100);
    WideTree large(10'000);
    const auto make = [](WideTree& tree, const wchar_t* name) {
        EXPECT_TRUE(easy::make(tree.wide(), name));
        EXPECT_TRUE(easy::makeTable(tree.wide(), std::wstring(name) + L"_table"));
        EXPECT_TRUE(easy::set(tree.wide(), std::wstring(name) + L"_value", 1));
    };
    const tCost cost = leastCostOfAChild(small, make);
    EXPECT_EQ(leastCostOfAChild(large, make), cost);
    EXPECT_LE(cost.calls, 130u);
}

/// As they are where two objects that are open over one set make children in it.
TEST(CostInASet, OfMakingAChildByItsPathIsNoCopyOfAllNames) {
    WideTree tree(10'000);
    std::size_t least = std::numeric_limits<std::size_t>::max();
    for (unsigned int number = 0; number < 8; ++number) {
        const std::wstring name = nameOf(900'000 + number);
        costOf(tree.store(), [&] {
            EXPECT_TRUE(easy::make(tree.wide(), name));
            EXPECT_TRUE(easy::makeTable(tree.wide(), name + L"_table"));
            EXPECT_TRUE(easy::set(tree.wide(), name + L"_value", 1));
        });
        least = std::min(least, test_support::fault::allocations::largest());
    }
    EXPECT_LE(least, 4096u);
}

TEST(CostInASet, OfSettingAValueByItsPathIsThatOfTheWay) {
    const tCost cost =
        costInAnySet([](WideTree& tree) { EXPECT_TRUE(easy::set(tree.top(), L"wide.child_000042.value", 1.0)); });
    EXPECT_LE(cost.calls, 40u);
    EXPECT_LE(cost.requests, 12);
}

TEST(CostInASet, OfAChangeOfAValueIsNoNewLookAtTheSet) {
    const tCost cost = costInAnySet([](WideTree& tree) {
        const auto value = tree.top().property(L"wide.child_000042.value");
        const double number = 1;
        EXPECT_TRUE(metadata::IPrimitive::to(value.get())->set(&number, 0, 1));
        EXPECT_TRUE(tree.top().container(L"wide"));
    });
    EXPECT_LE(cost.calls, 40u);
}

// Whoever changes records by another way than the library may have changed anything.
TEST(CostInASet, OfOpeningItAfterAForeignChangeIsThatOfAllItsChildren) {
    WideTree tree(1000);
    const unsigned int foreign = tree.store().create("?", 1);
    const tCost cost = costOf(tree.store(), [&] { EXPECT_TRUE(tree.top().container(L"wide")); });
    EXPECT_GE(cost.calls, 1000u);
    tree.store().update(foreign, "!", 1, false);
    EXPECT_LE(costOf(tree.store(), [&] { EXPECT_TRUE(tree.top().container(L"wide")); }).calls, 12u);
    tree.store().update(foreign, "!", 1, true);
    EXPECT_GE(costOf(tree.store(), [&] { EXPECT_TRUE(tree.top().container(L"wide")); }).calls, 1000u);
}

}  // namespace
