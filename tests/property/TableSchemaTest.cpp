#include "tests/container/CopyFixture.h"
#include "tests/container/SchemaClientFixture.h"

namespace {

using namespace lumivard::platform::test_support;

/// Tables that are made with schemas in tables, and their conforming.
class TableSchema : public SchemaClientTest {
protected:
    void SetUp() override { top()->create(L"table", kNoSchema); }

    SharedPtr<IProperty> opened() { return property(L"table"); }

    /// A new table in "table" with the base list of a schema and without any items.
    SharedPtr<ITable> declaring(const wchar_t* name, const wchar_t* uris) {
        const auto made = asTable(opened()).create(name, schema(uris));
        for (const std::wstring& item : names(*made->properties())) {
            made->lookup(item.c_str())->off(0x02);
            EXPECT_TRUE(made->destroy(item.c_str()));
        }
        return made;
    }

    SharedPtr<ITable> plain(const wchar_t* name) { return asTable(opened()).create(name, kNoSchema); }

    static void add(ITable& table, const wchar_t* name, metadata::tValue kind) {
        table.create(name, kind, units::kNoUnit);
    }

    /// Adds the items of "kits.part", and strangers between them.
    static void fill(ITable& table) {
        add(table, L"before", metadata::kInt32);
        add(table, L"size", metadata::kDouble);
        add(table, L"between", metadata::kInt32);
        add(table, L"name", metadata::kString);
        const auto rest = table.create(L"rest", kNoSchema);
        add(*rest, L"item", metadata::kInt32);
        add(*rest->create(L"deep", kNoSchema), L"leaf", metadata::kInt16);
        add(table, L"after", metadata::kInt32);
    }
};
LVP_ON_EACH_STORE(TableSchema);

TEST_P(TableSchema, FillsATableInATable) {
    const auto owner = opened();
    const auto made = asTable(owner).create(L"made", schema(L"kits.part;kits.extra"));
    ASSERT_TRUE(made);
    EXPECT_EQ(L"kits.part;kits.extra", text(made->base()));
    EXPECT_EQ(4u, made->items());
    EXPECT_EQ((tNames{L"size", L"name", L"rest", L"more"}), names(*made->properties()));
    EXPECT_EQ(kHiddenItem, made->lookup(L"rest.deep.leaf")->flags());
    EXPECT_EQ(0, made->container()->flags());
    EXPECT_TRUE(asTable(owner).lookup(L"made.rest.item"));
}

TEST_P(TableSchema, IsKeptWithTheTable) {
    asTable(opened()).create(L"made", schema(L"kits.part"));
    EXPECT_EQ(L"kits.part", text(asTable(property(L"table.made")).base()));
    EXPECT_EQ(L"", text(asTable(opened()).base()));
    EXPECT_EQ(nullptr, asTable(opened()).base().value());
}

TEST_P(TableSchema, IsNotTakenByANameThatLeadsSomewhereAsAPath) {
    add(*plain(L"inner"), L"item", metadata::kInt32);
    const auto owner = opened();
    ISchema* part = schema(L"kits.part");
    const auto before = contents(store());
    EXPECT_FALSE(asTable(owner).create(L"inner", part));
    EXPECT_FALSE(asTable(owner).create(L"inner.item", part));
    EXPECT_FALSE(asTable(owner).create(kNoName, part));
    EXPECT_EQ(nullptr, asTable(owner).create(L"inner", part).counter());
    EXPECT_EQ(before, contents(store()));
}

TEST_P(TableSchema, OfAnotherMakerIsRefused) {
    ForeignSchema foreign;
    const auto owner = opened();
    const auto before = contents(store());
    const auto none = asTable(owner).create(L"made", &foreign);
    EXPECT_FALSE(none);
    EXPECT_EQ(nullptr, none.counter());
    EXPECT_EQ(before, contents(store()));
    EXPECT_TRUE(asTable(owner).create(L"made", kNoSchema));
}

TEST_P(TableSchema, IsConformedToByWhatWasMadeWithIt) {
    const auto made = asTable(opened()).create(L"made", schema(L"kits.part"));
    EXPECT_TRUE(made->validates(schema(L"kits.part")));
    EXPECT_TRUE(asTable(property(L"table.made")).validates(schema(L"kits.part")));
    EXPECT_FALSE(made->validates(schema(L"kits.extra")));
}

TEST_P(TableSchema, IsConformedToByDeclarationWithoutALookAtTheItems) {
    const auto made = declaring(L"made", L"kits.extra;kits.empty;kits.part");
    EXPECT_EQ(0u, made->items());
    for (const wchar_t* uris : {L"kits.part", L"kits.part;kits.extra", L"kits.empty"}) {
        EXPECT_TRUE(made->validates(schema(uris)));
    }
}

TEST_P(TableSchema, IsNotConformedToByAPartOfADeclaration) {
    addSchema(L"par")->create(L"x", metadata::kInt32, units::kNoUnit);
    EXPECT_FALSE(declaring(L"made", L"kits.part")->validates(schema(L"kits.par")));
    EXPECT_FALSE(declaring(L"second", L"kits.par")->validates(schema(L"kits.part")));
    EXPECT_FALSE(declaring(L"third", L"kits.part")->validates(schema(L"kits.part;kits.extra")));
}

TEST_P(TableSchema, IsConformedToByItems) {
    const auto table = plain(L"plain");
    EXPECT_FALSE(table->validates(schema(L"kits.part")));
    fill(*table);
    EXPECT_TRUE(table->validates(schema(L"kits.part")));
    EXPECT_TRUE(table->validates(schema(L"kits.part;kits.empty")));
    EXPECT_FALSE(table->validates(schema(L"kits.part;kits.extra")));
    const auto declared = declaring(L"declared", L"kits.extra");
    fill(*declared);
    EXPECT_TRUE(declared->validates(schema(L"kits.part")));
}

TEST_P(TableSchema, IsNotConformedToWhereItemsAreMissingOrOfAnotherKindOrOutOfOrder) {
    for (const wchar_t* missing : {L"size", L"name", L"rest"}) {
        const auto table = plain(missing);
        fill(*table);
        EXPECT_TRUE(table->destroy(missing));
        EXPECT_FALSE(table->validates(schema(L"kits.part")));
        // At the end it is out of order, but for the last one, which is a table.
        add(*table, missing, text(missing) == L"size" ? metadata::kDouble : metadata::kString);
        EXPECT_FALSE(table->validates(schema(L"kits.part")));
    }
}

TEST_P(TableSchema, IsNotConformedToByItemsWhereItIsEmpty) {
    EXPECT_FALSE(plain(L"plain")->validates(schema(L"kits.empty")));
    EXPECT_TRUE(declaring(L"declared", L"kits.empty")->validates(schema(L"kits.empty")));
}

TEST_P(TableSchema, IsNotConformedToWhereThereIsNoneOrAForeignOne) {
    ForeignSchema foreign;
    const auto made = asTable(opened()).create(L"made", schema(L"kits.part"));
    EXPECT_FALSE(made->validates(nullptr));
    EXPECT_FALSE(made->validates(&foreign));
}

TEST_P(TableSchema, IsComparedWithoutWritingAnything) {
    const auto table = plain(L"plain");
    fill(*table);
    ISchema* part = schema(L"kits.part");
    const auto before = contents(store());
    const auto schemas = contents(other());
    EXPECT_TRUE(table->validates(part));
    EXPECT_EQ(before, contents(store()));
    EXPECT_EQ(schemas, contents(other()));
}

}  // namespace
