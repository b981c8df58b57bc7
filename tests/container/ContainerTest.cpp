#include "tests/support/ClientFixture.h"
#include "tests/support/StoredRecords.h"

namespace {

using namespace lumivard::platform::test_support;

class Container : public ClientTest {
protected:
    /// The container "inner" in "top", made when it is not there.
    SharedPtr<IContainer> inner() {
        const auto owner = top();
        return owner->has(L"inner") ? owner->container(L"inner")
                                    : owner->create(IContainer::kGroup, L"inner", kNoSchema);
    }
};
LVP_ON_EACH_STORE(Container);

TEST_P(Container, TellsItsNamePathTypeAndStore) {
    const auto node = inner()->create(IContainer::kNode, L"node", kNoSchema);
    EXPECT_EQ(L"node", text(node->tag()));
    EXPECT_EQ(L"top.inner.node", text(node->path()));
    EXPECT_EQ(IContainer::kNode, node->type());
    EXPECT_EQ(store(), node->store());
}

TEST_P(Container, HasNoBaseWithoutASchema) {
    EXPECT_EQ(nullptr, inner()->base().value());
}

TEST_P(Container, IsEmptyUntilThisObjectKnowsAChild) {
    const auto container = inner();
    EXPECT_TRUE(container->empty());
    container->create(L"number", metadata::kInt32);
    EXPECT_FALSE(container->empty());
    container->destroy(L"number");
    EXPECT_TRUE(container->empty());
}

TEST_P(Container, HasNoParentAtTheTop) {
    EXPECT_FALSE(top()->parent());
    EXPECT_FALSE(find(L"top")->parent());
    EXPECT_EQ(nullptr, find(L"top")->parent().counter());
}

TEST_P(Container, GivesItsParentInTheParentsRole) {
    const auto child = inner();
    const auto parent = child->parent();
    EXPECT_EQ(L"top", text(parent->tag()));
    EXPECT_NE(nullptr, IGroup::to(parent.get()));
    const auto link = top()->create(IContainer::kLink, L"link", kNoSchema);
    EXPECT_NE(nullptr, ILink::to(link->create(IContainer::kNode, L"below", kNoSchema)->parent().get()));
    const auto node = top()->create(IContainer::kNode, L"node", kNoSchema);
    EXPECT_NE(nullptr, INode::to(node->create(IContainer::kNode, L"below", kNoSchema)->parent().get()));
}

TEST_P(Container, MayOutliveTheObjectThatItCameFrom) {
    auto parent = top();
    const auto child = parent->create(IContainer::kGroup, L"child", kNoSchema);
    parent.reset();
    EXPECT_EQ(L"top.child", text(child->path()));
    EXPECT_EQ(L"top", text(child->parent()->tag()));
}

TEST_P(Container, HasWhatLiesAtARelativePath) {
    inner()->create(IContainer::kNode, L"node", kNoSchema)->create(L"number", metadata::kInt32);
    const auto owner = top();
    EXPECT_TRUE(owner->has(L"inner"));
    EXPECT_TRUE(owner->has(L"inner.node"));
    EXPECT_TRUE(owner->has(L"inner.node.number"));
    EXPECT_FALSE(owner->has(L"node"));
    EXPECT_FALSE(owner->has(L"top.inner"));
    EXPECT_FALSE(owner->has(L"inner.nothing"));
    EXPECT_FALSE(owner->has(L"nothing.node"));
    EXPECT_FALSE(owner->has(L"inner."));
    EXPECT_FALSE(owner->has(L".inner"));
}

TEST_P(Container, EndsAPathOnAPrimitiveThatIsOneNameShort) {
    inner()->create(L"number", metadata::kInt32);
    const auto owner = top();
    EXPECT_TRUE(owner->has(L"inner.number.ignored"));
    EXPECT_EQ(L"number", text(owner->property(L"inner.number.ignored")->tag()));
    EXPECT_EQ(L"number", text(inner()->property(L"number.")->tag()));
    EXPECT_FALSE(owner->has(L"inner.number.two.more"));
    EXPECT_FALSE(owner->property(L"inner.number.two.more"));
}

TEST_P(Container, DoesNotReachAChildWithADotInItsName) {
    const auto owner = top();
    EXPECT_TRUE(owner->create(IContainer::kGroup, L"a.b", kNoSchema));
    EXPECT_TRUE(owner->create(L"c.d", metadata::kInt32));
    EXPECT_FALSE(owner->has(L"a.b"));
    EXPECT_FALSE(owner->container(L"a.b"));
    EXPECT_FALSE(owner->property(L"c.d"));
    EXPECT_EQ(tNames{L"a.b"}, names(*owner->containers()));
    EXPECT_TRUE(owner->destroy(L"a.b"));
    EXPECT_TRUE(owner->destroy(L"c.d"));
}

TEST_P(Container, GivesTheContainerAtAPathInItsRole) {
    inner()->create(IContainer::kNode, L"node", kNoSchema);
    inner()->create(IContainer::kLink, L"link", kNoSchema);
    const auto owner = top();
    EXPECT_NE(nullptr, IGroup::to(owner->container(L"inner").get()));
    EXPECT_NE(nullptr, INode::to(owner->container(L"inner.node").get()));
    EXPECT_NE(nullptr, ILink::to(owner->container(L"inner.link").get()));
    EXPECT_EQ(L"top.inner.link", text(owner->container(L"inner.link")->path()));
}

TEST_P(Container, GivesNoContainerForAPropertyOrNothing) {
    inner()->create(L"number", metadata::kInt32);
    inner()->create(L"table", kNoSchema);
    const auto owner = top();
    EXPECT_FALSE(owner->container(L"inner.number"));
    EXPECT_FALSE(owner->container(L"inner.table"));
    EXPECT_FALSE(owner->container(L"nothing"));
    EXPECT_EQ(nullptr, owner->container(L"nothing").counter());
}

TEST_P(Container, GivesANewObjectAtEachCall) {
    inner();
    const auto owner = top();
    const auto one = owner->container(L"inner");
    const auto two = owner->container(L"inner");
    EXPECT_NE(one.get(), two.get());
}

TEST_P(Container, OpensItselfAnewWithoutAName) {
    const auto plain = top();
    for (const WideString& none : {kNoName, WideString(L"")}) {
        const auto again = plain->container(none);
        EXPECT_NE(plain.get(), again.get());
        EXPECT_EQ(L"top", text(again->tag()));
        EXPECT_EQ(L"top", text(again->path()));
        EXPECT_EQ(nullptr, IGroup::to(plain.get()));
        EXPECT_NE(nullptr, IGroup::to(again.get()));
    }
}

TEST_P(Container, DoesNotSeeWhatIsMadeThroughAnotherObject) {
    const auto earlier = inner();
    inner()->create(L"number", metadata::kInt32);
    inner()->create(IContainer::kNode, L"node", kNoSchema);
    EXPECT_FALSE(earlier->has(L"number"));
    EXPECT_FALSE(earlier->property(L"number"));
    EXPECT_FALSE(earlier->container(L"node"));
    EXPECT_FALSE(earlier->destroy(L"number"));
    EXPECT_TRUE(earlier->empty());
    // It sees it in a fresh view of itself, and its cursors look at the store.
    EXPECT_TRUE(earlier->container(kNoName)->has(L"number"));
    EXPECT_EQ(tNames{L"number"}, names(*earlier->properties()));
    EXPECT_EQ(tNames{L"node"}, names(*earlier->containers()));
}

TEST_P(Container, SeesBelowItsChildrenWhatIsMadeThroughAnotherObject) {
    inner();
    const auto earlier = top();
    inner()->create(L"number", metadata::kInt32);
    EXPECT_TRUE(earlier->has(L"inner.number"));
    EXPECT_TRUE(earlier->property(L"inner.number"));
}

TEST_P(Container, GoesOnKnowingWhatAnotherObjectDestroyed) {
    inner()->create(L"number", metadata::kInt32);
    inner()->create(IContainer::kNode, L"node", kNoSchema);
    const auto earlier = inner();
    inner()->destroy(L"number");
    inner()->destroy(L"node");
    EXPECT_TRUE(earlier->has(L"number"));
    EXPECT_FALSE(earlier->property(L"number"));
    EXPECT_FALSE(earlier->container(L"node"));
    EXPECT_FALSE(earlier->create(L"number", metadata::kInt32));
    EXPECT_FALSE(earlier->empty());
}

TEST_P(Container, AddsToAListThatAnotherObjectMade) {
    const auto one = inner();
    const auto two = inner();
    one->create(L"first", metadata::kInt32);
    two->create(L"second", metadata::kInt32);
    EXPECT_EQ((tNames{L"first", L"second"}), names(*inner()->properties()));
}

TEST_P(Container, CountsEachLiveObjectInItsRecord) {
    inner();
    const unsigned int offset = stored::children(store(), stored::children(store(), 0).at(0)).at(0);
    EXPECT_EQ(0u, stored::refs(store(), offset));
    auto one = inner();
    const auto two = inner();
    EXPECT_EQ(2u, stored::refs(store(), offset));
    one.reset();
    EXPECT_EQ(1u, stored::refs(store(), offset));
}

TEST_P(Container, IsFoundAgainWithAllThatItHolds) {
    {
        const auto node = inner()->create(IContainer::kNode, L"node", kNoSchema);
        const int number = 5;
        node->create(L"number", metadata::kInt32)->set(&number, 0, 1);
    }
    EXPECT_EQ(std::vector<int>{5}, values<int>(asPrimitive(property(L"inner.node.number"))));
}

}  // namespace
