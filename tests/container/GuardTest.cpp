#include <functional>
#include <string>

#include "lumivard/platform/store_contract/LoggingStore.h"
#include "tests/support/ClientFixture.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::store_contract::LoggingStore;

/// Each operation of a container holds the store's guard from its beginning to its end.
class ContainerGuard : public ClientTest {
protected:
    using tCall = LoggingStore::tCall;

    void SetUp() override {
        const auto owner = top()->create(IContainer::kGroup, L"outer", kNoSchema);
        owner->create(IContainer::kGroup, L"group", kNoSchema);
        owner->create(IContainer::kLink, L"link", kNoSchema);
        owner->create(L"number", metadata::kInt32);
        owner->create(L"table", kNoSchema);
    }

    /// The container "outer", opened through the log.
    SharedPtr<IContainer> open() { return IContainerFrontEnd::find(&_logged, L"top.outer")->container(kNoName); }

    /// Begins to watch what is called.
    void watch() {
        _logged.clearLog();
        _unguarded = _logged.unguarded();
    }

    /// Expects that what was called since then began with a guard, ended with it, and held it throughout.
    void expectGuarded(const std::string& what) {
        ASSERT_FALSE(_logged.log().empty()) << what;
        EXPECT_EQ(tCall::kLock, _logged.log().front().call) << what;
        EXPECT_EQ(tCall::kUnlock, _logged.log().back().call) << what;
        EXPECT_EQ(_unguarded, _logged.unguarded()) << what;
        EXPECT_EQ(0, _logged.guards()) << what;
    }

    LoggingStore& logged() { return _logged; }

private:
    LoggingStore _logged{*store()};
    std::size_t _unguarded = 0;
};
LVP_ON_EACH_STORE(ContainerGuard);

TEST_P(ContainerGuard, IsHeldByEveryOperation) {
    const struct {
        const char* name;
        std::function<void(IContainer&)> call;
    } kOperations[] = {
        {"tag", [](IContainer& c) { c.tag(); }},
        {"path", [](IContainer& c) { c.path(); }},
        {"parent", [](IContainer& c) { c.parent(); }},
        {"base", [](IContainer& c) { c.base(); }},
        {"type", [](IContainer& c) { c.type(); }},
        {"create a container", [](IContainer& c) { c.create(IContainer::kNode, L"node", kNoSchema); }},
        {"create a primitive", [](IContainer& c) { c.create(L"double", metadata::kDouble); }},
        {"create a table", [](IContainer& c) { c.create(L"table2", kNoSchema); }},
        {"create what is there", [](IContainer& c) { c.create(L"number", kNoSchema); }},
        {"has", [](IContainer& c) { c.has(L"group.inner"); }},
        {"container", [](IContainer& c) { c.container(L"group"); }},
        {"container without a name", [](IContainer& c) { c.container(kNoName); }},
        {"property", [](IContainer& c) { c.property(L"number"); }},
        {"properties", [](IContainer& c) { c.properties(); }},
        {"containers", [](IContainer& c) { c.containers(); }},
        {"locales", [](IContainer& c) { c.locales(); }},
        {"locale", [](IContainer& c) { c.locale(0); }},
        {"describe", [](IContainer& c) { c.describe(L"en", L"text"); }},
        {"localize", [](IContainer& c) { c.localize(L"en"); }},
        {"copy", [](IContainer& c) { c.copy(c.parent()); }},
        {"clone a container", [](IContainer& c) { c.clone(c.parent()); }},
        {"clone a property", [](IContainer& c) { c.clone(c.property(L"table")); }},
        {"clone a path", [](IContainer& c) { c.clone(L"number", L"group.copy", false); }},
        {"clone to a store", [](IContainer& c) { c.clone(c.store(), L"top.copy"); }},
        {"validates", [](IContainer& c) { c.validates(kNoSchema, false); }},
        {"validates by name", [](IContainer& c) { c.validates(L"group", kNoSchema, false); }},
        {"destroy", [](IContainer& c) { c.destroy(L"group"); }},
        {"destroy of nothing", [](IContainer& c) { c.destroy(L"nothing"); }},
        {"rename", [](IContainer& c) { c.rename(L"new"); }},
    };
    for (const auto& operation : kOperations) {
        const auto container = open();
        watch();
        operation.call(*container);
        expectGuarded(operation.name);
    }
}

