// Numbers as text are what the standard streams make of them, whatever way they are read and written.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <locale>
#include <random>
#include <sstream>
#include <string>
#include <type_traits>

#include "tests/support/Campaign.h"
#include "tests/support/Sanitized.h"
#include "xml/Scalar.h"

namespace {

using namespace lumivard::platform::data;
using namespace lumivard::platform::test_support;

template <class T>
bool readByStream(const std::string& text, T& out) {
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    return static_cast<bool>(stream >> out);
}

template <class T>
std::wstring writtenByStream(T value) {
    std::wostringstream stream;
    stream.imbue(std::locale::classic());
    stream.precision(7);
    stream << value;
    return stream.str();
}

template <class T>
using tBits = std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>;

template <class T>
T fromBits(std::uint64_t bits) {
    return std::bit_cast<T>(static_cast<tBits<T>>(bits));
}

/// Texts that are numbers, or nearly.
class Texts {
public:
    explicit Texts(std::uint64_t seed) : _random(seed) {}

    std::uint64_t bits() { return _random(); }

    std::string any() {
        switch (_random() % 4) {
            case 0:
                return plain();
            case 1:
                return spoiled(plain());
            case 2:
                return spoiled(spoiled(kOdd[_random() % std::size(kOdd)]));
            default:
                return pieces();
        }
    }

private:
    static constexpr const char* kOdd[] = {"",
                                           "-",
                                           "+",
                                           ".",
                                           "e",
                                           "-.",
                                           ".e5",
                                           "+5",
                                           "--5",
                                           "12abc",
                                           " 7",
                                           "\v8",
                                           "0x1p3",
                                           "1e",
                                           "1e+",
                                           "1E-",
                                           "1e5x",
                                           "1.e5",
                                           "1..5",
                                           ".5",
                                           "5.",
                                           "inf",
                                           "-nan",
                                           "infinity",
                                           "1e-400",
                                           "1e400",
                                           "-1e400",
                                           "4.9e-324",
                                           "2.4e-324",
                                           "1.17549435e-38",
                                           "1e-46",
                                           "3.4028235e38",
                                           "3.4028236e38",
                                           "1.7976931348623157e308",
                                           "1.7976931348623159e308",
                                           "2147483647",
                                           "2147483648",
                                           "-2147483648",
                                           "-2147483649",
                                           "4294967295",
                                           "4294967296",
                                           "9223372036854775807",
                                           "9223372036854775808",
                                           "-9223372036854775809",
                                           "18446744073709551615",
                                           "18446744073709551616",
                                           "-18446744073709551615",
                                           "00000000000000000000000000007",
                                           "1,000",
                                           "1'000"};

    /// Digits with a point and an exponent, or without.
    std::string plain() {
        std::string text(_random() % 4 == 0 ? "-" : "");
        text += digits(1 + _random() % (_random() % 8 == 0 ? 40 : 9));
        if (_random() % 2 == 0) text += "." + digits(_random() % 20);
        if (_random() % 4 == 0) text += (_random() % 2 ? "e" : "E-") + digits(_random() % 4);
        return text;
    }

    std::string digits(std::uint64_t count) {
        std::string text;
        for (; count > 0; --count) text += static_cast<char>('0' + _random() % 10);
        return text;
    }

    /// A character more, or less, or another one.
    std::string spoiled(std::string text) {
        const std::size_t at = _random() % (text.size() + 1);
        const std::string one(1, kCharacters[_random() % (sizeof kCharacters - 1)]);
        const std::size_t gone = _random() % 2;
        return text.replace(at, at < text.size() ? gone : 0, _random() % 3 == 0 ? "" : one);
    }

    std::string pieces() {
        std::string text;
        for (std::uint64_t i = _random() % 12; i > 0; --i) text += kCharacters[_random() % (sizeof kCharacters - 1)];
        return text;
    }

    static constexpr char kCharacters[] = "0123456789..--++eEeE \t\nxXabfinpPNAIT,'\0";

