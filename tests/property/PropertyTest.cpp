#include "tests/support/ClientFixture.h"
#include "tests/support/StoredRecords.h"

namespace {

using namespace lumivard::platform::test_support;

/// What primitives and tables have in common.
class Property : public ClientTest {
protected:
    static constexpr unsigned char kOptional = 0x01;
    static constexpr unsigned char kHidden = 0x04;

    void SetUp() override {
        const auto owner = top();
        owner->create(L"number", metadata::kInt32);
        const auto table = owner->create(L"table", kNoSchema);
        table->create(L"item", metadata::kInt32, units::kNoUnit);
        table->create(L"inner", kNoSchema)->create(L"deep", metadata::kInt32, units::kNoUnit);
    }
};
LVP_ON_EACH_STORE(Property);

TEST_P(Property, TellsItsNamePathTypeAndStore) {
    const struct {
        const wchar_t* path;
        const wchar_t* tag;
        unsigned int type;
    } kProperties[] = {
        {L"number", L"number", 0},     {L"table", L"table", 1},           {L"table.item", L"item", 0},
        {L"table.inner", L"inner", 1}, {L"table.inner.deep", L"deep", 0},
    };
    for (const auto& expected : kProperties) {
        const auto found = property(expected.path);
        ASSERT_TRUE(found);
        EXPECT_EQ(expected.tag, text(found->tag()));
        EXPECT_EQ(std::wstring(L"top.") + expected.path, text(found->path()));
        EXPECT_EQ(expected.type, found->type());
        EXPECT_EQ(store(), found->store());
    }
}

TEST(PropertyOfNull, IsNeitherPrimitiveNorTable) {
    EXPECT_EQ(nullptr, IPrimitive::to(nullptr));
    EXPECT_EQ(nullptr, ITable::to(nullptr));
}

TEST_P(Property, IsAPrimitiveOrATable) {
    const auto number = property(L"number");
    EXPECT_NE(nullptr, IPrimitive::to(number.get()));
    EXPECT_EQ(nullptr, ITable::to(number.get()));
    const auto table = property(L"table");
    EXPECT_NE(nullptr, ITable::to(table.get()));
    EXPECT_EQ(nullptr, IPrimitive::to(table.get()));
}

TEST_P(Property, TakesItsTypeFromTheRecord) {
    const unsigned int offset = stored::children(store(), stored::children(store(), 0).at(0)).at(0);
    const auto number = property(L"number");
    stored::putByte(store(), offset, 0, 4);
    EXPECT_EQ(1u, number->type());
    EXPECT_EQ(nullptr, IPrimitive::to(number.get()));
    EXPECT_EQ(nullptr, ITable::to(number.get()));
    stored::putByte(store(), offset, 0, 1);
    EXPECT_EQ(0u, number->type());
}

TEST_P(Property, IsTheSameObjectFromBothSides) {
    const auto number = property(L"number");
    EXPECT_EQ(number.get(), IPrimitive::to(number.get())->container());
    EXPECT_EQ(1, number.counter()->countUse());
    const auto table = property(L"table");
    EXPECT_EQ(table.get(), ITable::to(table.get())->container());
    EXPECT_EQ(1, table.counter()->countUse());
    const auto made = top()->create(L"made", metadata::kInt32);
    EXPECT_EQ(made.get(), IPrimitive::to(made->container()));
}

TEST_P(Property, IsNotFoundWhereAContainerOrNothingIs) {
    const auto owner = top();
    owner->create(IContainer::kGroup, L"group", kNoSchema);
    for (const wchar_t* path : {L"group", L"nothing", L"table.nothing", L"table.item.two.more", L"table."}) {
        const auto none = owner->property(path);
        EXPECT_FALSE(none);
        EXPECT_EQ(nullptr, none.counter());
    }
}

TEST_P(Property, GivesTheTableThatItStandsIn) {
    const auto parent = property(L"table.item")->parent();
    ASSERT_TRUE(parent);
    EXPECT_EQ(L"table", text(parent->container()->tag()));
    EXPECT_EQ(2u, parent->items());
    EXPECT_EQ(L"inner", text(property(L"table.inner.deep")->parent()->container()->tag()));
    EXPECT_EQ(L"table", text(property(L"table.inner")->parent()->container()->tag()));
}

TEST_P(Property, HasNoParentInAContainer) {
    EXPECT_FALSE(property(L"number")->parent());
    EXPECT_FALSE(property(L"table")->parent());
    EXPECT_EQ(nullptr, property(L"number")->parent().counter());
}

TEST_P(Property, HasNoParentAtTheTop) {
    const unsigned int top = stored::children(store(), 0).at(0);
    const auto number = property(L"number");
    stored::move(store(), stored::children(store(), top).at(0), top, 0);
    EXPECT_FALSE(number->parent());
    EXPECT_EQ(L"number", text(number->path()));
}

TEST_P(Property, MayOutliveTheObjectThatItCameFrom) {
    auto table = property(L"table");
    const auto item = asTable(table).at(0);
    table.reset();
    EXPECT_EQ(L"top.table.item", text(item->path()));
}

TEST_P(Property, HasNoFlagsAtFirst) {
    EXPECT_EQ(0, property(L"number")->flags());
    EXPECT_EQ(0, property(L"table")->flags());
}

TEST_P(Property, SetsAndClearsFlagsInTheStore) {
    for (const wchar_t* path : {L"number", L"table"}) {
        const auto one = property(path);
        const auto two = property(path);
        one->on(kOptional | 0x80);
        EXPECT_EQ(kOptional | 0x80, one->flags());
        EXPECT_EQ(kOptional | 0x80, two->flags());
        two->off(0x80);
        EXPECT_EQ(kOptional, one->flags());
        EXPECT_EQ(kOptional, property(path)->flags());
    }
}

TEST_P(Property, LeavesOtherFlagsAlone) {
    const auto number = property(L"number");
    number->on(0xF1);
    number->on(kHidden);
    EXPECT_EQ(0xF5, number->flags());
    number->off(kHidden);
    EXPECT_EQ(0xF1, number->flags());
}

TEST_P(Property, ChangesNothingWhenFlagsThatAreNotSetAreCleared) {
    const unsigned int offset = stored::children(store(), stored::children(store(), 0).at(0)).at(0);
    property(L"number")->on(kOptional);
    const std::string before = stored::bytes(store(), offset);
    property(L"number")->off(0xFE);
    property(L"number")->on(0);
    property(L"number")->off(0);
    EXPECT_EQ(before, stored::bytes(store(), offset));
}

TEST_P(Property, CountsEachLiveObjectInItsRecord) {
    const unsigned int offset = stored::children(store(), stored::children(store(), 0).at(0)).at(0);
    auto one = property(L"number");
    const auto two = property(L"number");
    EXPECT_EQ(2u, stored::refs(store(), offset));
    one.reset();
    EXPECT_EQ(1u, stored::refs(store(), offset));
}

}  // namespace