TEST_P(ContainerGuard, IsNotTakenByStoreAndEmpty) {
    const auto container = open();
    watch();
    container->store();
    container->empty();
    EXPECT_THAT(logged().log(), testing::IsEmpty());
}

TEST_P(ContainerGuard, IsHeldWhenAnObjectGoes) {
    auto container = open();
    container->describe(L"en", L"text");
    watch();
    container.reset();
    expectGuarded("the end of a container");
}

TEST_P(ContainerGuard, IsHeldByCursors) {
    const auto properties = open()->properties();
    const auto containers = open()->containers();
    const struct {
        const char* name;
        std::function<void()> call;
    } kOperations[] = {
        {"current property", [&] { properties->current(); }}, {"next property", [&] { properties->next(); }},
        {"previous property", [&] { properties->prev(); }},   {"current container", [&] { containers->current(); }},
        {"next container", [&] { containers->next(); }},      {"previous container", [&] { containers->prev(); }},
    };
    for (const auto& operation : kOperations) {
        watch();
        operation.call();
        expectGuarded(operation.name);
    }
}

TEST_P(ContainerGuard, IsNotTakenByCursorsThatHaveNowhereToGo) {
    const auto filter = open()->containers();
    const auto none = open()->container(L"group")->containers();
    watch();
    EXPECT_FALSE(filter->prev());
    EXPECT_FALSE(none->next());
    EXPECT_FALSE(none->prev());
    EXPECT_THAT(logged().log(), testing::IsEmpty());
    while (filter->next()) {
    }
    watch();
    EXPECT_FALSE(filter->next());
    EXPECT_THAT(logged().log(), testing::IsEmpty());
}

TEST_P(ContainerGuard, IsHeldByALinksOperations) {
    const auto container = open()->container(L"link");
    ILink* link = ILink::to(container.get());
    const struct {
        const char* name;
        std::function<void()> call;
    } kOperations[] = {
        {"set the target", [&] { link->target(L"top.outer"); }},
        {"target", [&] { link->target(); }},
        {"follow", [&] { link->follow(nullptr); }},
        {"follow within the same store", [&] { link->follow(&logged()); }},
    };
    for (const auto& operation : kOperations) {
        watch();
        operation.call();
        expectGuarded(operation.name);
    }
}

TEST_P(ContainerGuard, IsTakenByToForTheTypeOnly) {
    const auto container = open()->container(L"link");
    watch();
    ILink* link = ILink::to(container.get());
    EXPECT_EQ(1u, logged().count(tCall::kLock));
    watch();
    link->container();
    EXPECT_THAT(logged().log(), testing::IsEmpty());
}

TEST_P(ContainerGuard, IsHeldByTheFrontEnd) {
    open();
    const struct {
        const char* name;
        std::function<void()> call;
    } kOperations[] = {
        {"toplevel", [&] { IContainerFrontEnd::toplevel(&logged(), L"top"); }},
        {"toplevel that makes", [&] { IContainerFrontEnd::toplevel(&logged(), L"new"); }},
        {"toplevel without a name", [&] { IContainerFrontEnd::toplevel(&logged(), kNoName); }},
        {"find", [&] { IContainerFrontEnd::find(&logged(), L"top.outer.group"); }},
        {"find nothing", [&] { IContainerFrontEnd::find(&logged(), L"nothing"); }},
    };
    for (const auto& operation : kOperations) {
        watch();
        operation.call();
        expectGuarded(operation.name);
    }
}

TEST_P(ContainerGuard, IsHeldByTheSettingUpOfAStore) {
    LoggingStore fresh(*other());
    IContainerFrontEnd::toplevel(&fresh, L"top");
    EXPECT_EQ(tCall::kLock, fresh.log().front().call);
    EXPECT_EQ(tCall::kUnlock, fresh.log().back().call);
    EXPECT_EQ(0u, fresh.unguarded());
}

}  // namespace
