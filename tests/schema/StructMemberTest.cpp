// Members of a schema that are structs themselves.
#include "record/Primitive.h"
#include "tests/schema/SchemaFixture.h"

namespace {

using namespace lumivard::platform::test_support;
using testing::ElementsAre;
using testing::IsEmpty;

/// A schema "pose" of 12 bytes: a number "x", and an array "y" of two.
class StructMember : public SchemaTest {
protected:
    StructMember() {
        const unsigned int pose = schema(L"pose");
        addValues(store(), pose, L"x", metadata::kInt32, 1);
        addValues(store(), pose, L"y", metadata::kInt32, 2);
    }

    /// The names of the fields of a schema with one member of so many bytes.
    tNames member(const wchar_t* base, unsigned int bytes) {
        const std::wstring name = L"one of " + std::to_wstring(bytes) + (base ? base : L"");
        std::wstring uri = name;
        for (wchar_t& character : uri) {
            if (character == L';' || character == L'.') character = L'-';
        }
        addStruct(store(), schema(uri.c_str()), L"s", base, bytes);
        return names(layout(uri.c_str()));
    }
};
LVP_ON_EACH_STORE(StructMember);

TEST_P(StructMember, OfOneElementAppearsAsItsFields) {
    EXPECT_THAT(member(L"pose", 12), ElementsAre(L"s.x", L"s.y"));
}

TEST_P(StructMember, OfSeveralElementsNumbersThem) {
    EXPECT_THAT(member(L"pose", 24), ElementsAre(L"s[0].x", L"s[0].y", L"s[1].x", L"s[1].y"));
    EXPECT_EQ(member(L"pose", 12 * 101).back(), L"s[100].y");
}

TEST_P(StructMember, IgnoresARemainder) {
    EXPECT_THAT(member(L"pose", 30), ElementsAre(L"s[0].x", L"s[0].y", L"s[1].x", L"s[1].y"));
    EXPECT_THAT(member(L"pose", 23), ElementsAre(L"s.x", L"s.y"));
    EXPECT_THAT(member(L"pose", 13), ElementsAre(L"s.x", L"s.y"));
}

TEST_P(StructMember, ThatIsTooSmallForOneElementHasNoFields) {
    EXPECT_THAT(member(L"pose", 11), IsEmpty());
    EXPECT_THAT(member(L"pose", 0), IsEmpty());
}

TEST_P(StructMember, WithAURIHasNoFields) {
    const unsigned int s = addStruct(store(), schema(L"a"), L"s", L"pose", 0);
    data::Design::Primitive(store(), s).uri(L"a text that is long enough for a pose");
    EXPECT_EQ(layout(L"a").fields(), 0u);
}

TEST_P(StructMember, WithoutExactlyOneSchemaHasNoFields) {
    schemaOf(L"other", L"z");
    for (const wchar_t* base : {L"unknown", L"pose;other", L"pose;pose", L"unknown;nothing", L"Pose", L" pose"}) {
        EXPECT_THAT(member(base, 24), IsEmpty()) << base;
    }
    EXPECT_THAT(member(nullptr, 24), IsEmpty());
}

TEST_P(StructMember, WithOneSchemaAmongUnknownNamesHasItsFields) {
    for (const wchar_t* base : {L"unknown;pose", L"pose;unknown", L"pose;", L";pose"}) {
        EXPECT_THAT(member(base, 12), ElementsAre(L"s.x", L"s.y")) << base;
    }
}

TEST_P(StructMember, OfAnEmptySchemaHasNoFields) {
    schema(L"empty");
    addValues(store(), schema(L"no bytes"), L"z", metadata::kInt32, 0);
    EXPECT_THAT(member(L"empty", 24), IsEmpty());
    EXPECT_THAT(member(L"no bytes", 24), IsEmpty());
}

TEST_P(StructMember, OfAnotherKindThanAStructIsAPlainField) {
    const unsigned int a = schema(L"a");
    const unsigned int p = addValues(store(), a, L"p", metadata::kBinary, 12);
    const std::string base = wide(L"pose");
    data::Record::Primitive(store(), p).arrays(34, base.data(), base.size());
    EXPECT_THAT(names(layout(L"a")), ElementsAre(L"p"));
}

TEST_P(StructMember, HasItsPlaceInTheOuterBlock) {
    const unsigned int a = schema(L"a");
    addValues(store(), a, L"first", metadata::kBool, 1);
    addStruct(store(), a, L"s", L"pose", 24);
    addValues(store(), a, L"last", metadata::kDouble, 1);
    IStructLayout& outer = layout(L"a");
    EXPECT_THAT(
        fields(outer),
        ElementsAre(tFieldIs{L"first", metadata::kBool, 1, 0, 1}, tFieldIs{L"s[0].x", metadata::kInt32, 1, 1, 4},
                    tFieldIs{L"s[0].y", metadata::kInt32, 2, 5, 8}, tFieldIs{L"s[1].x", metadata::kInt32, 1, 13, 4},
                    tFieldIs{L"s[1].y", metadata::kInt32, 2, 17, 8}, tFieldIs{L"last", metadata::kDouble, 1, 25, 8}));
    EXPECT_EQ(outer.stride(), 33u);
    EXPECT_EQ(outer.values(), 8u);
    EXPECT_EQ(outer.get(L"s[1].y"), outer.get(4u));
    EXPECT_EQ(layout(L"pose").get(L"y")->offset, 4u) << "and keeps its own there";
}

TEST_P(StructMember, GivesNoByteOfARemainderToTheBlock) {
    const unsigned int a = schema(L"a");
    addStruct(store(), a, L"s", L"pose", 20);
    addValues(store(), a, L"last", metadata::kBool, 1);
    EXPECT_EQ(layout(L"a").get(L"last")->offset, 12u);
    EXPECT_EQ(layout(L"a").stride(), 13u);
}

TEST_P(StructMember, WithoutFieldsGivesNoByteToTheBlock) {
    const unsigned int a = schema(L"a");
    addStruct(store(), a, L"s", L"unknown", 20);
    addValues(store(), a, L"last", metadata::kBool, 1);
    EXPECT_THAT(fields(layout(L"a")), ElementsAre(tFieldIs{L"last", metadata::kBool, 1, 0, 1}));
}

TEST_P(StructMember, InANestedTableHasTheTablesNameInFront) {
    addStruct(store(), tree::addTable(store(), schema(L"a"), L"t"), L"s", L"pose", 12);
    EXPECT_THAT(names(layout(L"a")), ElementsAre(L"t.s.x", L"t.s.y"));
}

TEST_P(StructMember, MayHaveStructsAndTablesInIt) {
    const unsigned int joint = schema(L"joint");
    addStruct(store(), joint, L"from", L"pose", 12);
    addValues(store(), tree::addTable(store(), joint, L"t"), L"z", metadata::kInt32, 1);
    addStruct(store(), schema(L"arm"), L"j", L"joint", 32);
    EXPECT_THAT(names(layout(L"arm")), ElementsAre(L"j[0].from.x", L"j[0].from.y", L"j[0].t.z",  //
                                                   L"j[1].from.x", L"j[1].from.y", L"j[1].t.z"));
    EXPECT_EQ(layout(L"arm").stride(), 32u);
}

TEST_P(StructMember, MayHaveItsSchemaInAnotherStore) {
    schemaOf(other(), L"far", L"z");
    addStruct(store(), schema(L"a"), L"s", L"far", 4);
    _locator->push(other());
    EXPECT_THAT(names(layout(L"a")), ElementsAre(L"s.z"));
}

TEST_P(StructMember, MayNameItsSchemaByAPath) {
    const unsigned int c = tree::addContainer(store(), 0, L"c");
    addValues(store(), tree::addTable(store(), c, L"t"), L"z", metadata::kInt32, 1);
    EXPECT_THAT(member(L"c.t", 4), ElementsAre(L"s.z"));
}

TEST_P(StructMember, GetsTheSchemaThatTheLocatorHasKnown) {
    const auto pose = layouts(resolve(L"pose"));
    addValues(store(), pose.at(0)->offset(), L"late", metadata::kInt32, 1);
    EXPECT_THAT(member(L"pose", 12), ElementsAre(L"s.x", L"s.y"));
}

TEST_P(StructMember, LeavesItsSchemaKnownToTheLocator) {
    member(L"pose", 12);
    const auto pose = layouts(resolve(L"pose"));
    ASSERT_EQ(pose.size(), 1u);
    EXPECT_EQ(stored::refs(store(), pose[0]->offset()), 1u);
    EXPECT_THAT(names(*pose[0]), ElementsAre(L"x", L"y"));
}

}  // namespace
