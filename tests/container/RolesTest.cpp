#include "tests/support/ClientFixture.h"

namespace {

using namespace lumivard::platform::test_support;

/// From a container to its role and back.
class Roles : public ClientTest {
protected:
    SharedPtr<IContainer> made(IContainer::tType type) {
        const auto owner = top();
        owner->create(type, L"child", kNoSchema);
        return owner->container(L"child");
    }
};
LVP_ON_EACH_STORE(Roles);

TEST(RolesOfNull, AreNull) {
    EXPECT_EQ(nullptr, IGroup::to(nullptr));
    EXPECT_EQ(nullptr, INode::to(nullptr));
    EXPECT_EQ(nullptr, ILink::to(nullptr));
}

TEST_P(Roles, OfAGroup) {
    const auto container = made(IContainer::kGroup);
    ASSERT_NE(nullptr, IGroup::to(container.get()));
    EXPECT_EQ(container.get(), IGroup::to(container.get())->container());
    EXPECT_EQ(nullptr, INode::to(container.get()));
    EXPECT_EQ(nullptr, ILink::to(container.get()));
}

TEST_P(Roles, OfANode) {
    const auto container = made(IContainer::kNode);
    ASSERT_NE(nullptr, INode::to(container.get()));
    EXPECT_EQ(container.get(), INode::to(container.get())->container());
    EXPECT_EQ(nullptr, IGroup::to(container.get()));
    EXPECT_EQ(nullptr, ILink::to(container.get()));
}

TEST_P(Roles, OfALink) {
    const auto container = made(IContainer::kLink);
    ASSERT_NE(nullptr, ILink::to(container.get()));
    EXPECT_EQ(container.get(), ILink::to(container.get())->container());
    EXPECT_EQ(nullptr, IGroup::to(container.get()));
    EXPECT_EQ(nullptr, INode::to(container.get()));
}

TEST_P(Roles, AreNotCounted) {
    const auto container = made(IContainer::kGroup);
    IGroup::to(container.get());
    EXPECT_EQ(1, container.counter()->countUse());
}

TEST_P(Roles, AreMissingOnWhatTheFrontEndGives) {
    made(IContainer::kNode);
    const auto node = find(L"top.child");
    EXPECT_EQ(IContainer::kNode, node->type());
    EXPECT_EQ(nullptr, INode::to(node.get()));
    EXPECT_NE(nullptr, INode::to(node->container(kNoName).get()));
}

}  // namespace
