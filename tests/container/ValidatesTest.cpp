#include "tests/container/CopyFixture.h"
#include "tests/container/NotingStore.h"
#include "tests/container/SchemaClientFixture.h"

namespace {

using namespace lumivard::platform::test_support;

/// Whether a container conforms to a schema: by what it says of itself, and by its items.
class Validates : public SchemaClientTest {
protected:
    /// A new group in "top" with the base list of a schema and without any items.
    SharedPtr<IContainer> declaring(const wchar_t* name, const wchar_t* uris) {
        const auto made = top()->create(IContainer::kGroup, name, schema(uris));
        for (const std::wstring& item : names(*made->properties())) {
            made->property(item.c_str())->off(0x02);
            EXPECT_TRUE(made->destroy(item.c_str()));
        }
        return made;
    }

    SharedPtr<IContainer> group(const wchar_t* name) { return top()->create(IContainer::kGroup, name, kNoSchema); }

    /// Adds the items of "kits.part", and strangers between them.
    static void fill(IContainer& owner) {
        owner.create(L"before", metadata::kInt32);
        owner.create(L"size", metadata::kDouble);
        owner.create(IContainer::kNode, L"between", kNoSchema);
        owner.create(L"name", metadata::kString);
        fillRest(*owner.create(L"rest", kNoSchema));
        owner.create(L"after", metadata::kInt32);
    }
    static void fillRest(ITable& rest) {
        rest.create(L"item", metadata::kInt32, units::kMeter);
        rest.create(L"stranger", metadata::kInt32, units::kNoUnit);
        rest.create(L"deep", kNoSchema)->create(L"leaf", metadata::kInt16, units::kNoUnit);
    }

    /// The answer in full, once it was seen that the quick one is no.
    bool byItems(IContainer& container, const wchar_t* uris) {
        EXPECT_FALSE(container.validates(schema(uris), true));
        return container.validates(schema(uris), false);
    }

