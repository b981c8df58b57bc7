// Whether a set conforms to a schema, by the names that it records and by its items.
#include "design/Container.h"
#include "schema/SchemaLocatorImpl.h"
#include "tests/schema/SchemaFixture.h"

namespace {

using namespace lumivard::platform::test_support;
using data::Structural::Container;

/// Schemas in the one store, and an empty container in the other.
class Validate : public SchemaTest {
protected:
    bool prevalidate(const wchar_t* uri, const wchar_t* base) {
        const auto schema = resolve(uri);
        return SchemaImpl::of(schema.get())->prevalidate(base);
    }
    bool validate(const wchar_t* uri) {
        const auto schema = resolve(uri);
        return SchemaImpl::of(schema.get())->validate(Container(other(), _set, false));
    }
    bool validates(const wchar_t* uri, const wchar_t* base, bool quick) {
        const auto schema = resolve(uri);
        return SchemaImpl::of(schema.get())->validates(Container(other(), _set, false), base, quick);
    }

    void have(const wchar_t* name) { tree::addPrimitive(other(), _set, name); }

    const unsigned int _set = tree::addContainer(other(), 0, L"set");
};
LVP_ON_EACH_STORE(Validate);

TEST_P(Validate, ByNameWantsEachNameInTheListInAnyOrder) {
    for (const wchar_t* name : {L"a", L"b"}) schema(name);
    for (const wchar_t* base : {L"a;b", L"b;a", L"x;b;y;a;z", L";a;;b;", L"a;a;b"}) {
        EXPECT_TRUE(prevalidate(L"a;b", base)) << base;
    }
    for (const wchar_t* base : {L"a", L"b", L"x", L"", L";", L"a,b"}) EXPECT_FALSE(prevalidate(L"a;b", base)) << base;
}

TEST_P(Validate, ByNameWantsWholeNames) {
    schema(L"name");
    for (const wchar_t* base : {L"nam", L"names", L"Name", L" name", L"name ", L"n;ame"}) {
        EXPECT_FALSE(prevalidate(L"name", base)) << base;
    }
    EXPECT_TRUE(prevalidate(L"name", L"name"));
}

TEST_P(Validate, ByNameWantsTheNameOnceForASchemaNamedTwice) {
    schema(L"a");
    EXPECT_TRUE(prevalidate(L"a;a", L"a"));
}

TEST_P(Validate, ByNameDoesNotWantTheNamesThatWereUnknown) {
    schema(L"a");
    EXPECT_TRUE(prevalidate(L"unknown;a", L"a"));
}

TEST_P(Validate, ByNameFindsAnEmptyNameInAnEmptyPiece) {
    schema(L"");
    EXPECT_TRUE(prevalidate(L";", L"a;"));
    EXPECT_FALSE(prevalidate(L";", L"a"));
}

TEST_P(Validate, ByNameTakesAPathForTheNameThatItIs) {
    tree::addTable(store(), tree::addContainer(store(), 0, L"c"), L"t");
    EXPECT_TRUE(prevalidate(L"c.t", L"c.t"));
    EXPECT_FALSE(prevalidate(L"c.t", L"t"));
}

TEST_P(Validate, ByItemsIsNeverTrueForSchemasThatAreAllEmpty) {
    schema(L"a");
    schema(L"b");
    EXPECT_FALSE(validate(L"a"));
    EXPECT_FALSE(validate(L"a;b"));
    have(L"x");
    EXPECT_FALSE(validate(L"a"));
    EXPECT_TRUE(prevalidate(L"a", L"a")) << "but by name it can be";
}

TEST_P(Validate, ByItemsGoesByTheOtherWhereOneOfTwoIsEmpty) {
    schema(L"empty");
    schemaOf(L"a", L"x");
    EXPECT_FALSE(validate(L"empty;a"));
    EXPECT_FALSE(validate(L"a;empty"));
    have(L"x");
    EXPECT_TRUE(validate(L"empty;a"));
    EXPECT_TRUE(validate(L"a;empty"));
}

TEST_P(Validate, ByItemsWantsThoseOfEachSchema) {
    schemaOf(L"a", L"x");
    schemaOf(L"b", L"y");
    have(L"x");
    EXPECT_TRUE(validate(L"a"));
    EXPECT_FALSE(validate(L"b"));
    EXPECT_FALSE(validate(L"a;b"));
    EXPECT_FALSE(validate(L"b;a"));
}

TEST_P(Validate, ByItemsBeginsAtTheFirstItemForEachSchema) {
    schemaOf(L"a", L"x");
    schemaOf(L"b", L"y");
    have(L"y");
    have(L"x");
    EXPECT_TRUE(validate(L"a;b"));
    EXPECT_TRUE(validate(L"a;a;b;a"));
}

TEST_P(Validate, ByItemsLooksAtTheSchemasTableAsItIsNow) {
    const unsigned int a = schemaOf(L"a", L"x");
    have(L"x");
    EXPECT_TRUE(validate(L"a"));
    tree::addPrimitive(store(), a, L"y");
    EXPECT_FALSE(validate(L"a"));
}

TEST_P(Validate, ByItemsStaysFalseForASchemaThatWasEmptyWhenItWasFound) {
    const unsigned int a = schema(L"a");
    ASSERT_TRUE(resolve(L"a"));
    addValues(store(), a, L"x", metadata::kInt32, 1);
    have(L"x");
    EXPECT_FALSE(validate(L"a"));
    EXPECT_TRUE(_locator->pop(store()));
    _locator->push(store());
    EXPECT_TRUE(validate(L"a"));
}

TEST_P(Validate, TrustsTheRecordedNamesAndLooksNoFurther) {
    schemaOf(L"a", L"x");
    for (const bool quick : {true, false}) EXPECT_TRUE(validates(L"a", L"a", quick));
}

TEST_P(Validate, LooksAtTheItemsWhereTheNamesDoNotSay) {
    schemaOf(L"a", L"x");
    have(L"x");
    for (const wchar_t* base : {static_cast<const wchar_t*>(nullptr), L"b"}) {
        EXPECT_TRUE(validates(L"a", base, false));
        EXPECT_FALSE(validates(L"a", base, true)) << "not when it is to be quick";
    }
}

TEST_P(Validate, IsFalseWhereNeitherSays) {
    schemaOf(L"a", L"x");
    for (const bool quick : {true, false}) {
        EXPECT_FALSE(validates(L"a", nullptr, quick));
        EXPECT_FALSE(validates(L"a", L"b", quick));
    }
}

}  // namespace
