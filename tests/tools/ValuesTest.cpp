#include "tools/base/Values.h"

#include <gmock/gmock.h>

#include <limits>
#include <random>

#include "tools/base/ExitStatus.h"
#include "tools/base/Kinds.h"

namespace {

using namespace lvp::tool;
using namespace lumivard::platform::data::metadata;
using testing::ElementsAre;
using testing::HasSubstr;
using tWords = std::vector<std::string>;

tWords again(tValue kind, const tWords& words) {
    return valuesOf(kind, parseValues(kind, words));
}

std::string refusal(tValue kind, const tWords& words) {
    try {
        parseValues(kind, words);
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.status(), kWrongUsage);
        return failure.what();
    }
    return "";
}

TEST(TypedValues, ComeBackAsTheyWereTyped) {
    EXPECT_THAT(again(kInt8, {"-128", "127"}), ElementsAre("-128", "127"));
    EXPECT_THAT(again(kUInt8, {"255"}), ElementsAre("255"));
    EXPECT_THAT(again(kInt16, {"-32768"}), ElementsAre("-32768"));
    EXPECT_THAT(again(kUInt16, {"65535"}), ElementsAre("65535"));
    EXPECT_THAT(again(kInt32, {"-2147483648"}), ElementsAre("-2147483648"));
    EXPECT_THAT(again(kUInt32, {"4294967295"}), ElementsAre("4294967295"));
    EXPECT_THAT(again(kInt64, {"-9223372036854775808"}), ElementsAre("-9223372036854775808"));
    EXPECT_THAT(again(kUInt64, {"18446744073709551615"}), ElementsAre("18446744073709551615"));
    EXPECT_THAT(again(kScalar, {"0.1"}), ElementsAre("0.1"));
    EXPECT_THAT(again(kDouble, {"0.1", "-1e+300", "inf", "nan"}), ElementsAre("0.1", "-1e+300", "inf", "nan"));
    EXPECT_THAT(again(kBool, {"true", "false", "1", "0"}), ElementsAre("true", "false", "true", "false"));
    EXPECT_THAT(again(kString, {"a b", "", "ß"}), ElementsAre("a b", "", "ß"));
    EXPECT_THAT(again(kBinary, {"SGVsbG8="}), ElementsAre("SGVsbG8="));
    EXPECT_THAT(again(kStruct, {"AAE="}), ElementsAre("AAE="));
}

TEST(TypedValues, OfVectorsAreTypedWhole) {
    EXPECT_THAT(again(kVec3, {"1", "2", "3"}), ElementsAre("1", "2", "3"));
    EXPECT_EQ(parseValues(kMtx4x4, tWords(16, "1")).size(), 16 * sizeof(double));
    EXPECT_EQ(refusal(kVec3, {"1", "2"}), "a vector3 takes 3 numbers, or a multiple of that: 2 were given");
}

TEST(TypedValues, MayHaveAPlus) {
    EXPECT_THAT(again(kInt32, {"+5"}), ElementsAre("5"));
    EXPECT_THAT(again(kDouble, {"+5.5"}), ElementsAre("5.5"));
    EXPECT_NE(refusal(kInt32, {"+-5"}), "");
    EXPECT_NE(refusal(kInt32, {"+"}), "");
}

TEST(TypedValues, OutsideOfTheKindAreRefused) {
    EXPECT_EQ(refusal(kInt8, {"128"}), "\"128\" is out of the range of the kind int8");
    EXPECT_EQ(refusal(kUInt16, {"-1"}), "\"-1\" is no value of the kind uint16");
    EXPECT_EQ(refusal(kInt32, {"12abc"}), "\"12abc\" is no value of the kind int32");
    EXPECT_EQ(refusal(kDouble, {"1,5"}), "\"1,5\" is no value of the kind double");
    EXPECT_EQ(refusal(kDouble, {""}), "\"\" is no value of the kind double");
    EXPECT_EQ(refusal(kDouble, {"1e999"}), "\"1e999\" is out of the range of the kind double");
    EXPECT_EQ(refusal(kBool, {"yes"}), "\"yes\" is neither true nor false");
    EXPECT_EQ(refusal(kBinary, {"*"}), "the bytes are not given in base64");
    EXPECT_NE(refusal(static_cast<tValue>(99), {"1"}), "");
}

TEST(TypedValues, AreTheShortestThatReadBackAsTheSameNumber) {
    const auto seed = std::random_device{}();
    SCOPED_TRACE(seed);
    std::mt19937_64 random(seed);
    for (int i = 0; i < 10000; ++i) {
        const std::uint64_t bits = random();
        std::vector<char> bytes(sizeof bits);
        std::memcpy(bytes.data(), &bits, sizeof bits);
        double number;
        std::memcpy(&number, bytes.data(), sizeof number);
        if (number != number) continue;
        EXPECT_EQ(parseValues(kDouble, valuesOf(kDouble, bytes)), bytes) << number;
    }
}

TEST(TypedValues, HaveKindsByName) {
    for (unsigned int kind = kBinary; kind <= kStruct; ++kind) {
        EXPECT_EQ(kindNamed(nameOf(static_cast<tValue>(kind))), kind);
    }
    EXPECT_EQ(kindNamed("no value"), tValue{});
    EXPECT_EQ(kindNamed("Double"), tValue{});
}

TEST(StoredValues, ThatEndWithoutAZeroAreShown) {
    const wchar_t text[] = L"ab";
    EXPECT_THAT(valuesOf(kString, {reinterpret_cast<const char*>(text), 2 * sizeof(wchar_t)}), ElementsAre("ab"));
    EXPECT_THAT(valuesOf(kInt32, {"abcde", 5}), ElementsAre("1684234849")) << "a part of a number is none";
}

}  // namespace
