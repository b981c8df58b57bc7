#include "tests/support/ClientFixture.h"
#include "tests/support/StoredRecords.h"

namespace {

using namespace lumivard::platform::test_support;

/// A primitive apart from its values: the rest of what it carries.
class Primitive : public ClientTest {
protected:
    SharedPtr<IPrimitive> made(metadata::tValue kind) { return top()->create(L"value", kind); }

    /// The value's property, opened anew at each call.
    SharedPtr<IProperty> reopened() { return property(L"value"); }
};
LVP_ON_EACH_STORE(Primitive);

TEST_P(Primitive, KeepsTheSchemaOfAStruct) {
    const auto pose = made(metadata::kStruct);
    EXPECT_EQ(nullptr, pose->schema().value());
    EXPECT_TRUE(pose->schema(L"pose;of.something"));
    EXPECT_EQ(L"pose;of.something", text(pose->schema()));
    EXPECT_EQ(L"pose;of.something", text(asPrimitive(reopened()).schema()));
}

TEST_P(Primitive, RefusesASchemaForEveryOtherKind) {
    for (unsigned int kind = 0; kind <= 25; ++kind) {
        if (kind == metadata::kStruct) continue;
        auto value = made(static_cast<metadata::tValue>(kind));
        const unsigned int offset = stored::children(store(), stored::children(store(), 0).at(0)).back();
        const std::string before = stored::bytes(store(), offset);
        EXPECT_FALSE(value->schema(L"pose")) << kind;
        EXPECT_FALSE(value->schema(kNoName)) << kind;
        EXPECT_EQ(nullptr, value->schema().value()) << kind;
        EXPECT_EQ(before, stored::bytes(store(), offset)) << kind;
        value.reset();
        top()->destroy(L"value");
    }
}

TEST_P(Primitive, LeavesItsValuesToANewSchema) {
    const auto pose = made(metadata::kStruct);
    pose->set("abc", 0, 3);
    EXPECT_TRUE(pose->schema(L"pose"));
    EXPECT_EQ((std::vector<char>{'a', 'b', 'c'}), values<char>(*pose));
    EXPECT_EQ((std::vector<char>{'a', 'b', 'c'}), values<char>(asPrimitive(reopened())));
}

TEST_P(Primitive, KeepsTheLocaleOfItsValue) {
    const auto value = made(metadata::kString);
    EXPECT_EQ(nullptr, value->valuelocale().value());
    value->valuelocale(L"en-us");
    EXPECT_EQ(L"en-us", text(value->valuelocale()));
    EXPECT_EQ(L"en-us", text(asPrimitive(reopened()).valuelocale()));
    value->valuelocale(kNoName);
    EXPECT_EQ(nullptr, value->valuelocale().value());
    EXPECT_EQ(nullptr, asPrimitive(reopened()).valuelocale().value());
}

TEST_P(Primitive, KeepsItsUnit) {
    const auto table = top()->create(L"table", kNoSchema);
    const auto length = table->create(L"length", metadata::kDouble, units::kMeter);
    EXPECT_EQ(units::kMeter, length->units());
    EXPECT_EQ(units::kMeter, asPrimitive(property(L"table.length")).units());
    EXPECT_EQ(units::kNoUnit, made(metadata::kDouble)->units());
}

TEST_P(Primitive, PutsAURIInThePlaceOfItsValues) {
    const auto value = made(metadata::kInt32);
    const int numbers[] = {1, 2, 3};
    int room[] = {7, 7, 7};
    value->set(numbers, 0, 3);
    EXPECT_EQ(nullptr, value->uri().value());
    EXPECT_TRUE(value->uri(L"file://x"));
    EXPECT_EQ(L"file://x", text(value->uri()));
    EXPECT_EQ(0u, value->dimension());
    EXPECT_EQ(36u, value->bytes());
    EXPECT_FALSE(value->set(numbers, 0, 1));
    EXPECT_FALSE(value->get(room, 0, 1));
    EXPECT_FALSE(value->reset(1));
    EXPECT_FALSE(value->reset(0));
    EXPECT_EQ(7, room[0]);
    EXPECT_EQ(L"file://x", text(value->uri()));
}

TEST_P(Primitive, KeepsItsURIThroughItsFlag) {
    made(metadata::kInt32)->uri(L"x");
    EXPECT_EQ(0x08, reopened()->flags());
    EXPECT_EQ(L"x", text(asPrimitive(reopened()).uri()));
    EXPECT_EQ(0u, asPrimitive(reopened()).dimension());
}

TEST_P(Primitive, ReplacesItsURI) {
    const auto value = made(metadata::kInt32);
    value->uri(L"a long one to begin with");
    EXPECT_TRUE(value->uri(L"b"));
    EXPECT_EQ(L"b", text(value->uri()));
    EXPECT_EQ(8u, value->bytes());
    EXPECT_EQ(L"b", text(asPrimitive(reopened()).uri()));
}

TEST_P(Primitive, IsAnEmptyArrayOnceItsURIIsCleared) {
    const auto value = made(metadata::kInt32);
    const int numbers[] = {1, 2};
    value->set(numbers, 0, 2);
    value->uri(L"x");
    EXPECT_TRUE(value->uri(kNoName));
    EXPECT_EQ(nullptr, value->uri().value());
    EXPECT_EQ(0u, value->dimension());
    EXPECT_EQ(0u, value->bytes());
    EXPECT_EQ(0, reopened()->flags());
    EXPECT_TRUE(value->set(numbers, 0, 2));
    EXPECT_EQ((std::vector<int>{1, 2}), values<int>(asPrimitive(reopened())));
}

TEST_P(Primitive, LosesItsValuesToAClearedURIThatWasNotThere) {
    const auto value = made(metadata::kInt32);
    const int number = 1;
    value->set(&number, 0, 1);
    EXPECT_TRUE(value->uri(L""));
    EXPECT_EQ(0u, value->dimension());
}

TEST_P(Primitive, KeepsOtherFlagsWhenItsURIChanges) {
    const auto value = made(metadata::kInt32);
    value->container()->on(0x01);
    value->uri(L"x");
    EXPECT_EQ(0x09, value->container()->flags());
    value->uri(kNoName);
    EXPECT_EQ(0x01, value->container()->flags());
}

TEST_P(Primitive, JudgesByTheLengthThatItKnew) {
    const auto made = this->made(metadata::kInt32);
    const int numbers[] = {1, 2, 3};
    made->set(numbers, 0, 2);
    const auto earlier = reopened();
    made->set(numbers, 0, 3);
    EXPECT_EQ(3u, made->dimension());
    EXPECT_EQ(2u, asPrimitive(earlier).dimension());
    EXPECT_EQ(8u, asPrimitive(earlier).bytes());
    int room[3] = {};
    EXPECT_FALSE(asPrimitive(earlier).get(room, 0, 3));
    EXPECT_EQ((std::vector<int>{1, 2}), values<int>(asPrimitive(earlier)));
    EXPECT_EQ(3u, asPrimitive(reopened()).dimension());
}

TEST_P(Primitive, SeesChangesWithinTheLengthThatItKnew) {
    const auto made = this->made(metadata::kInt32);
    const int numbers[] = {1, 2};
    made->set(numbers, 0, 2);
    const auto earlier = reopened();
    const int changed = 9;
    made->set(&changed, 1, 1);
    EXPECT_EQ((std::vector<int>{1, 9}), values<int>(asPrimitive(earlier)));
}

TEST_P(Primitive, ReadsNothingBeyondAnArrayThatAnotherObjectCut) {
    const auto made = this->made(metadata::kInt32);
    const int numbers[] = {1, 2, 3};
    made->set(numbers, 0, 3);
    const auto earlier = reopened();
    made->reset(1);
    int room[3] = {7, 7, 7};
    EXPECT_FALSE(asPrimitive(earlier).get(room, 0, 3));
    EXPECT_EQ(7, room[0]);
}

}  // namespace
