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
std::string printed(metadata::tValue kind, T value) {
    char text[Scalar::kLongest];
    const char* end = Scalar::print(kind, reinterpret_cast<const char*>(&value), text);
    EXPECT_NE(end, nullptr);
    return end ? std::string(text, static_cast<std::size_t>(end - text)) : "";
}

TEST(NumberWriting, GivesABoolAsTheNumberThatItsByteHolds) {
    EXPECT_EQ(printed<std::uint8_t>(metadata::kBool, 0), "0");
    EXPECT_EQ(printed<std::uint8_t>(metadata::kBool, 1), "1");
    EXPECT_EQ(printed<std::uint8_t>(metadata::kBool, 2), "2");
    EXPECT_EQ(printed<std::uint8_t>(metadata::kBool, 255), "255");
}

TEST(NumberWriting, GivesIntegersInPlainDecimal) {
    EXPECT_EQ(printed<std::int8_t>(metadata::kInt8, -128), "-128");
    EXPECT_EQ(printed<std::int8_t>(metadata::kInt8, 65), "65");
    EXPECT_EQ(printed<std::uint8_t>(metadata::kUInt8, 255), "255");
    EXPECT_EQ(printed<std::int16_t>(metadata::kInt16, -32768), "-32768");
    EXPECT_EQ(printed<std::uint16_t>(metadata::kUInt16, 65535), "65535");
    EXPECT_EQ(printed<std::int32_t>(metadata::kInt32, std::numeric_limits<std::int32_t>::min()), "-2147483648");
    EXPECT_EQ(printed<std::uint32_t>(metadata::kUInt32, 4294967295u), "4294967295");
    EXPECT_EQ(printed<std::int64_t>(metadata::kInt64, std::numeric_limits<std::int64_t>::min()),
              "-9223372036854775808");
    EXPECT_EQ(printed<std::uint64_t>(metadata::kUInt64, std::numeric_limits<std::uint64_t>::max()),
              "18446744073709551615");
}

constexpr struct {
    double value;
    const char* text;
} kReals[] = {
    {0.0, "0"},
    {-0.0, "-0"},
    {2.5, "2.5"},
    {0.1, "0.1"},
    {1.0, "1"},
    {100000.0, "100000"},
    {1000000.0, "1000000"},
    {10000000.0, "1e+07"},
    {1234567.8, "1234568"},
    {123456789.0, "1.234568e+08"},
    {1e20, "1e+20"},
    {1.8e-05, "1.8e-05"},
    {0.0001, "0.0001"},
    {0.00001, "1e-05"},
    {1.0 / 3, "0.3333333"},
    {-2.0 / 3, "-0.6666667"},
    {1e100, "1e+100"},
    {1.7976931348623157e308, "1.797693e+308"},
    {4.9406564584124654e-324, "4.940656e-324"},
    {std::numeric_limits<double>::infinity(), "inf"},
    {-std::numeric_limits<double>::infinity(), "-inf"},
    {std::numeric_limits<double>::quiet_NaN(), "nan"},
};

TEST(NumberWriting, GivesRealsInTheGeneralFormWith7Digits) {
    for (const auto kind : {metadata::kDouble, metadata::kVec2, metadata::kVec3, metadata::kVec4, metadata::kMtx2x2,
                            metadata::kMtx3x3, metadata::kMtx4x4}) {
        for (const auto& [value, text] : kReals) EXPECT_EQ(printed(kind, value), text) << kind;
    }
}

TEST(NumberWriting, GivesAScalarLikeADouble) {
    EXPECT_EQ(printed(metadata::kScalar, 2.5f), "2.5");
    EXPECT_EQ(printed(metadata::kScalar, 0.1f), "0.1");
    EXPECT_EQ(printed(metadata::kScalar, 16777216.f), "1.677722e+07");
    EXPECT_EQ(printed(metadata::kScalar, 1e20f), "1e+20");
    EXPECT_EQ(printed(metadata::kScalar, std::numeric_limits<float>::max()), "3.402823e+38");
    EXPECT_EQ(printed(metadata::kScalar, std::numeric_limits<float>::infinity()), "inf");
}

TEST(NumberWriting, RefusesKindsThatAreNoNumbersAndWritesNothing) {
    for (const unsigned int kind : {0u, 1u, 2u, 3u, 4u, 5u, 6u, 24u, 25u, 0xFFFFFFFFu}) {
        const char value[Scalar::kWidest] = {1};
        char text[Scalar::kLongest] = "untouched";
        EXPECT_EQ(Scalar::print(static_cast<metadata::tValue>(kind), value, text), nullptr) << kind;
        EXPECT_STREQ(text, "untouched");
    }
}

TEST(NumberWriting, MayReadFromAnyAddress) {
    char bytes[16] = {};
    const double value = 2.5;
    std::memcpy(bytes + 3, &value, sizeof(value));
    char text[Scalar::kLongest];
    EXPECT_EQ(Scalar::print(metadata::kDouble, bytes + 3, text), text + 3);
    EXPECT_EQ(std::string(text, 3), "2.5");
}

TEST(NumberWriting, DoesNotLookAtTheLocaleOfTheProcess) {
    const lumivard::platform::test_support::ContinentalLocale locale;
    const std::string real = printed(metadata::kDouble, 1234.5);
    const std::string integer = printed<std::int32_t>(metadata::kInt32, 1234567);
    EXPECT_EQ(real, "1234.5");
    EXPECT_EQ(integer, "1234567");
}

}  // namespace
