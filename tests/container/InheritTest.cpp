#include "tests/container/CopyFixture.h"
#include "tests/container/SchemaClientFixture.h"

namespace {

using namespace lumivard::platform::test_support;

/// What a container or a table that is made with a schema takes in from it.
class Inherit : public SchemaClientTest {
protected:
    unsigned int offset(const tMaker& maker) { return offsetOf(store(), L"top." + maker.path); }
};
LVP_ON_EACH_STORE(Inherit);

TEST_P(Inherit, TakesInTheItemsInTheirOrder) {
    for (const tMaker& maker : makers()) {
        SCOPED_TRACE(maker.kind);
        EXPECT_TRUE(maker.make(schema(L"kits.part")));
        EXPECT_EQ((tNames{L"size", L"name", L"rest"}), items(maker));
        EXPECT_EQ(metadata::kDouble, asPrimitive(below(maker, L"size")).valuetype());
        EXPECT_EQ(metadata::kInt16, asPrimitive(below(maker, L"rest.deep.leaf")).valuetype());
        EXPECT_EQ(L"top." + maker.path + L".rest.item", text(below(maker, L"rest.item")->path()));
    }
}

TEST_P(Inherit, HidesThemAllTheWayDown) {
    for (const tMaker& maker : makers()) {
        SCOPED_TRACE(maker.kind);
        maker.make(schema(L"kits.part"));
        const auto records = subtree(store(), offset(maker));
        ASSERT_EQ(7u, records.size());
        EXPECT_EQ(0, stored::byte(store(), records.front(), stored::kFlags)) << "the child itself";
        for (std::size_t i = 1; i < records.size(); ++i) {
            EXPECT_EQ(kHiddenItem, stored::byte(store(), records[i], stored::kFlags)) << i;
        }
    }
}

TEST_P(Inherit, TakesInValuesUnitsTextsAndDefaults) {
    kits()->property(L"part.size")->describe(L"de", L"Maß");
    asTable(kits()->property(L"part.rest")).defaults(units::kMeter, metadata::kInt16);
    for (const tMaker& maker : makers()) {
        SCOPED_TRACE(maker.kind);
        maker.make(schema(L"kits.part"));
        EXPECT_EQ(std::vector<double>{2.5}, values<double>(asPrimitive(below(maker, L"size"))));
        EXPECT_EQ(units::kMeter, asPrimitive(below(maker, L"size")).units());
        EXPECT_EQ(L"Maß", text(below(maker, L"size")->localize(L"de")));
        EXPECT_EQ(metadata::kInt16, asTable(below(maker, L"rest")).valuetype(units::group(units::kMeter)));
        EXPECT_EQ(0u, asPrimitive(below(maker, L"name")).dimension());
    }
}

TEST_P(Inherit, KeepsOtherFlagsOfTheItems) {
    kits()->property(L"part.size")->on(0x01);
    asPrimitive(kits()->property(L"part.rest.item")).uri(L"file:item");
    for (const tMaker& maker : makers()) {
        maker.make(schema(L"kits.part"));
        EXPECT_EQ(kHiddenItem | 0x01, below(maker, L"size")->flags());
        EXPECT_EQ(kHiddenItem | 0x08, below(maker, L"rest.item")->flags());
    }
}

TEST_P(Inherit, NotesTheSchemaAsTheBase) {
    for (const tMaker& maker : makers()) {
        SCOPED_TRACE(maker.kind);
        maker.make(schema(L"kits.part"));
        EXPECT_EQ(L"kits.part", maker.base());
        EXPECT_EQ(4u * 9 + 4, stored::word(store(), offset(maker), maker.baseLength));
    }
}

TEST_P(Inherit, NotesSeveralSchemasInTheirOrder) {
    for (const tMaker& maker : makers()) {
        SCOPED_TRACE(maker.kind);
        maker.make(schema(L"kits.extra;kits.empty;kits.part"));
        EXPECT_EQ(L"kits.extra;kits.empty;kits.part", maker.base());
        EXPECT_EQ(4u * 31 + 4, stored::word(store(), offset(maker), maker.baseLength));
    }
}

TEST_P(Inherit, TakesInSeveralSchemasTheEarlierFirst) {
    for (const tMaker& maker : makers()) {
        SCOPED_TRACE(maker.kind);
        maker.make(schema(L"kits.extra;kits.part"));
        EXPECT_EQ((tNames{L"more", L"size", L"name", L"rest"}), items(maker));
        EXPECT_EQ(metadata::kInt8, asPrimitive(below(maker, L"size")).valuetype());
    }
}

TEST_P(Inherit, TakesInASchemaThatIsNamedTwiceOnce) {
    for (const tMaker& maker : makers()) {
        SCOPED_TRACE(maker.kind);
        maker.make(schema(L"kits.extra;kits.extra"));
        EXPECT_EQ((tNames{L"more", L"size"}), items(maker));
        EXPECT_EQ(L"kits.extra;kits.extra", maker.base());
    }
}

TEST_P(Inherit, WritesNoRecordForANameThatIsHeld) {
    for (const tMaker& maker : makers()) {
        SCOPED_TRACE(maker.kind);
        maker.make(schema(L"kits.extra"));
        const auto once = contents(store()).size();
        top()->destroy(maker.path.c_str());
        if (maker.path == L"holder.inner") asTable(property(L"holder")).destroy(L"inner");
        maker.make(schema(L"kits.extra;kits.extra"));
        EXPECT_EQ(once, contents(store()).size());
    }
}

TEST_P(Inherit, NotesOnlySchemasThatWereFound) {
    for (const tMaker& maker : makers()) {
        maker.make(schema(L"kits.nothing;kits.extra;;nothing"));
        EXPECT_EQ(L"kits.extra", maker.base());
    }
}

TEST_P(Inherit, NotesAnEmptySchemaToo) {
    for (const tMaker& maker : makers()) {
        maker.make(schema(L"kits.empty"));
        EXPECT_EQ(L"kits.empty", maker.base());
        EXPECT_EQ(tNames{}, items(maker));
    }
}

TEST_P(Inherit, TakesInNothingWithoutASchema) {
    for (const tMaker& maker : makers()) {
        EXPECT_TRUE(maker.make(nullptr));
        EXPECT_EQ(L"", maker.base());
        EXPECT_EQ(0u, stored::word(store(), offset(maker), maker.baseLength));
        EXPECT_EQ(tNames{}, items(maker));
    }
}

TEST_P(Inherit, RefusesAForeignSchemaAndLeavesTheNameFree) {
    ForeignSchema foreign;
    for (const tMaker& maker : makers()) {
        SCOPED_TRACE(maker.kind);
        top()->create(L"holder", kNoSchema);
        const auto before = contents(store());
        EXPECT_FALSE(maker.make(&foreign));
        EXPECT_EQ(before, contents(store()));
        EXPECT_TRUE(maker.make(nullptr));
    }
}

TEST_P(Inherit, RefusesANameThatIsTaken) {
    for (const tMaker& maker : makers()) {
        SCOPED_TRACE(maker.kind);
        maker.make(nullptr);
        ISchema* part = schema(L"kits.part");
        const auto before = contents(store());
        EXPECT_FALSE(maker.make(part));
        EXPECT_EQ(before, contents(store()));
    }
}

TEST_P(Inherit, LeavesTheSchemasStoreAsItIs) {
    ISchema* part = schema(L"kits.part");
    const auto before = contents(other());
    for (const tMaker& maker : makers()) maker.make(part);
    EXPECT_EQ(before, contents(other()));
}

TEST_P(Inherit, DoesNotFollowLaterChangesOfTheSchema) {
    for (const tMaker& maker : makers()) maker.make(schema(L"kits.part"));
    const auto before = contents(store());
    const double size = 9;
    asPrimitive(kits()->property(L"part.size")).set(&size, 0, 1);
    asTable(kits()->property(L"part")).create(L"late", metadata::kInt32, units::kNoUnit);
    EXPECT_TRUE(asTable(kits()->property(L"part")).destroy(L"name"));
    EXPECT_EQ(before, contents(store()));
}

TEST_P(Inherit, TakesInNoItemThatCameAfterTheSchemaWasResolved) {
    ISchema* part = schema(L"kits.part");
    asTable(kits()->property(L"part")).create(L"late", metadata::kInt32, units::kNoUnit);
    const double size = 9;
    asPrimitive(kits()->property(L"part.size")).set(&size, 0, 1);
    for (const tMaker& maker : makers()) {
        maker.make(part);
        EXPECT_EQ((tNames{L"size", L"name", L"rest"}), items(maker));
        // Their content is that of the store.
        EXPECT_EQ(std::vector<double>{9}, values<double>(asPrimitive(below(maker, L"size"))));
    }
}

TEST_P(Inherit, IsKnownToTheResultAtOnce) {
    const auto container = top()->create(IContainer::kNode, L"node", schema(L"kits.part"));
    EXPECT_EQ(L"kits.part", text(container->base()));
    EXPECT_TRUE(container->has(L"rest.deep.leaf"));
    EXPECT_FALSE(container->create(L"size", metadata::kInt32));
    const auto table = top()->create(L"table", schema(L"kits.part"));
    EXPECT_EQ(L"kits.part", text(table->base()));
    EXPECT_EQ(3u, table->items());
    EXPECT_EQ(L"name", text(table->at(1)->tag()));
}

TEST_P(Inherit, HoldsNothingOpen) {
    for (const tMaker& maker : makers()) {
        maker.make(schema(L"kits.part"));
        for (const unsigned int each : subtree(store(), offset(maker))) EXPECT_EQ(0u, stored::refs(store(), each));
    }
}

TEST_P(Inherit, FillsAContainerOfAnUnknownTypeThatHasNoResult) {
    const auto owner = top();
    const auto none = owner->create(static_cast<IContainer::tType>(3), L"odd", schema(L"kits.part"));
    EXPECT_FALSE(none);
    EXPECT_EQ(nullptr, none.counter());
    EXPECT_TRUE(owner->has(L"odd"));
    EXPECT_FALSE(owner->container(L"odd"));
    EXPECT_FALSE(owner->create(L"odd", metadata::kInt32));
    const unsigned int odd = offsetOf(store(), L"top.odd");
    EXPECT_EQ(3, stored::byte(store(), odd, stored::kContainerType));
    EXPECT_EQ(3u, stored::children(store(), odd).size());
    EXPECT_EQ(4u * 9 + 4, stored::word(store(), odd, 23));
    EXPECT_EQ(kHiddenItem, owner->property(L"odd.size")->flags());
    EXPECT_EQ(L"kits.part", text(find(L"top.odd")->base()));
}

TEST_P(Inherit, MayStandInTheStoreOfItsSchema) {
    const auto locator = ISchemaLocator::make(store());
    top()->create(L"kit", kNoSchema)->create(L"item", metadata::kInt32, units::kNoUnit);
    const auto kit = locator->resolve(L"top.kit");
    for (const tMaker& maker : makers()) {
        EXPECT_TRUE(maker.make(kit.get()));
        EXPECT_EQ(tNames{L"item"}, items(maker));
        EXPECT_EQ(kHiddenItem, below(maker, L"item")->flags());
    }
    EXPECT_EQ(0, property(L"kit.item")->flags());
}

TEST_P(Inherit, OfAContainerBelowASchemaHidesThatToo) {
    // A table holds no containers, but a store may list one there.
    kits()->create(IContainer::kGroup, L"group", kNoSchema)->create(L"inner", metadata::kInt32);
    const unsigned int owner = offsetOf(other(), L"kits");
    stored::move(other(), offsetOf(other(), L"kits.group"), owner, offsetOf(other(), L"kits.extra"));
    const auto made = top()->create(IContainer::kNode, L"node", schema(L"kits.extra"));
    EXPECT_TRUE(made->container(L"group"));
    EXPECT_EQ(kHiddenItem, stored::byte(store(), offsetOf(store(), L"top.node.group"), stored::kFlags));
    EXPECT_EQ(kHiddenItem, made->property(L"group.inner")->flags());
    EXPECT_FALSE(made->destroy(L"group"));
    EXPECT_FALSE(made->container(L"group")->rename(L"renamed"));
}

}  // namespace
