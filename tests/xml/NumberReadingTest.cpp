#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "tests/support/ContinentalLocale.h"
#include "xml/Scalar.h"

namespace {

using namespace lumivard::platform::data;

template <class T>
struct Reading {
    const char* text;
    bool scans;
    T value;
};

/// Where nothing is extracted, what was there before stays.
template <class T>
constexpr T kBefore = 77;

template <class T>
void expectReadings(metadata::tValue kind, const std::vector<Reading<T>>& readings) {
    for (const auto& reading : readings) {
        T value = kBefore<T>;
        EXPECT_EQ(Scalar::scan(kind, reading.text, reinterpret_cast<char*>(&value)), reading.scans) << reading.text;
        EXPECT_EQ(value, reading.value) << kind << " from \"" << reading.text << '"';
    }
}

constexpr int kIntMax = std::numeric_limits<int>::max();
constexpr int kIntMin = std::numeric_limits<int>::min();
constexpr unsigned int kUIntMax = std::numeric_limits<unsigned int>::max();
constexpr long long kLongMax = std::numeric_limits<long long>::max();
constexpr long long kLongMin = std::numeric_limits<long long>::min();
constexpr unsigned long long kULongMax = std::numeric_limits<unsigned long long>::max();

TEST(NumberReading, TakesSignedNumbersOfUpTo32BitsAs32Bits) {
    for (const auto kind : {metadata::kBool, metadata::kInt8, metadata::kInt16, metadata::kInt32}) {
        expectReadings<int>(kind, {
                                      {"0", true, 0},
                                      {"1", true, 1},
                                      {"-1", true, -1},
                                      {"+5", true, 5},
                                      {"300", true, 300},
                                      {"00012", true, 12},
                                      {"010", true, 10},
                                      {"2147483647", true, kIntMax},
                                      {"-2147483648", true, kIntMin},
                                      {"2147483648", false, kIntMax},
                                      {"-2147483649", false, kIntMin},
                                      {"99999999999999999999999", false, kIntMax},
                                      {"-99999999999999999999999", false, kIntMin},
                                      {"3.5", true, 3},
                                      {"12abc", true, 12},
                                      {"1e5", true, 1},
                                      {"0x10", true, 0},
                                      {"1,000", true, 1},
                                      {"1'000", true, 1},
                                      {" 7", true, 7},
                                      {"\v\f7", true, 7},
                                      {"7\x01", true, 7},
                                      {"", false, 77},
                                      {"  ", false, 77},
                                      {"-", false, 0},
                                      {"+", false, 0},
                                      {"+-5", false, 0},
                                      {"--5", false, 0},
                                      {"- 5", false, 0},
                                      {"abc", false, 0},
                                      {".5", false, 0},
                                      {"true", false, 0},
                                      {"false", false, 0},
                                      {"\x01"
                                       "7",
                                       false, 0},
                                      {"inf", false, 0},
                                  });
    }
}

TEST(NumberReading, TakesUnsignedNumbersOfUpTo32BitsAs32Bits) {
    for (const auto kind : {metadata::kUInt8, metadata::kUInt16, metadata::kUInt32}) {
        expectReadings<unsigned int>(kind, {
                                               {"0", true, 0},
                                               {"255", true, 255},
                                               {"300", true, 300},
                                               {"4294967295", true, kUIntMax},
                                               {"4294967296", false, kUIntMax},
                                               {"-1", true, kUIntMax},
                                               {"-255", true, kUIntMax - 254},
                                               {"-4294967295", true, 1},
                                               {"-4294967296", false, kUIntMax},
                                               {"+5", true, 5},
                                               {"5.9", true, 5},
                                               {"0x10", true, 0},
                                               {"1e5", true, 1},
                                               {"", false, 77},
                                               {" ", false, 77},
                                               {"x", false, 0},
                                               {"-", false, 0},
                                           });
    }
}

TEST(NumberReading, TakesNumbersOf64BitsAtTheirWidth) {
    expectReadings<long long>(metadata::kInt64, {
                                                    {"2147483648", true, 2147483648},
                                                    {"9223372036854775807", true, kLongMax},
                                                    {"-9223372036854775808", true, kLongMin},
                                                    {"9223372036854775808", false, kLongMax},
                                                    {"-9223372036854775809", false, kLongMin},
                                                    {"12abc", true, 12},
                                                    {"", false, 77},
                                                    {"x", false, 0},
                                                });
    expectReadings<unsigned long long>(metadata::kUInt64, {
                                                              {"18446744073709551615", true, kULongMax},
                                                              {"18446744073709551616", false, kULongMax},
                                                              {"-1", true, kULongMax},
                                                              {"-18446744073709551615", true, 1},
                                                              {"+8", true, 8},
                                                              {"", false, 77},
                                                              {"x", false, 0},
                                                          });
}

TEST(NumberReading, TakesAScalarAsAFloat) {
    constexpr float kMax = std::numeric_limits<float>::max();
    expectReadings<float>(metadata::kScalar, {
                                                 {"2.5", true, 2.5f},
                                                 {"0.1", true, 0.1f},
                                                 {"-2.5e3", true, -2500.f},
                                                 {"16777217", true, 16777216.f},
                                                 {"3.4028235e38", true, kMax},
                                                 {"3.5e38", false, kMax},
                                                 {"-3.5e38", false, -kMax},
                                                 {"1e-60", true, 0.f},
                                                 {"", false, 77.f},
                                                 {"x", false, 0.f},
                                             });
}

TEST(NumberReading, TakesDoublesVectorsAndMatricesAsDoubles) {
    constexpr double kMax = std::numeric_limits<double>::max();
    for (const auto kind : {metadata::kDouble, metadata::kVec2, metadata::kVec3, metadata::kVec4, metadata::kMtx2x2,
                            metadata::kMtx3x3, metadata::kMtx4x4}) {
        expectReadings<double>(
            kind,
            {
                {"2.5", true, 2.5},     {"0.1", true, 0.1},       {"1234567.8901234567", true, 1234567.8901234567},
                {".5", true, .5},       {"5.", true, 5.},         {"-.5", true, -.5},
                {"+1", true, 1.},       {"1e5", true, 1e5},       {"1E-5", true, 1e-5},
                {"1e+20", true, 1e20},  {"1.5.7", true, 1.5},     {"1,5", true, 1.},
                {"2.5m", true, 2.5},    {"0x10", true, 0.},       {"1e308", true, 1e308},
                {"1e309", false, kMax}, {"-1e309", false, -kMax}, {"1e-400", true, 0.},
                {"1e", false, 0.},      {"1e+", false, 0.},       {".", false, 0.},
                {"e5", false, 0.},      {"-", false, 0.},         {"inf", false, 0.},
                {"nan", false, 0.},     {"infinity", false, 0.},  {"x", false, 0.},
                {"", false, 77.},       {" \t", false, 77.},
            });
    }
}

TEST(NumberReading, KeepsTheSignOfZero) {
    double value = 1;
    EXPECT_TRUE(Scalar::scan(metadata::kDouble, "-0", reinterpret_cast<char*>(&value)));
    EXPECT_TRUE(value == 0 && std::signbit(value));
}

TEST(NumberReading, PutsTheValueOfANarrowKindInTheFirstBytes) {
    unsigned char bytes[4] = {};
    EXPECT_TRUE(Scalar::scan(metadata::kInt8, "300", reinterpret_cast<char*>(bytes)));
    EXPECT_EQ(bytes[0], 44);
    EXPECT_TRUE(Scalar::scan(metadata::kUInt8, "-1", reinterpret_cast<char*>(bytes)));
    EXPECT_EQ(bytes[0], 255);
}

TEST(NumberReading, WritesNoMoreThanItsWidth) {
    for (unsigned int kind = metadata::kBool; kind <= metadata::kMtx4x4; ++kind) {
        char bytes[Scalar::kWidest + 1];
        std::memset(bytes, 0x55, sizeof(bytes));
        EXPECT_TRUE(Scalar::scan(static_cast<metadata::tValue>(kind), "1", bytes));
        const bool wide = kind == metadata::kInt64 || kind == metadata::kUInt64 || kind >= metadata::kDouble;
        EXPECT_NE(bytes[3], 0x55) << kind;
        EXPECT_EQ(bytes[4] != 0x55, wide) << kind;
        EXPECT_EQ(bytes[Scalar::kWidest], 0x55) << kind;
    }
}

TEST(NumberReading, RefusesKindsThatAreNoNumbersAndWritesNothing) {
    for (const unsigned int kind : {0u, 1u, 2u, 3u, 4u, 5u, 6u, 24u, 25u, 0xFFFFFFFFu}) {
        char bytes[Scalar::kWidest];
        std::memset(bytes, 0x55, sizeof(bytes));
        EXPECT_FALSE(Scalar::scan(static_cast<metadata::tValue>(kind), "1", bytes)) << kind;
        for (const char byte : bytes) EXPECT_EQ(byte, 0x55);
    }
}

TEST(NumberReading, MayWriteToAnyAddress) {
    char bytes[16] = {};
    EXPECT_TRUE(Scalar::scan(metadata::kDouble, "2.5", bytes + 3));
    double value;
    std::memcpy(&value, bytes + 3, sizeof(value));
    EXPECT_EQ(value, 2.5);
}

TEST(NumberReading, DoesNotLookAtTheLocaleOfTheProcess) {
    const lumivard::platform::test_support::ContinentalLocale locale;
    double value = 0;
    EXPECT_TRUE(Scalar::scan(metadata::kDouble, "1234.5", reinterpret_cast<char*>(&value)));
    EXPECT_EQ(value, 1234.5);
}

TEST(NumberReading, TakesACountAsAnUnsignedNumberThatWraps) {
    const struct {
        const char* text;
        unsigned int count;
    } kCounts[] = {
        {"0", 0},
        {"5", 5},
        {"007", 7},
        {" \t\n\v\f\r5", 5},
        {"5abc", 5},
        {"5 6", 5},
        {"+5", 5},
        {"-1", 4294967295u},
        {"-5", 4294967291u},
        {"4294967295", 4294967295u},
        {"4294967296", 0},
        {"4294967301", 5},
        {"-4294967297", 4294967295u},
        {"18446744073709551615", 4294967295u},
        {"-18446744073709551615", 1},
        {"18446744073709551616", 4294967295u},
        {"-18446744073709551616", 4294967295u},
        {"999999999999999999999999999999", 4294967295u},
        {"0x10", 0},
        {"3.9", 3},
        {"", 0},
        {" ", 0},
        {"x", 0},
        {"-", 0},
        {"+", 0},
        {"- 5", 0},
        {"+-5", 0},
        {"--5", 0},
        {"-+5", 0},
    };
    for (const auto& [text, count] : kCounts) EXPECT_EQ(Scalar::scanCount(text), count) << '"' << text << '"';
}

}  // namespace
