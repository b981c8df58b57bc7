#include "lumivard/platform/store_contract/LoggingStore.h"
#include "tests/container/NotingStore.h"
#include "tests/support/ClientFixture.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::store_contract::LoggingStore;

class Link : public ClientTest {
protected:
    void SetUp() override {
        const auto owner = top();
        owner->create(IContainer::kLink, L"link", kNoSchema);
        owner->create(IContainer::kGroup, L"target", kNoSchema)->create(L"number", metadata::kInt32);
    }

    /// The container of the link "link", opened anew at each call.
    SharedPtr<IContainer> link() { return top()->container(L"link"); }

    static ILink& role(const SharedPtr<IContainer>& container) { return *ILink::to(container.get()); }
};
LVP_ON_EACH_STORE(Link);

TEST_P(Link, HasNoTargetAtFirst) {
    EXPECT_EQ(nullptr, role(link()).target().value());
    const auto none = role(link()).follow(nullptr);
    EXPECT_FALSE(none);
    EXPECT_EQ(nullptr, none.counter());
    EXPECT_FALSE(role(link()).follow(store()));
}

TEST_P(Link, LeadsToAContainerInItsOwnStore) {
    role(link()).target(top()->container(L"target")->path());
    EXPECT_EQ(L"top.target", text(role(link()).target()));
    const auto found = role(link()).follow(nullptr);
    ASSERT_TRUE(found);
    EXPECT_EQ(L"target", text(found->tag()));
    EXPECT_EQ(L"top.target", text(found->path()));
    EXPECT_EQ(store(), found->store());
}

TEST_P(Link, GivesAnObjectWithoutARole) {
    role(link()).target(L"top.target");
    const auto found = role(link()).follow(nullptr);
    EXPECT_EQ(IContainer::kGroup, found->type());
    EXPECT_EQ(nullptr, IGroup::to(found.get()));
}

TEST_P(Link, LeadsToTheTopLevel) {
    role(link()).target(L"top");
    EXPECT_EQ(L"top", text(role(link()).follow(nullptr)->tag()));
}

TEST_P(Link, LooksOnlyInTheStoreThatItIsAsked) {
    role(link()).target(L"top.target");
    IContainerFrontEnd::toplevel(other(), L"top");
    EXPECT_FALSE(role(link()).follow(other()));
    IContainerFrontEnd::toplevel(other(), L"top")->create(IContainer::kNode, L"target", kNoSchema);
    const auto found = role(link()).follow(other());
    ASSERT_TRUE(found);
    EXPECT_EQ(other(), found->store());
    EXPECT_EQ(IContainer::kNode, found->type());
    EXPECT_EQ(L"top.target", text(found->path()));
}

TEST_P(Link, LeadsNowhereInAnEmptyStore) {
    role(link()).target(L"top.target");
    EXPECT_FALSE(role(link()).follow(other()));
    EXPECT_EQ(0u, other()->extent());
}

TEST_P(Link, TakesItsOwnStoreAsWellAsNone) {
    role(link()).target(L"top.target");
    EXPECT_EQ(store(), role(link()).follow(store())->store());
}

TEST_P(Link, DoesNotLeadToAProperty) {
    for (const wchar_t* path : {L"top.target.number", L"top.target.number.beyond"}) {
        role(link()).target(path);
        EXPECT_FALSE(role(link()).follow(nullptr));
        EXPECT_EQ(path, text(role(link()).target()));
    }
}

TEST_P(Link, LeadsNowhereWhereThePathBreaksOff) {
    for (const wchar_t* path : {L"nothing", L"top.nothing", L"target", L"top..target", L"top.target.", L"."}) {
        role(link()).target(path);
        EXPECT_FALSE(role(link()).follow(nullptr));
    }
}

TEST_P(Link, MayBeSetBeforeItsTargetExists) {
    const auto container = link();
    role(container).target(L"top.later");
    EXPECT_FALSE(role(container).follow(nullptr));
    top()->create(IContainer::kNode, L"later", kNoSchema);
    EXPECT_TRUE(role(container).follow(nullptr));
}

