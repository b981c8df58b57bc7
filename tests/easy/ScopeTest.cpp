// The guard of a store, held for several calls.
#include <stdexcept>
#include <thread>

#include "lumivard/platform/store_contract/ForwardingStore.h"
#include "tests/easy/EasyFixture.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::store_contract::ForwardingStore;

/// Counts the guards that are held.
class CountingStore final : public ForwardingStore {
public:
    using ForwardingStore::ForwardingStore;
    ILock* lock() override {
        struct Guard final : ILock {
            explicit Guard(int& count) : held(count) { ++held; }
            ~Guard() override { --held; }
            int& held;
        };
        return new Guard(held);
    }

    int held = 0;
};

class EasyScope : public EasyTest {};
LVP_ON_EACH_STORE(EasyScope);

TEST_P(EasyScope, HoldsTheGuardUntilItEnds) {
    CountingStore counting(*store());
    {
        const easy::Scope scope(&counting);
        EXPECT_EQ(counting.held, 1);
        const easy::Scope inner(&counting);
        EXPECT_EQ(counting.held, 2);
    }
    EXPECT_EQ(counting.held, 0);
}

TEST_P(EasyScope, GivesTheGuardBackOnUnwinding) {
    CountingStore counting(*store());
    try {
        const easy::Scope scope(&counting);
        throw std::runtime_error("on the way");
    } catch (const std::runtime_error&) {
    }
    EXPECT_EQ(counting.held, 0);
}

TEST_P(EasyScope, IsMadeFromAContainer) {
    CountingStore counting(*store());
    const auto container = IContainerFrontEnd::find(&counting, L"top");
    const easy::Scope scope(*container);
    EXPECT_GE(counting.held, 1);
}

TEST_P(EasyScope, OfNothingHoldsNothing) {
    const easy::Scope none(static_cast<IDataStore*>(nullptr));
    const easy::Scope nowhere(find(L"nothing"));
}

TEST_P(EasyScope, LetsItsOwnThreadGoOn) {
    const easy::Scope scope(model());
    EXPECT_TRUE(easy::set(model(), L"value", 1));
    EXPECT_TRUE(easy::makeTable(model(), L"table"));
    EXPECT_EQ(easy::get<int>(store(), L"top.value"), 1);
}

/// Without a scope around both, some of the steps would be lost.
TEST(EasyScopeOfThreads, MakesSeveralCallsOneStep) {
    const auto store = lumivard::platform::stores::memory();
    const auto model = IContainerFrontEnd::toplevel(store.get(), L"top");
    easy::set(*model, L"count", 0);
    const auto work = [&] {
        const auto own = IContainerFrontEnd::find(store.get(), L"top");
        for (int i = 0; i < 200; ++i) {
            const easy::Scope scope(store.get());
            easy::set(*own, L"count", *easy::get<int>(*own, L"count") + 1);
        }
    };
    std::thread other(work);
    work();
    other.join();
    EXPECT_EQ(easy::get<int>(store.get(), L"top.count"), 400);
}

}  // namespace
