#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <limits>
#include <string>

#include "tests/support/ContinentalLocale.h"
#include "xml/Scalar.h"

namespace {

using namespace lumivard::platform::data;

template <class T>
std::wstring printed(metadata::tValue kind, T value) {
    wchar_t text[Scalar::kLongest] = L"untouched";
    EXPECT_TRUE(Scalar::print(kind, reinterpret_cast<const char*>(&value), text));
    return text;
}

TEST(NumberWriting, GivesABoolAsTheNumberThatItsByteHolds) {
    EXPECT_EQ(printed<std::uint8_t>(metadata::kBool, 0), L"0");
    EXPECT_EQ(printed<std::uint8_t>(metadata::kBool, 1), L"1");
    EXPECT_EQ(printed<std::uint8_t>(metadata::kBool, 2), L"2");
    EXPECT_EQ(printed<std::uint8_t>(metadata::kBool, 255), L"255");
}

TEST(NumberWriting, GivesIntegersInPlainDecimal) {
    EXPECT_EQ(printed<std::int8_t>(metadata::kInt8, -128), L"-128");
    EXPECT_EQ(printed<std::int8_t>(metadata::kInt8, 65), L"65");
    EXPECT_EQ(printed<std::uint8_t>(metadata::kUInt8, 255), L"255");
    EXPECT_EQ(printed<std::int16_t>(metadata::kInt16, -32768), L"-32768");
    EXPECT_EQ(printed<std::uint16_t>(metadata::kUInt16, 65535), L"65535");
    EXPECT_EQ(printed<std::int32_t>(metadata::kInt32, std::numeric_limits<std::int32_t>::min()), L"-2147483648");
    EXPECT_EQ(printed<std::uint32_t>(metadata::kUInt32, 4294967295u), L"4294967295");
    EXPECT_EQ(printed<std::int64_t>(metadata::kInt64, std::numeric_limits<std::int64_t>::min()),
              L"-9223372036854775808");
    EXPECT_EQ(printed<std::uint64_t>(metadata::kUInt64, std::numeric_limits<std::uint64_t>::max()),
              L"18446744073709551615");
}

constexpr struct {
    double value;
    const wchar_t* text;
} kReals[] = {
    {0.0, L"0"},
    {-0.0, L"-0"},
    {2.5, L"2.5"},
    {0.1, L"0.1"},
    {1.0, L"1"},
    {100000.0, L"100000"},
    {1000000.0, L"1000000"},
    {10000000.0, L"1e+07"},
    {1234567.8, L"1234568"},
    {123456789.0, L"1.234568e+08"},
    {1e20, L"1e+20"},
    {1.8e-05, L"1.8e-05"},
    {0.0001, L"0.0001"},
    {0.00001, L"1e-05"},
    {1.0 / 3, L"0.3333333"},
    {-2.0 / 3, L"-0.6666667"},
    {1e100, L"1e+100"},
    {1.7976931348623157e308, L"1.797693e+308"},
    {4.9406564584124654e-324, L"4.940656e-324"},
    {std::numeric_limits<double>::infinity(), L"inf"},
    {-std::numeric_limits<double>::infinity(), L"-inf"},
    {std::numeric_limits<double>::quiet_NaN(), L"nan"},
};

TEST(NumberWriting, GivesRealsInTheGeneralFormWith7Digits) {
    for (const auto kind : {metadata::kDouble, metadata::kVec2, metadata::kVec3, metadata::kVec4, metadata::kMtx2x2,
                            metadata::kMtx3x3, metadata::kMtx4x4}) {
        for (const auto& [value, text] : kReals) EXPECT_EQ(printed(kind, value), text) << kind;
    }
}

TEST(NumberWriting, GivesAScalarLikeADouble) {
    EXPECT_EQ(printed(metadata::kScalar, 2.5f), L"2.5");
    EXPECT_EQ(printed(metadata::kScalar, 0.1f), L"0.1");
    EXPECT_EQ(printed(metadata::kScalar, 16777216.f), L"1.677722e+07");
    EXPECT_EQ(printed(metadata::kScalar, 1e20f), L"1e+20");
    EXPECT_EQ(printed(metadata::kScalar, std::numeric_limits<float>::max()), L"3.402823e+38");
    EXPECT_EQ(printed(metadata::kScalar, std::numeric_limits<float>::infinity()), L"inf");
}

TEST(NumberWriting, RefusesKindsThatAreNoNumbersAndWritesNothing) {
    for (const unsigned int kind : {0u, 1u, 2u, 3u, 4u, 5u, 6u, 24u, 25u, 0xFFFFFFFFu}) {
        const char value[Scalar::kWidest] = {1};
        wchar_t text[Scalar::kLongest] = L"untouched";
        EXPECT_FALSE(Scalar::print(static_cast<metadata::tValue>(kind), value, text)) << kind;
        EXPECT_STREQ(text, L"untouched");
    }
}

TEST(NumberWriting, MayReadFromAnyAddress) {
    char bytes[16] = {};
    const double value = 2.5;
    std::memcpy(bytes + 3, &value, sizeof(value));
    wchar_t text[Scalar::kLongest];
    EXPECT_TRUE(Scalar::print(metadata::kDouble, bytes + 3, text));
    EXPECT_STREQ(text, L"2.5");
}

TEST(NumberWriting, DoesNotLookAtTheLocaleOfTheProcess) {
    const lumivard::platform::test_support::ContinentalLocale locale;
    const std::wstring real = printed(metadata::kDouble, 1234.5);
    const std::wstring integer = printed<std::int32_t>(metadata::kInt32, 1234567);
    EXPECT_EQ(real, L"1234.5");
    EXPECT_EQ(integer, L"1234567");
}

}  // namespace
