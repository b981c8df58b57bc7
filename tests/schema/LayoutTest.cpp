// A schema's table as one flat list of fields.
#include "tests/schema/SchemaFixture.h"

namespace {

using namespace lumivard::platform::test_support;
using testing::ElementsAre;
using testing::IsEmpty;

class LayoutOf : public SchemaTest {
protected:
    /// The schema "a", without items at first.
    const unsigned int _a = schema(L"a");

    unsigned int add(const wchar_t* name, metadata::tValue kind, unsigned int count) {
        return addValues(store(), _a, name, kind, count);
    }

    /// Lists a record that is no child yet, whatever it is.
    void list(unsigned int offset) { stored::enlist(store(), _a, offset); }
};
LVP_ON_EACH_STORE(LayoutOf);

TEST_P(LayoutOf, AnEmptyTableIsEmpty) {
    IStructLayout& a = layout(L"a");
    EXPECT_EQ(a.fields(), 0u);
    EXPECT_EQ(a.stride(), 0u);
    EXPECT_EQ(a.values(), 0u);
    EXPECT_EQ(a.get(L"x"), nullptr);
    EXPECT_EQ(a.get(L""), nullptr);
    EXPECT_EQ(a.get(WideString()), nullptr);
}

TEST_P(LayoutOf, PrimitivesPacksThemInTheirOrder) {
    add(L"z", metadata::kBool, 1);
    add(L"b", metadata::kDouble, 3);
    add(L"c", metadata::kInt16, 1);
    add(L"a", metadata::kVec3, 6);
    IStructLayout& a = layout(L"a");
    EXPECT_THAT(fields(a),
                ElementsAre(tFieldIs{L"z", metadata::kBool, 1, 0, 1},  //
                            tFieldIs{L"b", metadata::kDouble, 3, 1, 24}, tFieldIs{L"c", metadata::kInt16, 1, 25, 2},
                            tFieldIs{L"a", metadata::kVec3, 6, 27, 48}));
    EXPECT_EQ(a.stride(), 75u);
    EXPECT_EQ(a.values(), 11u);
}

TEST_P(LayoutOf, ATextCountsItsCharactersWithTheirZero) {
    data::Design::Primitive(store(), add(L"t", metadata::kString, 0)).set(reinterpret_cast<const char*>(L"abc"), 0, 4);
    EXPECT_THAT(fields(layout(L"a")), ElementsAre(tFieldIs{L"t", metadata::kString, 4, 0, 16}));
}

TEST_P(LayoutOf, EveryKindHasTheSizeOfItsElements) {
    const unsigned int kSizes[] = {1, 4, 4, 4, 4, 4, 1, 1, 1, 2, 2, 4, 4, 8, 8, 4, 8, 8, 8, 8, 8, 8, 8};
    unsigned int offset = 0;
    std::vector<tFieldIs> expected;
    for (unsigned int kind = metadata::kBinary; kind < metadata::kStruct; ++kind) {
        const std::wstring name = std::to_wstring(kind);
        const unsigned int size = kSizes[kind - 1];
        add(name.c_str(), static_cast<metadata::tValue>(kind), 2);
        expected.push_back({name, static_cast<metadata::tValue>(kind), 2, offset, 2 * size});
        offset += 2 * size;
    }
    EXPECT_EQ(fields(layout(L"a")), expected);
}

TEST_P(LayoutOf, APrimitiveWithoutElementsTakesNoBytes) {
    add(L"x", metadata::kInt32, 1);
    add(L"none", metadata::kDouble, 0);
    add(L"y", metadata::kInt32, 1);
    IStructLayout& a = layout(L"a");
    EXPECT_THAT(fields(a),
                ElementsAre(tFieldIs{L"x", metadata::kInt32, 1, 0, 4}, tFieldIs{L"none", metadata::kDouble, 0, 4, 0},
                            tFieldIs{L"y", metadata::kInt32, 1, 4, 4}));
    EXPECT_EQ(a.values(), 2u);
}

TEST_P(LayoutOf, APrimitiveWithAURITakesNoBytes) {
    data::Design::Primitive(store(), add(L"far", metadata::kDouble, 0)).uri(L"file:elsewhere");
    add(L"y", metadata::kInt32, 1);
    EXPECT_THAT(fields(layout(L"a")),
                ElementsAre(tFieldIs{L"far", metadata::kDouble, 0, 0, 0}, tFieldIs{L"y", metadata::kInt32, 1, 0, 4}));
}

TEST_P(LayoutOf, AKindThatDoesNotExistIsAFieldWithoutBytes) {
    for (const unsigned int kind : {0u, 25u, 1000u}) {
        add(std::to_wstring(kind).c_str(), static_cast<metadata::tValue>(kind), 1);
    }
    add(L"y", metadata::kInt32, 1);
    EXPECT_THAT(fields(layout(L"a")), ElementsAre(tFieldIs{L"0", static_cast<metadata::tValue>(0), 0, 0, 0},
                                                  tFieldIs{L"25", static_cast<metadata::tValue>(25), 0, 0, 0},
                                                  tFieldIs{L"1000", static_cast<metadata::tValue>(1000), 0, 0, 0},
                                                  tFieldIs{L"y", metadata::kInt32, 1, 0, 4}));
}

TEST_P(LayoutOf, NestedTablesPutsTheirNamesInFront) {
    add(L"x", metadata::kInt32, 1);
    const unsigned int t = tree::addTable(store(), _a, L"t");
    const unsigned int u = tree::addTable(store(), t, L"u");
    addValues(store(), u, L"deep", metadata::kInt32, 1);
    addValues(store(), t, L"y", metadata::kInt32, 1);
    add(L"z", metadata::kInt32, 1);
    IStructLayout& a = layout(L"a");
    EXPECT_THAT(fields(a),
                ElementsAre(tFieldIs{L"x", metadata::kInt32, 1, 0, 4}, tFieldIs{L"t.u.deep", metadata::kInt32, 1, 4, 4},
                            tFieldIs{L"t.y", metadata::kInt32, 1, 8, 4}, tFieldIs{L"z", metadata::kInt32, 1, 12, 4}));
    EXPECT_EQ(a.stride(), 16u);
    EXPECT_EQ(a.values(), 4u);
}

TEST_P(LayoutOf, AnEmptyNestedTableAddsNothing) {
    tree::addTable(store(), tree::addTable(store(), _a, L"t"), L"u");
    EXPECT_EQ(layout(L"a").fields(), 0u);
}

TEST_P(LayoutOf, ATableInATableHasNoPrefixWhenItIsNamedItself) {
    addValues(store(), tree::addTable(store(), _a, L"t"), L"x", metadata::kInt32, 1);
    EXPECT_THAT(names(layout(L"a.t")), ElementsAre(L"x"));
}

TEST_P(LayoutOf, ATableWithAContainerInItPassesOverThat) {
    const unsigned int c = tree::addContainer(store(), _a, L"c");
    addValues(store(), c, L"inner", metadata::kInt32, 1);
    add(L"x", metadata::kInt32, 1);
    EXPECT_THAT(names(layout(L"a")), ElementsAre(L"x"));
}

TEST_P(LayoutOf, FieldsOfOneNameKeepsAllAndFindsTheFirst) {
    addValues(store(), tree::addTable(store(), _a, L"t"), L"x", metadata::kDouble, 1);
    add(L"t.x", metadata::kInt32, 1);
    IStructLayout& a = layout(L"a");
    EXPECT_THAT(fields(a),
                ElementsAre(tFieldIs{L"t.x", metadata::kDouble, 1, 0, 8}, tFieldIs{L"t.x", metadata::kInt32, 1, 8, 4}));
    EXPECT_EQ(a.stride(), 12u);
    EXPECT_EQ(a.values(), 2u);
    EXPECT_EQ(a.get(L"t.x"), a.get(0u));
}

TEST_P(LayoutOf, ATableFindsFieldsByTheirWholeNames) {
    add(L"x", metadata::kInt32, 1);
    addValues(store(), tree::addTable(store(), _a, L"t"), L"y", metadata::kInt32, 1);
    IStructLayout& a = layout(L"a");
    EXPECT_EQ(a.get(L"x"), a.get(0u));
    EXPECT_EQ(a.get(L"t.y"), a.get(1u));
    for (const wchar_t* name : {L"y", L"t", L"t.", L"X", L"x ", L"", L"t.y.z"}) EXPECT_EQ(a.get(name), nullptr) << name;
    EXPECT_EQ(a.get(2u), nullptr);
}

TEST_P(LayoutOf, ATableWithNamesThatMapsReserveFindsThem) {
    add(L"$$$$$_____empty_key", metadata::kInt32, 1);
    add(L"$$$$$_____deleted_key", metadata::kInt32, 1);
    IStructLayout& a = layout(L"a");
    EXPECT_EQ(a.get(L"$$$$$_____empty_key"), a.get(0u));
    EXPECT_EQ(a.get(L"$$$$$_____deleted_key"), a.get(1u));
}

TEST_P(LayoutOf, ManyFieldsFindsEachByItsName) {
    data::Design::Table table(store(), _a, false);
    for (int i = 0; i < 2000; ++i) {
        table.add(tree::primitive(store(), (L"item_" + std::to_wstring(i)).c_str(), metadata::kInt8));
    }
    IStructLayout& a = layout(L"a");
    ASSERT_EQ(a.fields(), 2000u);
    for (unsigned int i = 0; i < a.fields(); ++i) ASSERT_EQ(a.get(a.get(i)->name), a.get(i));
}

TEST_P(LayoutOf, ADamagedListLooksAtAsManyEntriesAsItHasNames) {
    list(777);
    add(L"x", metadata::kInt32, 1);
    EXPECT_THAT(names(layout(L"a")), IsEmpty()) << "one name, and the first entry is no record";
}

TEST_P(LayoutOf, ADamagedListTakesTwoChildrenOfOneNameAmongItsFirstEntries) {
    add(L"x", metadata::kInt32, 1);
    list(tree::primitive(store(), L"x", metadata::kDouble));
    add(L"y", metadata::kInt32, 1);
    IStructLayout& a = layout(L"a");
    EXPECT_THAT(names(a), ElementsAre(L"x", L"x"));
    EXPECT_EQ(a.get(L"x"), a.get(0u));
}

TEST_P(LayoutOf, ATableThatIsFoundBelowItselfEnds) {
    const unsigned int t = tree::addTable(store(), _a, L"t");
    stored::enlist(store(), t, _a);
    addValues(store(), t, L"x", metadata::kInt32, 1);
    add(L"y", metadata::kInt32, 1);
    EXPECT_THAT(names(layout(L"a")), ElementsAre(L"t.x", L"y"));
}

}  // namespace
