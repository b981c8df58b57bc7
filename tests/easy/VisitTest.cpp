// A subtree shown to lambdas.
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/easy/EasyFixture.h"
#include "tests/support/SmallStack.h"

namespace {

using namespace lumivard::platform::test_support;
using easy::tAt;
using easy::tContainer;
using easy::tPrimitive;
using easy::tTable;
using testing::ElementsAre;
using testing::IsEmpty;

class EasyVisit : public EasyTest {
protected:
    void fill() {
        const auto all = top();
        all->create(L"first", metadata::kInt32);
        const auto table = all->create(L"table", kNoSchema);
        table->create(L"value", metadata::kDouble, units::kMeter);
        all->create(IContainer::kNode, L"node", kNoSchema)->create(L"own", metadata::kInt8);
        all->create(L"last", metadata::kString);
    }

    /// Path and depth of all that is shown.
    tNames shown(easy::Place where, std::wstring_view path) {
        tNames all;
        found = easy::visit(where, path, [&](const auto&, const tAt& at) {
            all.push_back(std::to_wstring(at.depth) + L" " + std::wstring(at.path));
        });
        return all;
    }

    bool found = false;
};
LVP_ON_EACH_STORE(EasyVisit);

TEST_P(EasyVisit, TellsWhereEachItemStands) {
    fill();
    EXPECT_THAT(shown(store(), L""), ElementsAre(L"0 top", L"1 top.first", L"1 top.table", L"2 top.table.value",
                                                 L"1 top.node", L"2 top.node.own", L"1 top.last"));
    EXPECT_THAT(shown(model(), L""),
                ElementsAre(L"0 first", L"0 table", L"1 table.value", L"0 node", L"1 node.own", L"0 last"));
    EXPECT_THAT(shown(store(), L"top.table"), ElementsAre(L"0 top.table", L"1 top.table.value"));
    EXPECT_THAT(shown(model(), L"node.own"), ElementsAre(L"0 node.own"));
    EXPECT_TRUE(found);
}

TEST_P(EasyVisit, TellsThePathOfThePrimitiveThatAPathGoesOneNameBeyond) {
    fill();
    EXPECT_THAT(shown(store(), L"top.first.beyond"), ElementsAre(L"0 top.first"));
    EXPECT_THAT(shown(model(), L"first.beyond"), ElementsAre(L"0 first"));
    EXPECT_THAT(shown(model(), L"table.value.beyond"), ElementsAre(L"0 table.value"));
}

TEST_P(EasyVisit, TellsPathsThatGetTakes) {
    fill();
    easy::set(model(), L"first", 3);
    int sum = 0;
    easy::visit(model(), L"",
                [&](const tPrimitive&, const tAt& at) { sum += easy::get<int>(model(), at.path).value_or(0); });
    EXPECT_EQ(sum, 3);
}

TEST_P(EasyVisit, TellsNamesWithADotAsTheyAre) {
    const auto odd = top()->create(IContainer::kGroup, L"set", kNoSchema);
    odd->create(L"a.b", metadata::kInt32);
    EXPECT_THAT(shown(model(), L""), ElementsAre(L"0 set", L"1 set.a.b"));
}

TEST_P(EasyVisit, FindsNothingWhereNothingIs) {
    EXPECT_THAT(shown(model(), L"nothing"), IsEmpty());
    EXPECT_FALSE(found);
    EXPECT_THAT(shown(find(L"nothing"), L""), IsEmpty());
    EXPECT_FALSE(found);
    EXPECT_THAT(shown(static_cast<IDataStore*>(nullptr), L""), IsEmpty());
    EXPECT_FALSE(found);
    EXPECT_THAT(shown(other(), L""), IsEmpty());
    EXPECT_FALSE(found);
}

TEST_P(EasyVisit, HandsEachKindOfItemToItsLambda) {
    fill();
    tNames primitives, tables, containers;
    EXPECT_TRUE(easy::visit(
        store(), L"", [&](const tPrimitive& item) { primitives.emplace_back(item.name); },
        [&](const tTable& item) { tables.emplace_back(item.name); },
        [&](const tContainer& item, const tAt&) { containers.emplace_back(item.name); }));
    EXPECT_THAT(primitives, ElementsAre(L"first", L"value", L"own", L"last"));
    EXPECT_THAT(tables, ElementsAre(L"table"));
    EXPECT_THAT(containers, ElementsAre(L"top", L"node"));
}

TEST_P(EasyVisit, GoesThroughSetsThatNoLambdaTakes) {
    fill();
    tNames primitives;
    easy::visit(model(), L"", [&](const tPrimitive& item) { primitives.emplace_back(item.name); });
    EXPECT_THAT(primitives, ElementsAre(L"first", L"value", L"own", L"last"));
}

TEST_P(EasyVisit, PassesOverWhatALambdaDoesNotWant) {
    fill();
    tNames seen;
    easy::visit(
        model(), L"", [&](const tPrimitive&, const tAt& at) { seen.emplace_back(at.path); },
        [](const tTable&) { return false; }, [](const tContainer&, const tAt&) { return true; });
    EXPECT_THAT(seen, ElementsAre(L"first", L"node.own", L"last")) << "with paths that are not the closed table's";
}

TEST_P(EasyVisit, LetsOutWhatALambdaThrows) {
    fill();
    EXPECT_THROW(easy::visit(model(), L"", [](const tPrimitive&) { throw std::runtime_error("enough"); }),
                 std::runtime_error);
    EXPECT_TRUE(easy::set(model(), L"first", 1)) << "no guard is held";
}

TEST_P(EasyVisit, LetsALambdaChangeTheStore) {
    fill();
    tNames seen;
    easy::visit(model(), L"", [&](const tPrimitive& item, const tAt& at) {
        seen.emplace_back(at.path);
        if (item.name == L"first") top()->destroy(L"node");
    });
    EXPECT_THAT(seen, ElementsAre(L"first", L"table.value", L"last"));
}

TEST(EasyVisitOfDepth, TakesNoStack) {
    static constexpr unsigned int kDepth = 20000;
    onASmallStack([] {
        const auto store = lumivard::platform::stores::memory();
        auto deepest = easy::make(store.get(), L"d");
        for (unsigned int i = 0; i < kDepth; ++i) deepest = deepest->create(IContainer::kGroup, L"d", kNoSchema);
        unsigned int depth = 0;
        std::size_t length = 0;
        easy::visit(store.get(), L"", [&](const tContainer&, const tAt& at) {
            depth = at.depth;
            length = at.path.size();
        });
        EXPECT_EQ(depth, kDepth);
        EXPECT_EQ(length, 2 * kDepth + 1);
    });
}

}  // namespace
