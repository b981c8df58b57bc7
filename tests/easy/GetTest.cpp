// Values as C++ has them, and nothing where they are not exactly that.
#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "tests/easy/EasyFixture.h"

namespace {

using namespace lumivard::platform::test_support;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

class EasyGet : public EasyTest {
protected:
    /// That a type reads exactly one of the kinds of numbers, alone; and in a vector as many kinds as are told.
    template <class T>
    void expectReads(metadata::tValue own, const std::vector<metadata::tValue>& many) {
        for (unsigned int number = metadata::kBinary; number <= metadata::kStruct; ++number) {
            const auto kind = static_cast<metadata::tValue>(number);
            auto made = top()->create(L"one", kind);
            const std::vector<char> bytes(made->stride(), 0);
            made->set(bytes.data(), 0, 1);
            made.reset();
            EXPECT_EQ(easy::get<T>(model(), L"one").has_value(), kind == own) << number;
            const bool fits = std::find(many.begin(), many.end(), kind) != many.end();
            EXPECT_EQ(easy::get<std::vector<T>>(model(), L"one").has_value(), fits) << number;
            EXPECT_EQ((easy::get<std::array<T, 1>>(model(), L"one").has_value()), fits) << number;
            if constexpr (!std::is_same_v<T, bool>) {
                std::vector<T> into(1);
                EXPECT_EQ(easy::get(model(), L"one", std::span(into)), fits) << number;
            }
            destroy();
        }
    }

private:
    void destroy() { ASSERT_TRUE(top()->destroy(L"one")); }
};
LVP_ON_EACH_STORE(EasyGet);

TEST_P(EasyGet, ReadsEachTypeFromItsOwnKindAlone) {
    using namespace metadata;
    expectReads<bool>(kBool, {kBool});
    expectReads<std::int8_t>(kInt8, {kInt8});
    expectReads<std::uint8_t>(kUInt8, {kUInt8});
    expectReads<std::int16_t>(kInt16, {kInt16});
    expectReads<std::uint16_t>(kUInt16, {kUInt16});
    expectReads<std::int32_t>(kInt32, {kInt32});
    expectReads<std::uint32_t>(kUInt32, {kUInt32});
    expectReads<std::int64_t>(kInt64, {kInt64});
    expectReads<std::uint64_t>(kUInt64, {kUInt64});
    expectReads<long>(kInt64, {kInt64});
    expectReads<long long>(kInt64, {kInt64});
    expectReads<float>(kScalar, {kScalar});
    expectReads<double>(kDouble, {kDouble, kVec2, kVec3, kVec4, kMtx2x2, kMtx3x3, kMtx4x4});
    expectReads<std::byte>(kBinary, {kBinary, kStruct});
}

TEST_P(EasyGet, HasNothingForCharactersAndWhatIsNoNumber) {
    static_assert(!easy::detail::Number<char>);
    static_assert(!easy::detail::Number<wchar_t>);
    static_assert(!easy::detail::Number<char8_t>);
    static_assert(!easy::detail::Number<long double>);
    static_assert(!easy::detail::Number<const double>);
    static_assert(!easy::detail::Gettable<const char*>);
    static_assert(!easy::detail::Gettable<std::vector<const wchar_t*>>);
}

TEST_P(EasyGet, GivesOneNumberWhereThereIsExactlyOne) {
    put<double>(L"none", metadata::kDouble, {});
    put<double>(L"one", metadata::kDouble, {2.5});
    put<double>(L"two", metadata::kDouble, {2.5, 3.5});
    EXPECT_EQ(easy::get<double>(model(), L"none"), std::nullopt);
    EXPECT_THAT(easy::get<double>(model(), L"one"), Optional(2.5));
    EXPECT_EQ(easy::get<double>(model(), L"two"), std::nullopt);
}

TEST_P(EasyGet, GivesAnArrayWhereThereAreAsManyValuesAsItHas) {
    put<int>(L"three", metadata::kInt32, {1, 2, 3});
    put<int>(L"none", metadata::kInt32, {});
    EXPECT_THAT((easy::get<std::array<int, 3>>(model(), L"three")), Optional(ElementsAre(1, 2, 3)));
    EXPECT_FALSE((easy::get<std::array<int, 2>>(model(), L"three")));
    EXPECT_FALSE((easy::get<std::array<int, 4>>(model(), L"three")));
    EXPECT_TRUE((easy::get<std::array<int, 0>>(model(), L"none")));
    EXPECT_FALSE((easy::get<std::array<int, 0>>(model(), L"three")));
}

TEST_P(EasyGet, GivesAVectorOfWhateverLength) {
    put<float>(L"some", metadata::kScalar, {1.5F, 2.5F});
    put<float>(L"none", metadata::kScalar, {});
    EXPECT_THAT(easy::get<std::vector<float>>(model(), L"some"), Optional(ElementsAre(1.5F, 2.5F)));
    EXPECT_THAT(easy::get<std::vector<float>>(model(), L"none"), Optional(IsEmpty()));
}

TEST_P(EasyGet, GivesTheComponentsOfVectorsAndMatrices) {
    put<double>(L"at", metadata::kVec2, {1, 2, 3, 4});
    EXPECT_THAT(easy::get<std::vector<double>>(model(), L"at"), Optional(ElementsAre(1, 2, 3, 4)));
    EXPECT_THAT((easy::get<std::array<double, 4>>(model(), L"at")), Optional(ElementsAre(1, 2, 3, 4)));
}

TEST_P(EasyGet, TakesAnyByteButZeroForTrue) {
    put<unsigned char>(L"bytes", metadata::kBool, {0, 1, 7, 255});
    put<unsigned char>(L"seven", metadata::kBool, {7});
    EXPECT_THAT(easy::get<bool>(model(), L"seven"), Optional(true));
    EXPECT_THAT(easy::get<std::vector<bool>>(model(), L"bytes"), Optional(ElementsAre(false, true, true, true)));
    EXPECT_THAT((easy::get<std::array<bool, 4>>(model(), L"bytes")), Optional(ElementsAre(false, true, true, true)));
    bool window[2] = {};
    ASSERT_TRUE(easy::get(model(), L"bytes", std::span(window), 2));
    unsigned char seen[2] = {};
    std::memcpy(seen, window, 2);
    EXPECT_THAT(seen, ElementsAre(1, 1));
}

TEST_P(EasyGet, FillsAWindowOrLeavesItAlone) {
    put<int>(L"values", metadata::kInt32, {1, 2, 3, 4});
    std::array into{-1, -2};
    EXPECT_TRUE(easy::get(model(), L"values", std::span(into)));
    EXPECT_THAT(into, ElementsAre(1, 2));
    EXPECT_TRUE(easy::get(model(), L"values", std::span(into), 2));
    EXPECT_THAT(into, ElementsAre(3, 4));
    EXPECT_FALSE(easy::get(model(), L"values", std::span(into), 3));
    EXPECT_FALSE(easy::get(model(), L"values", std::span(into), 0xFFFFFFFFu));
    EXPECT_FALSE(easy::get(model(), L"nothing", std::span(into)));
    EXPECT_FALSE(easy::get(model(), L"values", std::span<int>()));
    EXPECT_THAT(into, ElementsAre(3, 4));
}

TEST_P(EasyGet, GivesNothingWhereNoPrimitiveIs) {
    top()->create(IContainer::kGroup, L"group", kNoSchema)->create(L"table", kNoSchema);
    for (const wchar_t* path : {L"nothing", L"group", L"group.table", L"group.nothing", L"", L".", L"group."}) {
        EXPECT_FALSE(easy::get<int>(model(), path)) << path;
        EXPECT_FALSE(easy::get<std::wstring>(model(), path)) << path;
    }
}

TEST_P(EasyGet, GivesNothingWithoutAPathAlsoWhereAPrimitiveIsAlone) {
    put<int>(L"only", metadata::kInt32, {1});
    EXPECT_FALSE(easy::get<int>(model(), L""));
}

TEST_P(EasyGet, GivesNothingForAUriInThePlaceOfValues) {
    put<int>(L"away", metadata::kInt32, {1});
    asPrimitive(there(L"away")).uri(L"file:elsewhere");
    EXPECT_FALSE(easy::get<int>(model(), L"away"));
    EXPECT_FALSE(easy::get<std::vector<int>>(model(), L"away")) << "not as a value without elements either";
}

TEST_P(EasyGet, BeginsAtTheTopOfAStoreOrInAContainer) {
    put<int>(L"value", metadata::kInt32, {5});
    EXPECT_THAT(easy::get<int>(store(), L"top.value"), Optional(5));
    EXPECT_THAT(easy::get<int>(model(), L"value"), Optional(5));
    EXPECT_THAT(easy::get<int>(find(L"top"), L"value"), Optional(5));
    EXPECT_FALSE(easy::get<int>(find(L"nothing"), L"value"));
    EXPECT_FALSE(easy::get<int>(static_cast<IDataStore*>(nullptr), L"value"));
    EXPECT_FALSE(easy::get<int>(other(), L"top.value"));
    EXPECT_EQ(other()->extent(), 0u) << "which a look does not set up";
}

TEST_P(EasyGet, SeesWhatAnotherObjectHasMade) {
    put<int>(L"new", metadata::kInt32, {5});
    EXPECT_FALSE(model().property(L"new"));
    EXPECT_THAT(easy::get<int>(model(), L"new"), Optional(5));
}

TEST_P(EasyGet, KeepsNothingOpen) {
    put<int>(L"value", metadata::kInt32, {5});
    ASSERT_THAT(easy::get<int>(store(), L"top.value"), Optional(5));
    EXPECT_TRUE(top()->destroy(L"value"));
}

}  // namespace