    std::mt19937_64 _random;
};

template <class T>
class NumbersAndStreams : public testing::Test {
protected:
    static std::uint64_t times() { return effort("LVP_NUMBERS", usually(100'000)); }
};
using tNumbers = testing::Types<int, unsigned int, long long, unsigned long long, float, double>;
TYPED_TEST_SUITE(NumbersAndStreams, tNumbers, );

template <class T>
void expectReadAlike(const std::string& text) {
    T read = 77;
    T expected = 77;
    const bool wanted = readByStream(text, expected);
    ASSERT_EQ(Scalar::CastTo(text, read), wanted) << '"' << text << '"';
    ASSERT_EQ(std::bit_cast<tBits<T>>(read), std::bit_cast<tBits<T>>(expected))
        << '"' << text << "\" is " << read << " in place of " << expected;
}

TYPED_TEST(NumbersAndStreams, ReadTheSame) {
    Texts texts(seed());
    for (std::uint64_t i = this->times(); i > 0 && !this->HasFatalFailure(); --i) {
        expectReadAlike<TypeParam>(texts.any());
    }
}

template <class T>
void expectWrittenAlike(T value) {
    if constexpr (!std::is_same_v<T, int> && !std::is_same_v<T, unsigned int>) {
        char buffer[Scalar::kLongest];
        const std::string text(buffer, Scalar::toText(buffer, value));
        ASSERT_EQ(std::wstring(text.begin(), text.end()), writtenByStream(value));
        if constexpr (std::is_floating_point_v<T>) expectReadAlike<T>(text);
    }
}

TYPED_TEST(NumbersAndStreams, WriteTheSame) {
    Texts texts(seed());
    for (std::uint64_t i = this->times(); i > 0 && !this->HasFatalFailure(); --i) {
        expectWrittenAlike(fromBits<TypeParam>(texts.bits()));
        TypeParam value{};
        readByStream(texts.any(), value);
        expectWrittenAlike(value);
    }
}

TEST(NumbersAndStreamsOfReals, WriteTheSameWhereTheyAreNoNumbersOrDoNotEnd) {
    for (const double value : {0.0, 1.0 / 0.0, 0.0 / 0.0, 4.9e-324, 1.7976931348623157e308, 0.00001, 0.0001, 999999.95,
                               9999999.5, 1234567.5, 1e7, 1e6, 123456789.0}) {
        expectWrittenAlike(value);
        expectWrittenAlike(-value);
        expectWrittenAlike(static_cast<float>(value));
        expectWrittenAlike(static_cast<float>(-value));
    }
}

/// Numbers with few digits before the point and behind it, as most are, and their neighbours: where 7 digits end in a
/// tie, and where rounding makes one digit more.
TEST(NumbersAndStreamsOfReals, WriteTheSameWhereTheyAreShort) {
    std::mt19937_64 random(seed());
    for (std::uint64_t i = effort("LVP_NUMBERS", usually(100'000)); i > 0; --i) {
        constexpr double kDivisors[] = {1, 2, 8, 16, 1024, 10, 1e3, 1e6, 1e9, 1e13};
        const auto whole = static_cast<double>(random() % 20'000'000'000) - 1e10;
        const double value = whole / kDivisors[random() % std::size(kDivisors)];
        for (const double each : {value, std::nextafter(value, 1e300), std::nextafter(value, -1e300)}) {
            expectWrittenAlike(each);
            expectWrittenAlike(static_cast<float>(each));
            if (testing::Test::HasFatalFailure()) return;
        }
    }
}

TEST(NumbersAndStreamsOfReals, WriteTheSameNextToEachPowerOfTen) {
    for (const double power : {1e-6, 1e-5, 1e-4, 1e-3, 1e-2, 1e-1, 1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8}) {
        for (const double near : {1.0, 0.99999995, 0.999999949, 1.0000005, 0.5}) {
            double value = std::nextafter(near * power, 0);
            for (int i = 0; i < 3; ++i, value = std::nextafter(value, 1e300)) {
                expectWrittenAlike(value);
                expectWrittenAlike(-value);
                expectWrittenAlike(static_cast<float>(value));
            }
        }
    }
}

/// Around what a real holds exactly: 2^24 and 2^53, and 10 and 22 places.
TEST(NumbersAndStreamsOfReals, ReadTheSameWhereDigitsAndPlacesReachTheirBounds) {
    for (const char* digits : {"16777215", "16777216", "16777217", "16777219", "9007199254740991", "9007199254740992",
                               "9007199254740993", "99999999999999999", "0", "7", "00000000000000001"}) {
        std::string text = digits;
        for (std::size_t point = 0; point <= text.size(); ++point) {
            for (const std::string sign : {"", "-"}) {
                const std::string number = sign + text.substr(0, point) + "." + text.substr(point);
                expectReadAlike<float>(number);
                expectReadAlike<double>(number);
            }
        }
        for (std::size_t zeros = 0; zeros < 25; ++zeros) {
            expectReadAlike<float>("0." + std::string(zeros, '0') + text);
            expectReadAlike<double>("0." + std::string(zeros, '0') + text);
        }
    }
}

}  // namespace
