// Depth costs no stack.
#include <gtest/gtest.h>

#include "lumivard/platform/data/check/Check.h"
#include "lumivard/platform/stores.h"
#include "record/Container.h"
#include "record/Offsets.h"
#include "record/Root.h"
#include "tests/support/SmallStack.h"
#include "tests/support/StoredRecords.h"

namespace {

using namespace lumivard::platform::test_support;
namespace check = lumivard::platform::data::check;
namespace stores = lumivard::platform::stores;
namespace Record = lumivard::platform::data::Record;

constexpr unsigned int kLevels = 100'000;

/// A root and containers, each in the one before it; the offset of the last.
unsigned int chain(Record::IDataStore& store) {
    unsigned int owner = Record::Root(&store, L"root").offset();
    for (unsigned int i = 0; i < kLevels; ++i) {
        Record::Offsets list(&store);
        Record::Container item(&store, L"level");
        list.add(item.offset());
        item.parent(owner);
        item.update(true);
        Record::Entity above(&store, owner);
        above.children(list.offset());
        above.update(true);
        owner = item.offset();
    }
    return owner;
}

TEST(DeepTree, IsExaminedOnASmallStack) {
    const auto store = stores::memory();
    chain(*store);
    onASmallStack([&] {
        const auto report = check::examine(*store, {.whole = true});
        EXPECT_TRUE(report.clean());
        EXPECT_EQ(report.depth, kLevels);
        EXPECT_EQ(report.reached, 2u * kLevels + 1);
    });
}

TEST(DeepTree, IsRepairedOnASmallStack) {
    const auto store = stores::memory();
    const unsigned int last = chain(*store);
    stored::enlist(store.get(), last, 2);
    stored::putWord(store.get(), last, stored::kRefs, 1);
    onASmallStack([&] {
        const auto plan = check::plan(*store);
        EXPECT_EQ(plan.before.byCode.at("graph.cycle"), 1u);
        EXPECT_TRUE(check::apply(*store, plan));
        EXPECT_TRUE(check::examine(*store).clean());
    });
}

TEST(DeepTree, ThatNothingReachesIsErasedOnASmallStack) {
    const auto store = stores::memory();
    chain(*store);
    stored::putWord(store.get(), 0, stored::kChildren, Record::Base::BADOFF);
    onASmallStack([&] {
        const auto plan = check::plan(*store, {.reclaim = true});
        EXPECT_EQ(plan.steps.size(), 2u * kLevels);
        EXPECT_TRUE(check::apply(*store, plan));
        EXPECT_EQ(check::examine(*store).records, 1u);
    });
}

}  // namespace
