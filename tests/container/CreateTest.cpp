#include "tests/support/ClientFixture.h"
#include "tests/support/StoredRecords.h"

namespace {

using namespace lumivard::platform::test_support;

/// The making of children: containers, primitives and tables.
class Create : public ClientTest {
protected:
    unsigned int offsetOfTop() { return stored::children(store(), 0).at(0); }
    unsigned int lastChild() { return stored::children(store(), offsetOfTop()).back(); }
};
LVP_ON_EACH_STORE(Create);

constexpr auto kUnknownType = static_cast<IContainer::tType>(3);
constexpr auto kUnknownKind = static_cast<metadata::tValue>(25);

TEST_P(Create, MakesAContainerOfEachType) {
    const auto owner = top();
    for (const auto type : {IContainer::kNode, IContainer::kGroup, IContainer::kLink}) {
        const std::wstring name = L"child" + std::to_wstring(type);
        const auto child = owner->create(type, name.c_str(), kNoSchema);
        ASSERT_TRUE(child);
        EXPECT_EQ(type, child->type());
        EXPECT_EQ(name, text(child->tag()));
        EXPECT_EQ(L"top." + name, text(child->path()));
        EXPECT_TRUE(child->empty());
        EXPECT_TRUE(owner->has(name.c_str()));
        EXPECT_EQ(type, stored::byte(store(), lastChild(), stored::kContainerType));
    }
}

TEST_P(Create, GivesAGroupAndALinkTheirRoleButNotANode) {
    const auto owner = top();
    EXPECT_NE(nullptr, IGroup::to(owner->create(IContainer::kGroup, L"group", kNoSchema).get()));
    EXPECT_NE(nullptr, ILink::to(owner->create(IContainer::kLink, L"link", kNoSchema).get()));
    const auto node = owner->create(IContainer::kNode, L"node", kNoSchema);
    EXPECT_EQ(nullptr, INode::to(node.get()));
    EXPECT_NE(nullptr, INode::to(owner->container(L"node").get()));
    EXPECT_EQ(node->type(), owner->container(L"node")->type());
    EXPECT_NE(nullptr, INode::to(node->container(kNoName).get()));
}

TEST_P(Create, MakesAnEmptyPrimitive) {
    const auto number = top()->create(L"number", metadata::kDouble);
    ASSERT_TRUE(number);
    EXPECT_EQ(L"number", text(number->container()->tag()));
    EXPECT_EQ(L"top.number", text(number->container()->path()));
    EXPECT_EQ(metadata::kDouble, number->valuetype());
    EXPECT_EQ(0u, number->dimension());
    EXPECT_EQ(0u, number->bytes());
    EXPECT_EQ(units::kNoUnit, number->units());
    EXPECT_EQ(0, number->container()->flags());
}

TEST_P(Create, MakesAnEmptyTable) {
    const auto table = top()->create(L"table", kNoSchema);
    ASSERT_TRUE(table);
    EXPECT_EQ(L"table", text(table->container()->tag()));
    EXPECT_EQ(L"top.table", text(table->container()->path()));
    EXPECT_EQ(0u, table->items());
    EXPECT_EQ(0u, table->groups());
    EXPECT_EQ(nullptr, table->base().value());
}

TEST_P(Create, AddsAtTheEnd) {
    const auto owner = top();
    owner->create(L"one", metadata::kInt32);
    owner->create(L"two", kNoSchema);
    owner->create(L"three", metadata::kInt32);
    EXPECT_EQ((tNames{L"one", L"two", L"three"}), names(*owner->properties()));
}

TEST_P(Create, SetsTheParentOfWhatItMakes) {
    top()->create(L"number", metadata::kInt32);
    EXPECT_EQ(offsetOfTop(), stored::word(store(), lastChild(), stored::kParent));
}

TEST_P(Create, IsRefusedWhereTheNameIsTaken) {
    const auto owner = top();
    owner->create(IContainer::kNode, L"taken", kNoSchema);
    const std::string before = stored::bytes(store(), lastChild());
    const auto extent = store()->extent();
    const auto none = owner->create(IContainer::kGroup, L"taken", kNoSchema);
    EXPECT_FALSE(none);
    EXPECT_EQ(nullptr, none.counter());
    EXPECT_FALSE(owner->create(L"taken", metadata::kInt32));
    EXPECT_FALSE(owner->create(L"taken", kNoSchema));
    EXPECT_EQ(extent, store()->extent());
    EXPECT_EQ(before, stored::bytes(store(), lastChild()));
    EXPECT_EQ(1u, stored::children(store(), offsetOfTop()).size());
}

TEST_P(Create, IsRefusedWhereAPropertyBearsTheName) {
    const auto owner = top();
    owner->create(L"number", metadata::kInt32);
    owner->create(L"table", kNoSchema);
    EXPECT_FALSE(owner->create(IContainer::kGroup, L"number", kNoSchema));
    EXPECT_FALSE(owner->create(L"number", metadata::kInt32));
    EXPECT_FALSE(owner->create(L"table", kNoSchema));
    EXPECT_FALSE(owner->create(L"table", metadata::kInt32));
}

TEST_P(Create, TakesADotInANameForACharacter) {
    const auto owner = top();
    owner->create(IContainer::kGroup, L"a", kNoSchema)->create(L"b", metadata::kInt32);
    EXPECT_EQ(L"a.b", text(owner->create(L"a.b", metadata::kInt64)->container()->tag()));
    EXPECT_FALSE(owner->create(IContainer::kGroup, L"a.b", kNoSchema));
    // The path still leads to what it named before.
    EXPECT_EQ(metadata::kInt32, asPrimitive(owner->property(L"a.b")).valuetype());
}

TEST_P(Create, TellsNamesApartByCase) {
    const auto owner = top();
    EXPECT_TRUE(owner->create(L"name", metadata::kInt32));
    EXPECT_TRUE(owner->create(L"Name", metadata::kInt32));
}

TEST_P(Create, TakesNamesBeyondASCII) {
    const std::wstring name = L"Dichte \u03c1 \U0001F4D0";
    top()->create(L"number", metadata::kInt32);
    top()->create(IContainer::kNode, name.c_str(), kNoSchema);
    EXPECT_EQ(name, text(top()->container(name.c_str())->tag()));
}

TEST_P(Create, MakesASecondChildOfANameThatThisObjectDoesNotKnow) {
    const auto earlier = top();
    top()->create(L"number", metadata::kInt32);
    EXPECT_TRUE(earlier->create(L"number", metadata::kInt64));
    EXPECT_EQ((tNames{L"number", L"number"}), names(*top()->properties()));
    EXPECT_EQ(metadata::kInt32, asPrimitive(property(L"number")).valuetype());
}

TEST_P(Create, MakesAContainerOfAnUnknownTypeThatCannotBeOpenedInARole) {
    const auto owner = top();
    const auto none = owner->create(kUnknownType, L"odd", kNoSchema);
    EXPECT_FALSE(none);
    EXPECT_EQ(nullptr, none.counter());
    EXPECT_EQ(3, stored::byte(store(), lastChild(), stored::kContainerType));
    EXPECT_TRUE(owner->has(L"odd"));
    EXPECT_FALSE(owner->container(L"odd"));
    EXPECT_FALSE(owner->create(IContainer::kGroup, L"odd", kNoSchema));
    EXPECT_FALSE(top()->container(L"odd"));
}

TEST_P(Create, HoldsNothingOpenOnAContainerOfAnUnknownType) {
    const auto owner = top();
    owner->create(kUnknownType, L"odd", kNoSchema);
    owner->container(L"odd");
    owner->containers()->current();
    EXPECT_EQ(0u, stored::refs(store(), lastChild()));
    EXPECT_TRUE(owner->destroy(L"odd"));
}

TEST_P(Create, MakesAContainerOfAnUnknownTypeThatAPathFromTheTopReaches) {
    top()->create(kUnknownType, L"odd", kNoSchema);
    const auto plain = find(L"top.odd");
    EXPECT_EQ(kUnknownType, plain->type());
    const auto child = plain->create(IContainer::kNode, L"child", kNoSchema);
    EXPECT_EQ(L"top.odd.child", text(child->path()));
    EXPECT_FALSE(child->parent());
    EXPECT_FALSE(plain->container(kNoName));
    EXPECT_EQ(nullptr, IGroup::to(plain.get()));
    EXPECT_EQ(nullptr, INode::to(plain.get()));
    EXPECT_EQ(nullptr, ILink::to(plain.get()));
}

TEST_P(Create, MakesAPrimitiveOfAnUnknownKindThatHoldsNothing) {
    for (const auto kind :
         {static_cast<metadata::tValue>(0), kUnknownKind, static_cast<metadata::tValue>(0xFFFFFFFFu)}) {
        auto number = top()->create(L"number", kind);
        ASSERT_TRUE(number);
        const long long data[4] = {};
        long long room[4] = {};
        EXPECT_EQ(kind, number->valuetype());
        EXPECT_EQ(0u, number->stride());
        EXPECT_EQ(0u, number->dimension());
        EXPECT_FALSE(number->set(data, 0, 1));
        EXPECT_FALSE(number->get(room, 0, 1));
        number.reset();
        EXPECT_TRUE(top()->destroy(L"number"));
    }
}

}  // namespace