TEST_P(Link, KeepsItsTextWhenTheTargetGoes) {
    role(link()).target(L"top.target");
    top()->destroy(L"target");
    EXPECT_FALSE(role(link()).follow(nullptr));
    EXPECT_EQ(L"top.target", text(role(link()).target()));
}

TEST_P(Link, TakesOneStepOnly) {
    const auto second = top()->create(IContainer::kLink, L"second", kNoSchema);
    role(second).target(L"top.target");
    role(link()).target(L"top.second");
    const auto found = role(link()).follow(nullptr);
    EXPECT_EQ(L"second", text(found->tag()));
    EXPECT_EQ(IContainer::kLink, found->type());
    EXPECT_EQ(nullptr, ILink::to(found.get()));
}

TEST_P(Link, MayLeadToItself) {
    role(link()).target(L"top.link");
    EXPECT_EQ(L"link", text(role(link()).follow(nullptr)->tag()));
}

TEST_P(Link, LosesItsTargetToAMissingText) {
    role(link()).target(L"top.target");
    const auto container = link();
    role(container).target(kNoName);
    EXPECT_EQ(nullptr, role(container).target().value());
    EXPECT_FALSE(role(container).follow(nullptr));
    EXPECT_EQ(nullptr, role(link()).target().value());
}

TEST_P(Link, KeepsItsTextInObjectsThatAreOpenElsewhere) {
    role(link()).target(L"top.target");
    const auto earlier = link();
    role(link()).target(kNoName);
    EXPECT_EQ(L"top.target", text(role(earlier).target()));
    EXPECT_TRUE(role(earlier).follow(nullptr));
    EXPECT_EQ(nullptr, role(link()).target().value());
}

TEST_P(Link, IsAContainerLikeAnyOther) {
    const auto container = link();
    EXPECT_TRUE(container->create(IContainer::kGroup, L"child", kNoSchema));
    EXPECT_TRUE(container->create(L"number", metadata::kInt32));
    role(container).target(L"top.target");
    EXPECT_TRUE(link()->has(L"child"));
    EXPECT_EQ(L"top.link.number", text(link()->property(L"number")->path()));
    EXPECT_EQ(L"top.target", text(role(link()).target()));
}

TEST_P(Link, HoldsItsOwnGuardAndThatOfTheOtherStore) {
    IContainerFrontEnd::toplevel(other(), L"top")->create(IContainer::kNode, L"target", kNoSchema);
    LoggingStore own(*store());
    LoggingStore searched(*other());
    const auto container = IContainerFrontEnd::find(&own, L"top.link")->container(kNoName);
    role(container).target(L"top.target");
    own.clearLog();
    EXPECT_TRUE(role(container).follow(&searched));
    EXPECT_EQ(0u, own.unguarded());
    EXPECT_EQ(0u, searched.unguarded());
    EXPECT_GE(own.count(LoggingStore::tCall::kLock), 1u);
    EXPECT_EQ(0, own.guards());
    EXPECT_EQ(0, searched.guards());
}

TEST_P(Link, TakesItsOwnGuardFirstAndGivesItBackLast) {
    IContainerFrontEnd::toplevel(other(), L"top")->create(IContainer::kNode, L"target", kNoSchema);
    std::vector<std::string> log;
    NotingStore own(*store(), "own", log);
    NotingStore searched(*other(), "searched", log);
    const auto container = IContainerFrontEnd::find(&own, L"top.link")->container(kNoName);
    ILink& link = role(container);
    link.target(L"top.target");
    log.clear();
    const auto found = link.follow(&searched);
    EXPECT_EQ((std::vector<std::string>{"+own", "+searched", "-searched", "-own"}), log);
    link.target(kNoName);
    log.clear();
    link.follow(&searched);
    EXPECT_EQ((std::vector<std::string>{"+own", "-own"}), log);
}

}  // namespace
