#include "tests/container/CopyFixture.h"
#include "tests/container/SchemaClientFixture.h"

namespace {

using namespace lumivard::platform::test_support;

/// What can be done to the items that came from a schema.
class InheritedItem : public SchemaClientTest {
protected:
    /// Makes the container "made" with a schema, and opens it anew at each call.
    SharedPtr<IContainer> made() {
        const auto owner = top();
        if (!owner->has(L"made")) owner->create(IContainer::kGroup, L"made", schema(L"kits.part"));
        return owner->container(L"made");
    }

    /// The flags of "made.rest.deep", "made.rest" and "made".
    std::vector<int> flagsAbove() {
        std::vector<int> flags;
        for (const wchar_t* path : {L"top.made.rest.deep", L"top.made.rest", L"top.made"}) {
            flags.push_back(stored::byte(store(), offsetOf(store(), path), stored::kFlags));
        }
        return flags;
    }
    const std::vector<int> kAllHidden{kHiddenItem, kHiddenItem, 0};

    static void setOne(IPrimitive& primitive) {
        const char value[8] = {1};
        EXPECT_TRUE(primitive.set(value, 0, 1));
    }
};
LVP_ON_EACH_STORE(InheritedItem);

TEST_P(InheritedItem, CannotBeDestroyed) {
    for (const tMaker& maker : makers()) {
        SCOPED_TRACE(maker.kind);
        maker.make(schema(L"kits.part"));
        const auto container = top()->container(maker.path.c_str());
        const auto table = property(maker.path.c_str());
        const auto before = contents(store());
        for (const wchar_t* name : {L"size", L"name", L"rest"}) {
            EXPECT_FALSE(container ? container->destroy(name) : asTable(table).destroy(name));
        }
        EXPECT_EQ(before, contents(store()));
    }
}

TEST_P(InheritedItem, CannotBeDestroyedFurtherDown) {
    const auto rest = made()->property(L"rest");
    EXPECT_FALSE(asTable(rest).destroy(L"item"));
    EXPECT_FALSE(asTable(rest).destroy(L"deep"));
    EXPECT_FALSE(asTable(made()->property(L"rest.deep")).destroy(L"leaf"));
    EXPECT_TRUE(made()->has(L"rest.deep.leaf"));
}

TEST_P(InheritedItem, CannotBeRenamed) {
    for (const tMaker& maker : makers()) {
        SCOPED_TRACE(maker.kind);
        maker.make(schema(L"kits.part"));
        for (const wchar_t* path : {L"size", L"rest", L"rest.item", L"rest.deep.leaf"}) {
            const auto item = below(maker, path);
            const auto before = contents(store());
            EXPECT_FALSE(item->rename(L"renamed"));
            EXPECT_EQ(before, contents(store()));
        }
    }
}

TEST_P(InheritedItem, CannotBeDestroyedOrRenamedOnceItIsShown) {
    setOne(asPrimitive(made()->property(L"size")));
    EXPECT_FALSE(made()->destroy(L"size"));
    EXPECT_FALSE(made()->property(L"size")->rename(L"renamed"));
}

TEST_P(InheritedItem, GoesWithItsOwner) {
    for (const tMaker& maker : makers()) {
        SCOPED_TRACE(maker.kind);
        maker.make(schema(L"kits.part"));
        if (maker.path == L"holder.inner") {
            EXPECT_TRUE(asTable(property(L"holder")).destroy(L"inner"));
        } else {
            EXPECT_TRUE(top()->destroy(maker.path.c_str()));
        }
        EXPECT_FALSE(property((maker.path + L".size").c_str()));
    }
}

TEST_P(InheritedItem, StandsBesideItemsThatCanGo) {
    made()->create(L"own", metadata::kInt32);
    asTable(made()->property(L"rest")).create(L"own", metadata::kInt32, units::kNoUnit);
    EXPECT_EQ(0, made()->property(L"own")->flags());
    EXPECT_EQ(0, made()->property(L"rest.own")->flags());
    EXPECT_TRUE(made()->property(L"own")->rename(L"new"));
    EXPECT_TRUE(made()->destroy(L"new"));
    EXPECT_TRUE(asTable(made()->property(L"rest")).destroy(L"own"));
}

TEST_P(InheritedItem, IsShownByAValue) {
    for (const tMaker& maker : makers()) {
        SCOPED_TRACE(maker.kind);
        maker.make(schema(L"kits.part"));
        setOne(asPrimitive(below(maker, L"size")));
        EXPECT_EQ(kShownItem, below(maker, L"size")->flags());
        for (const wchar_t* path : {L"name", L"rest", L"rest.item", L"rest.deep.leaf"}) {
            EXPECT_EQ(kHiddenItem, below(maker, path)->flags());
        }
    }
}

TEST_P(InheritedItem, IsShownWithTheTablesAroundIt) {
    for (const tMaker& maker : makers()) {
        SCOPED_TRACE(maker.kind);
        maker.make(schema(L"kits.part"));
        setOne(asPrimitive(below(maker, L"rest.deep.leaf")));
        for (const wchar_t* path : {L"rest.deep.leaf", L"rest.deep", L"rest"}) {
            EXPECT_EQ(kShownItem, below(maker, path)->flags());
        }
        for (const wchar_t* path : {L"size", L"rest.item"}) EXPECT_EQ(kHiddenItem, below(maker, path)->flags());
    }
}

TEST_P(InheritedItem, IsShownUpToTheFirstOwnerThatIsNotHidden) {
    const auto leaf = made()->property(L"rest.deep.leaf");
    made()->property(L"rest.deep")->off(0x04);
    setOne(asPrimitive(leaf));
    EXPECT_EQ((std::vector<int>{kShownItem, kHiddenItem, 0}), flagsAbove());
    EXPECT_EQ(kShownItem, leaf->flags());
}

TEST_P(InheritedItem, IsShownByAValueOfAnItemThatWasAddedToIt) {
    const auto own = asTable(made()->property(L"rest.deep")).create(L"own", metadata::kInt32, units::kNoUnit);
    EXPECT_EQ(kAllHidden, flagsAbove());
    setOne(*own);
    EXPECT_EQ((std::vector<int>{kShownItem, kShownItem, 0}), flagsAbove());
    EXPECT_EQ(0, own->container()->flags());
}

TEST_P(InheritedItem, IsShownByTheSameValueToo) {
    const double size = 2.5;
    EXPECT_TRUE(asPrimitive(made()->property(L"size")).set(&size, 0, 1));
    EXPECT_EQ(kShownItem, made()->property(L"size")->flags());
}

TEST_P(InheritedItem, StaysHiddenWhereNoValueIsSet) {
    const auto leaf = made()->property(L"rest.deep.leaf");
    EXPECT_FALSE(asPrimitive(leaf).set("", 0, 0));
    EXPECT_TRUE(asPrimitive(leaf).uri(L"file:leaf"));
    EXPECT_FALSE(asPrimitive(leaf).set("12", 0, 1));
    EXPECT_EQ(kHiddenItem | 0x08, leaf->flags());
    EXPECT_EQ(kAllHidden, flagsAbove());
}

TEST_P(InheritedItem, StaysHiddenUnderAllOtherChanges) {
    asTable(kits()->property(L"part.rest.deep")).create(L"pose", metadata::kStruct, units::kNoUnit);
    const auto leaf = made()->property(L"rest.deep.leaf");
    IPrimitive& number = asPrimitive(leaf);
    const struct {
        const char* name;
        std::function<void()> change;
    } kChanges[] = {
        {"reset", [&] { EXPECT_TRUE(number.reset(3)); }},
        {"reset to nothing", [&] { EXPECT_TRUE(number.reset(0)); }},
        {"uri", [&] { EXPECT_TRUE(number.uri(L"file:leaf")); }},
        {"no uri", [&] { EXPECT_TRUE(number.uri(kNoName)); }},
        {"schema", [&] { EXPECT_TRUE(asPrimitive(made()->property(L"rest.deep.pose")).schema(L"kits.part")); }},
        {"valuelocale", [&] { number.valuelocale(L"de"); }},
        {"describe", [&] { made()->property(L"rest.deep.leaf")->describe(L"de", L"Blatt"); }},
        {"describe a table", [&] { made()->property(L"rest.deep")->describe(L"de", L"tief"); }},
        {"on and off", [&] { leaf->on(0x01), leaf->off(0x01); }},
        {"defaults", [&] { asTable(made()->property(L"rest.deep")).defaults(units::kMeter, metadata::kInt32); }},
    };
    for (const auto& change : kChanges) {
        SCOPED_TRACE(change.name);
        change.change();
        EXPECT_EQ(kHiddenItem, leaf->flags() & kHiddenItem);
        EXPECT_EQ(kHiddenItem, made()->property(L"rest.deep.pose")->flags());
        EXPECT_EQ(kAllHidden, flagsAbove());
    }
}

}  // namespace