    /// What both forms say of a container that names its schemas: once with a quick look, once in full.
    bool byName(IContainer& container, const wchar_t* uris) {
        const bool quick = container.validates(schema(uris), true);
        EXPECT_EQ(quick, container.validates(schema(uris), false));
        return quick;
    }
};
LVP_ON_EACH_STORE(Validates);

TEST_P(Validates, WhatWasMadeWithTheSchema) {
    const auto made = top()->create(IContainer::kNode, L"made", schema(L"kits.part"));
    EXPECT_TRUE(byName(*made, L"kits.part"));
    EXPECT_TRUE(byName(*top()->container(L"made"), L"kits.part"));
}

TEST_P(Validates, TrustsADeclarationWithoutALookAtTheItems) {
    const auto made = declaring(L"made", L"kits.part");
    EXPECT_TRUE(made->empty());
    EXPECT_TRUE(byName(*made, L"kits.part"));
}

TEST_P(Validates, ByNameInAnyOrderAndAmongMore) {
    const auto made = declaring(L"made", L"kits.extra;kits.empty;kits.part");
    for (const wchar_t* uris : {L"kits.part", L"kits.extra", L"kits.part;kits.extra", L"kits.empty;kits.part",
                                L"kits.part;kits.empty;kits.extra", L"kits.part;kits.part"}) {
        EXPECT_TRUE(byName(*made, uris));
    }
}

TEST_P(Validates, NotByNameWhereOneIsMissing) {
    const auto made = declaring(L"made", L"kits.part");
    EXPECT_FALSE(byName(*made, L"kits.part;kits.extra"));
    EXPECT_FALSE(byName(*made, L"kits.extra;kits.part"));
    EXPECT_FALSE(byName(*made, L"kits.extra"));
}

TEST_P(Validates, NotByAPartOfAName) {
    for (const wchar_t* name : {L"par", L"parts"}) addSchema(name)->create(L"x", metadata::kInt32, units::kNoUnit);
    const auto made = declaring(L"made", L"kits.part");
    EXPECT_FALSE(byName(*made, L"kits.par"));
    EXPECT_FALSE(byName(*made, L"kits.parts"));
    EXPECT_FALSE(byName(*declaring(L"shorter", L"kits.par"), L"kits.part"));
    EXPECT_FALSE(byName(*declaring(L"longer", L"kits.parts"), L"kits.part"));
}

TEST_P(Validates, ByItemsInFullOnly) {
    const auto plain = group(L"plain");
    fill(*plain);
    EXPECT_TRUE(byItems(*plain, L"kits.part"));
}

TEST_P(Validates, ByItemsWhereTheDeclarationNamesOthers) {
    const auto made = declaring(L"made", L"kits.empty");
    fill(*made);
    EXPECT_TRUE(byItems(*made, L"kits.part"));
}

TEST_P(Validates, ByItemsForEachSchemaAnew) {
    const auto plain = group(L"plain");
    fill(*plain);
    EXPECT_FALSE(byItems(*plain, L"kits.part;kits.extra"));
    plain->create(L"more", metadata::kInt32);
    EXPECT_FALSE(byItems(*plain, L"kits.part;kits.extra")) << "another kind of size";
    addSchema(L"third")->create(L"before", metadata::kInt32, units::kNoUnit);
    EXPECT_TRUE(byItems(*plain, L"kits.part;kits.third")) << "which begins before the other ends";
}

TEST_P(Validates, NotWhereAnItemIsMissing) {
    for (const wchar_t* missing : {L"size", L"name", L"rest"}) {
        const auto plain = group(missing);
        fill(*plain);
        EXPECT_TRUE(plain->destroy(missing));
        EXPECT_FALSE(byItems(*plain, L"kits.part"));
    }
    EXPECT_FALSE(byItems(*group(L"empty"), L"kits.part"));
}

TEST_P(Validates, NotWhereAnItemIsOfAnotherKind) {
    const auto plain = group(L"plain");
    plain->create(L"size", metadata::kInt32);
    plain->create(L"name", metadata::kString);
    fillRest(*plain->create(L"rest", kNoSchema));
    EXPECT_FALSE(byItems(*plain, L"kits.part"));
    const auto groups = group(L"groups");
    groups->create(L"size", metadata::kDouble);
    groups->create(L"name", metadata::kString);
    groups->create(IContainer::kGroup, L"rest", kNoSchema);
    EXPECT_FALSE(byItems(*groups, L"kits.part")) << "a container is no table";
}

TEST_P(Validates, NotWhereItemsAreOutOfOrder) {
    const auto plain = group(L"plain");
    plain->create(L"name", metadata::kString);
    plain->create(L"size", metadata::kDouble);
    fillRest(*plain->create(L"rest", kNoSchema));
    EXPECT_FALSE(byItems(*plain, L"kits.part"));
}

TEST_P(Validates, NotWhereANestedTableDoesNotConform) {
    for (const wchar_t* missing : {L"item", L"deep"}) {
        const auto plain = group(missing);
        fill(*plain);
        EXPECT_TRUE(asTable(plain->property(L"rest")).destroy(missing));
        EXPECT_FALSE(byItems(*plain, L"kits.part"));
    }
}

TEST_P(Validates, WhateverTheUnitsValuesFlagsAndTextsAre) {
    const auto plain = group(L"plain");
    fill(*plain);
    asPrimitive(plain->property(L"size")).uri(L"file:size");
    plain->property(L"name")->describe(L"de", L"Name");
    plain->property(L"rest")->on(0xFF);
    EXPECT_TRUE(byItems(*plain, L"kits.part"));
}

TEST_P(Validates, NothingByItemsWhereTheSchemaIsEmpty) {
    const auto plain = group(L"plain");
    EXPECT_FALSE(byItems(*plain, L"kits.empty"));
    fill(*plain);
    EXPECT_FALSE(byItems(*plain, L"kits.empty"));
    EXPECT_FALSE(byItems(*plain, L"kits.empty;kits.empty"));
    EXPECT_TRUE(byName(*declaring(L"made", L"kits.empty"), L"kits.empty"));
}

TEST_P(Validates, AnEmptySchemaBesideAnotherByTheOther) {
    const auto plain = group(L"plain");
    EXPECT_FALSE(byItems(*plain, L"kits.empty;kits.part"));
    fill(*plain);
    EXPECT_TRUE(byItems(*plain, L"kits.empty;kits.part"));
    EXPECT_TRUE(byItems(*plain, L"kits.part;kits.empty"));
}

TEST_P(Validates, NotAgainstNothingOrAForeignSchema) {
    ForeignSchema foreign;
    const auto made = top()->create(IContainer::kGroup, L"made", schema(L"kits.part"));
    for (ISchema* none : {kNoSchema, static_cast<ISchema*>(&foreign)}) {
        for (const bool quick : {true, false}) {
            EXPECT_FALSE(made->validates(none, quick));
            EXPECT_FALSE(top()->validates(L"made", none, quick));
            EXPECT_FALSE(top()->validates(L"nothing", none, quick));
        }
    }
}

TEST_P(Validates, AChildByName) {
    top()->create(IContainer::kLink, L"made", schema(L"kits.part"));
    top()->create(L"table", schema(L"kits.part"));
    fill(*group(L"plain"));
    const auto owner = top();
    ISchema* part = schema(L"kits.part");
    for (const wchar_t* name : {L"made", L"table"}) {
        EXPECT_TRUE(owner->validates(name, part, true));
        EXPECT_TRUE(owner->validates(name, part, false));
        EXPECT_FALSE(owner->validates(name, schema(L"kits.extra"), true));
        EXPECT_FALSE(owner->validates(name, schema(L"kits.extra"), false));
    }
    EXPECT_FALSE(owner->validates(L"plain", part, true));
    EXPECT_TRUE(owner->validates(L"plain", part, false));
}

TEST_P(Validates, ATableByItsItems) {
    const auto owner = group(L"owner");
    fill(*owner);
    EXPECT_TRUE(owner->validates(L"rest", schema(L"kits.part.rest"), false));
    EXPECT_FALSE(owner->validates(L"rest", schema(L"kits.part.rest"), true));
    EXPECT_FALSE(owner->validates(L"rest", schema(L"kits.part"), false));
}

TEST_P(Validates, AChildAtAPath) {
    const auto inner = group(L"outer")->create(IContainer::kGroup, L"inner", kNoSchema);
    inner->create(IContainer::kNode, L"made", schema(L"kits.part"));
    fill(*inner);
    EXPECT_TRUE(top()->validates(L"outer.inner.made", schema(L"kits.part"), true));
    EXPECT_TRUE(top()->validates(L"outer.inner", schema(L"kits.part"), false));
    EXPECT_TRUE(top()->validates(L"outer.inner.rest.deep", schema(L"kits.part.rest.deep"), false));
    EXPECT_FALSE(top()->validates(L"inner.made", schema(L"kits.part"), true));
}

TEST_P(Validates, AChildByWhatItSaysItselfAndNotItsOwner) {
    const auto made = top()->create(IContainer::kGroup, L"made", schema(L"kits.part"));
    made->create(IContainer::kGroup, L"inner", kNoSchema);
    EXPECT_FALSE(made->validates(L"inner", schema(L"kits.part"), true));
    EXPECT_FALSE(made->validates(L"inner", schema(L"kits.part"), false));
    EXPECT_FALSE(made->validates(L"rest", schema(L"kits.part"), false));
}

TEST_P(Validates, NoPrimitiveAndNothingThatIsNotThere) {
    const auto made = top()->create(IContainer::kGroup, L"made", schema(L"kits.part"));
    for (const wchar_t* uris : {L"kits.part", L"kits.empty", L"kits.extra"}) {
        for (const bool quick : {true, false}) {
            for (const wchar_t* name : {L"size", L"rest.item", L"size.beyond", L"nothing", L"rest.nothing", L""}) {
                EXPECT_FALSE(made->validates(name, schema(uris), quick));
            }
            EXPECT_FALSE(made->validates(kNoName, schema(uris), quick));
        }
    }
}

TEST_P(Validates, WithoutWritingAnything) {
    const auto plain = group(L"plain");
    fill(*plain);
    ISchema* part = schema(L"kits.part");
    const auto before = contents(store());
    const auto schemas = contents(other());
    plain->validates(part, false);
    top()->validates(L"plain", part, false);
    top()->validates(L"plain.rest", part, false);
    EXPECT_EQ(before, contents(store()));
    EXPECT_EQ(schemas, contents(other()));
}

TEST_P(Validates, UnderTheGuardOfItsStoreAlone) {
    fill(*group(L"plain"));
    std::vector<std::string> log;
    NotingStore tested(*store(), "tested", log);
    NotingStore schemas(*other(), "schemas", log);
    const auto locator = ISchemaLocator::make(&schemas);
    const auto part = locator->resolve(L"kits.part");
    const auto owner = IContainerFrontEnd::find(&tested, L"top");
    const auto plain = owner->container(L"plain");
    const std::vector<std::string> expected{"+tested", "-tested"};
    log.clear();
    EXPECT_TRUE(plain->validates(part.get(), false));
    EXPECT_EQ(expected, log);
    log.clear();
    EXPECT_TRUE(owner->validates(L"plain", part.get(), false));
    EXPECT_EQ(expected, log);
}

}  // namespace
