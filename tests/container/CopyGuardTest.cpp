#include "lumivard/platform/store_contract/LoggingStore.h"
#include "tests/container/CopyFixture.h"
#include "tests/container/NotingStore.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::store_contract::LoggingStore;
using tLog = std::vector<std::string>;

/// Which guards the copying operations take, in which order.
class CopyGuard : public CopyingTest {
protected:
    void SetUp() override {
        const auto group = addGroup(*from(), L"group");
        addNumber(*group, L"number");
        group->create(L"table", kNoSchema)->create(L"item", metadata::kInt32, units::kNoUnit);
    }

    /// The containers "from" in the store "source" and "to" in the store "target", which note what happens to guards.
    SharedPtr<IContainer> source() { return IContainerFrontEnd::find(&_source, L"from"); }
    SharedPtr<IContainer> target() { return IContainerFrontEnd::find(&_target, L"to"); }
    IDataStore* sourceStore() { return &_source; }
    IDataStore* targetStore() { return &_target; }

    /// The guards that a call takes and gives back.
    template <class Call>
    tLog guards(Call call) {
        _log.clear();
        call();
        return _log;
    }

private:
    tLog _log;
    NotingStore _source{*store(), "source", _log};
    NotingStore _target{*other(), "target", _log};
};
LVP_ON_EACH_STORE(CopyGuard);

TEST_P(CopyGuard, OfCopyIsThatOfTheTargetAlone) {
    const auto from = source();
    const auto to = target();
    EXPECT_EQ((tLog{"+target", "-target"}), guards([&] { EXPECT_TRUE(to->copy(from)); }));
}

TEST_P(CopyGuard, OfCloneIsThatOfTheTargetAlone) {
    const auto from = source();
    const auto group = from->container(L"group");
    const auto primitive = from->property(L"group.number");
    const auto table = from->property(L"group.table");
    const auto to = target();
    EXPECT_EQ((tLog{"+target", "-target"}), guards([&] { EXPECT_TRUE(to->clone(group)); }));
    EXPECT_EQ((tLog{"+target", "-target"}), guards([&] { EXPECT_TRUE(to->clone(primitive)); }));
    EXPECT_EQ((tLog{"+target", "-target"}), guards([&] { EXPECT_TRUE(to->clone(table)); }));
    EXPECT_EQ((tLog{"+target", "-target"}), guards([&] { EXPECT_FALSE(to->clone(table)); }));
}

TEST_P(CopyGuard, OfACloneToAPathIsTakenOnce) {
    const auto from = source();
    const auto expected = tLog{"+source", "-source"};
    EXPECT_EQ(expected, guards([&] { EXPECT_TRUE(from->clone(L"group", L"copy", false)); }));
    EXPECT_EQ(expected, guards([&] { EXPECT_TRUE(from->clone(L"from.group", L"copy.copy", true)); }));
    EXPECT_EQ(expected, guards([&] { EXPECT_FALSE(from->clone(L"nothing", L"copy", false)); }));
}

TEST_P(CopyGuard, OfACloneToAStoreIsTheTargetsFirstAndLast) {
    const auto from = source();
    const tLog expected{"+target", "+source", "-source", "-target"};
    EXPECT_EQ(expected, guards([&] { EXPECT_TRUE(from->clone(targetStore(), L"to.copy")); }));
    EXPECT_EQ(expected, guards([&] { EXPECT_TRUE(from->clone(targetStore(), L"to.copy")); })) << "the name is taken";
}

TEST_P(CopyGuard, OfACloneToAStoreIsTheTargetsAloneWhereThereIsNoDestination) {
    const auto from = source();
    const tLog expected{"+target", "-target"};
    EXPECT_EQ(expected, guards([&] { EXPECT_FALSE(from->clone(targetStore(), L"nothing.copy")); }));
}

TEST_P(CopyGuard, OfACloneToItsOwnStoreIsTakenTwice) {
    const auto from = source();
    const tLog expected{"+source", "+source", "-source", "-source"};
    EXPECT_EQ(expected, guards([&] { EXPECT_TRUE(from->clone(sourceStore(), L"to.copy")); }));
}

TEST_P(CopyGuard, IsHeldWheneverTheTargetIsTouched) {
    LoggingStore logged(*other());
    const auto to = IContainerFrontEnd::find(&logged, L"to");
    const auto from = source();
    EXPECT_TRUE(to->copy(from));
    EXPECT_TRUE(to->clone(from));
    EXPECT_TRUE(to->clone(from->property(L"group.table")));
    EXPECT_TRUE(to->clone(L"table", L"group.copy", false));
    EXPECT_TRUE(from->clone(&logged, L"to.copy"));
    EXPECT_EQ(0u, logged.unguarded());
    EXPECT_EQ(0, logged.guards());
}

TEST_P(CopyGuard, OfTheSourceIsHeldByACloneToAStore) {
    LoggingStore logged(*store());
    const auto from = IContainerFrontEnd::find(&logged, L"from");
    EXPECT_TRUE(from->clone(other(), L"to.copy"));
    EXPECT_EQ(0u, logged.unguarded());
    EXPECT_EQ(0, logged.guards());
}

}  // namespace
