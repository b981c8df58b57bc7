// What a value becomes, where it may go, and what is left as it was where it may not.
#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "tests/easy/EasyFixture.h"

namespace {

using namespace lumivard::platform::test_support;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

class EasySet : public EasyTest {
protected:
    template <class T>
    void expectKind(T value, metadata::tValue kind) {
        ASSERT_TRUE(easy::set(model(), L"one", value)) << kind;
        EXPECT_EQ(kindAt(L"one"), kind);
        EXPECT_THAT(easy::get<T>(model(), L"one"), Optional(value)) << kind;
        ASSERT_TRUE(model().destroy(L"one"));
    }
};
LVP_ON_EACH_STORE(EasySet);

TEST_P(EasySet, MakesAPrimitiveOfTheTypesKind) {
    using namespace metadata;
    expectKind(true, kBool);
    expectKind(std::int8_t{-5}, kInt8);
    expectKind(std::uint8_t{200}, kUInt8);
    expectKind(std::int16_t{-500}, kInt16);
    expectKind(std::uint16_t{60000}, kUInt16);
    expectKind(-70000, kInt32);
    expectKind(4000000000u, kUInt32);
    expectKind(-5000000000L, kInt64);
    expectKind(-5000000000LL, kInt64);
    expectKind(18000000000000000000uLL, kUInt64);
    expectKind(2.5F, kScalar);
    expectKind(2.5, kDouble);
    expectKind(std::byte{7}, kBinary);
}

TEST_P(EasySet, TakesSeveralNumbersInWhateverLiesTogether) {
    const int plain[] = {1, 2};
    const std::vector vector{3, 4};
    const std::array array{5, 6};
    std::array later{7, 8};
    EXPECT_TRUE(easy::set(model(), L"plain", plain));
    EXPECT_TRUE(easy::set(model(), L"vector", vector));
    EXPECT_TRUE(easy::set(model(), L"array", array));
    EXPECT_TRUE(easy::set(model(), L"span", std::span<const int>(plain)));
    EXPECT_TRUE(easy::set(model(), L"writable", std::span<int>(later)));
    EXPECT_TRUE(easy::set(model(), L"bools", std::vector{true, false, true}));
    EXPECT_TRUE(easy::set(model(), L"bytes", std::array{std::byte{1}, std::byte{2}}));
    EXPECT_THAT(stored<int>(L"plain"), ElementsAre(1, 2));
    EXPECT_THAT(stored<int>(L"vector"), ElementsAre(3, 4));
    EXPECT_THAT(stored<int>(L"array"), ElementsAre(5, 6));
    EXPECT_THAT(stored<int>(L"span"), ElementsAre(1, 2));
    EXPECT_THAT(stored<int>(L"writable"), ElementsAre(7, 8));
    EXPECT_THAT(stored<unsigned char>(L"bools"), ElementsAre(1, 0, 1));
    EXPECT_EQ(kindAt(L"bools"), metadata::kBool);
    EXPECT_THAT(stored<unsigned char>(L"bytes"), ElementsAre(1, 2));
}

TEST_P(EasySet, ReplacesTheWholeValue) {
    EXPECT_TRUE(easy::set(model(), L"v", std::vector{1, 2, 3}));
    EXPECT_TRUE(easy::set(model(), L"v", std::vector{4, 5}));
    EXPECT_THAT(stored<int>(L"v"), ElementsAre(4, 5));
    EXPECT_TRUE(easy::set(model(), L"v", std::vector{6, 7, 8, 9}));
    EXPECT_THAT(stored<int>(L"v"), ElementsAre(6, 7, 8, 9));
    EXPECT_TRUE(easy::set(model(), L"v", 10));
    EXPECT_THAT(stored<int>(L"v"), ElementsAre(10));
    EXPECT_TRUE(easy::set(model(), L"v", std::vector<int>()));
    EXPECT_THAT(stored<int>(L"v"), IsEmpty());
    EXPECT_TRUE(easy::set(model(), L"v", 11));
    EXPECT_THAT(stored<int>(L"v"), ElementsAre(11));
}

TEST_P(EasySet, MakesAnEmptyPrimitiveOfNoElements) {
    EXPECT_TRUE(easy::set(model(), L"none", std::vector<double>()));
    EXPECT_EQ(kindAt(L"none"), metadata::kDouble);
    EXPECT_THAT(stored<double>(L"none"), IsEmpty());
}

TEST_P(EasySet, RefusesAnotherKindAndLeavesTheValue) {
    put<int>(L"v", metadata::kInt32, {1, 2});
    EXPECT_FALSE(easy::set(model(), L"v", 2.5));
    EXPECT_FALSE(easy::set(model(), L"v", 2L));
    EXPECT_FALSE(easy::set(model(), L"v", 2u));
    EXPECT_FALSE(easy::set(model(), L"v", true));
    EXPECT_FALSE(easy::set(model(), L"v", L"two"));
    EXPECT_FALSE(easy::set(model(), L"v", std::vector{1.5}));
    EXPECT_FALSE(easy::set(model(), L"v", std::vector{true}));
    EXPECT_THAT(stored<int>(L"v"), ElementsAre(1, 2));
}

TEST_P(EasySet, GoesNoNameBeyondAPrimitive) {
    ASSERT_TRUE(easy::set(model(), L"title", "Carport"));
    for (const wchar_t* path : {L"title.x", L"title.", L"title.x.y"}) {
        EXPECT_FALSE(easy::set(model(), path, "overwritten")) << path;
        EXPECT_FALSE(easy::get<std::string>(model(), path)) << path;
    }
    EXPECT_FALSE(easy::set(model(), L"title.title", "overwritten"));
    EXPECT_EQ(easy::get<std::string>(model(), L"title"), "Carport");
}

TEST_P(EasySet, PutsSeveralDoublesIntoVectorsAndOneNot) {
    put<double>(L"at", metadata::kVec3, {});
    EXPECT_TRUE(easy::set(model(), L"at", std::array{1.0, 2.0, 3.0}));
    EXPECT_FALSE(easy::set(model(), L"at", 1.0));
    EXPECT_THAT(stored<double>(L"at"), ElementsAre(1, 2, 3));
    EXPECT_EQ(kindAt(L"at"), metadata::kVec3);
}

TEST_P(EasySet, MakesTheKindThatIsAskedForWhereItHoldsTheType) {
    EXPECT_TRUE(easy::set(model(), L"at", std::array{1.0, 2.0}, metadata::kVec2));
    EXPECT_EQ(kindAt(L"at"), metadata::kVec2);
    EXPECT_FALSE(easy::set(model(), L"other", std::array{1.0, 2.0}, metadata::kScalar));
    EXPECT_FALSE(easy::set(model(), L"other", 1.0, metadata::kVec2));
    EXPECT_FALSE(easy::set(model(), L"other", std::vector{true}, metadata::kUInt8));
    EXPECT_FALSE(easy::set(model(), L"other", L"text", metadata::kInt32));
    EXPECT_FALSE(top()->has(L"other"));
    EXPECT_FALSE(easy::set(model(), L"at", std::array{3.0, 4.0}, metadata::kDouble)) << "which is not its kind";
    EXPECT_TRUE(easy::set(model(), L"at", std::array{3.0, 4.0}, metadata::kVec2));
    EXPECT_THAT(stored<double>(L"at"), ElementsAre(3, 4));
}

TEST_P(EasySet, MakesAPrimitiveWithAUnitInATable) {
    const auto table = model().create(L"table", kNoSchema);
    EXPECT_TRUE(easy::set(model(), L"table.length", 2.5, units::kMeter));
    EXPECT_EQ(asPrimitive(there(L"table.length")).units(), units::kMeter);
    EXPECT_TRUE(easy::set(model(), L"table.at", std::array{1.0, 2.0}, {units::kMeter, metadata::kVec2}));
    EXPECT_EQ(asPrimitive(there(L"table.at")).units(), units::kMeter);
    EXPECT_EQ(kindAt(L"table.at"), metadata::kVec2);
    EXPECT_TRUE(easy::set(model(), L"table.plain", 2.5));
    EXPECT_EQ(asPrimitive(there(L"table.plain")).units(), units::kNoUnit);
}

TEST_P(EasySet, RefusesANewPrimitiveWithAUnitInAContainer) {
    model().create(IContainer::kGroup, L"group", kNoSchema);
    EXPECT_FALSE(easy::set(model(), L"length", 2.5, units::kMeter));
    EXPECT_FALSE(easy::set(model(), L"group.length", 2.5, units::kMeter));
    EXPECT_FALSE(top()->has(L"length"));
    EXPECT_FALSE(top()->has(L"group.length"));
}

TEST_P(EasySet, AsksForTheUnitThatIsGiven) {
    model().create(L"table", kNoSchema)->create(L"length", metadata::kDouble, units::kMeter);
    EXPECT_TRUE(easy::set(model(), L"table.length", 1.0, units::kMeter));
    EXPECT_TRUE(easy::set(model(), L"table.length", 2.0));
    EXPECT_FALSE(easy::set(model(), L"table.length", 3.0, units::kMilliMeter));
    EXPECT_THAT(stored<double>(L"table.length"), ElementsAre(2));
}

TEST_P(EasySet, RefusesWhatIsNoPrimitive) {
    model().create(IContainer::kGroup, L"group", kNoSchema)->create(L"table", kNoSchema);
    const std::wstring zero(L"a\0b", 3);
    for (const std::wstring& path :
         {std::wstring(), std::wstring(L"group"), std::wstring(L"group.table"), std::wstring(L"nothing.value"),
          std::wstring(L"."), std::wstring(L"group."), std::wstring(L".value"), zero}) {
        EXPECT_FALSE(easy::set(model(), path, 1)) << testing::PrintToString(path);
    }
    EXPECT_THAT(names(*top()->properties()), IsEmpty());
    EXPECT_THAT(names(*top()->containers()), ElementsAre(L"group"));
    EXPECT_THAT(names(*find(L"top.group")->properties()), ElementsAre(L"table"));
}

TEST_P(EasySet, DoesNotCutAPathAtAZero) {
    put<int>(L"a", metadata::kInt32, {1});
    EXPECT_FALSE(easy::set(model(), std::wstring(L"a\0b", 3), 2));
    EXPECT_FALSE(easy::set(store(), std::wstring(L"top\0.a", 6), 2));
    EXPECT_THAT(stored<int>(L"a"), ElementsAre(1));
}

TEST_P(EasySet, LeavesAUriInItsPlace) {
    put<int>(L"away", metadata::kInt32, {1, 2});
    asPrimitive(there(L"away")).uri(L"file:elsewhere");
    EXPECT_FALSE(easy::set(model(), L"away", 1));
    EXPECT_FALSE(easy::set(model(), L"away", std::vector<int>()));
    EXPECT_EQ(text(asPrimitive(there(L"away")).uri()), L"file:elsewhere");
}

TEST_P(EasySet, BeginsAtTheTopOfAStoreToo) {
    EXPECT_TRUE(easy::set(store(), L"top.value", 5));
    EXPECT_THAT(stored<int>(L"value"), ElementsAre(5));
    EXPECT_TRUE(easy::set(store(), L"top.value", 6));
    EXPECT_THAT(stored<int>(L"value"), ElementsAre(6));
    EXPECT_FALSE(easy::set(store(), L"value", 5)) << "at the top are containers only";
    EXPECT_FALSE(easy::set(store(), L"top", 5));
    EXPECT_FALSE(easy::set(store(), L"missing.value", 5));
    EXPECT_FALSE(find(L"missing"));
    EXPECT_FALSE(easy::set(find(L"missing"), L"value", 5));
    EXPECT_FALSE(easy::set(static_cast<IDataStore*>(nullptr), L"top.value", 5));
    EXPECT_FALSE(easy::set(other(), L"top.value", 5));
    EXPECT_EQ(other()->extent(), 0u);
}

TEST_P(EasySet, IsKnownToTheObjectThatItWentThrough) {
    EXPECT_TRUE(easy::set(model(), L"mine", 1));
    EXPECT_TRUE(model().property(L"mine"));
    EXPECT_FALSE(model().create(L"mine", metadata::kInt32)) << "there would be two of one name";
}

TEST_P(EasySet, FindsWhatAnotherObjectHasMade) {
    put<int>(L"theirs", metadata::kInt32, {1});
    EXPECT_TRUE(easy::set(model(), L"theirs", 2));
    EXPECT_THAT(names(*top()->properties()), ElementsAre(L"theirs"));
    EXPECT_THAT(stored<int>(L"theirs"), ElementsAre(2));
    top()->create(L"table", kNoSchema);
    EXPECT_TRUE(easy::set(model(), L"table.new", 3, units::kMeter));
    EXPECT_THAT(stored<int>(L"table.new"), ElementsAre(3));
}

TEST_P(EasySet, ShowsWhatWasHidden) {
    const auto schemas = IContainerFrontEnd::toplevel(other(), L"schemas");
    schemas->create(L"Wall", kNoSchema)->create(L"height", metadata::kDouble, units::kMeter);
    const auto locator = metadata::ISchemaLocator::make(other());
    model().create(IContainer::kNode, L"wall", locator->resolve(L"schemas.Wall").get());
    EXPECT_TRUE(easy::set(model(), L"wall.height", std::vector<double>()));
    EXPECT_TRUE(there(L"wall.height")->flags() & 0x04) << "as `reset` leaves it";
    EXPECT_TRUE(easy::set(model(), L"wall.height", 2.8));
    EXPECT_FALSE(there(L"wall.height")->flags() & 0x04);
}

TEST_P(EasySet, KeepsNothingOpen) {
    EXPECT_TRUE(easy::set(store(), L"top.value", 5));
    EXPECT_TRUE(easy::set(model(), L"value", 6));
    EXPECT_TRUE(top()->destroy(L"value"));
}

}  // namespace
