#pragma once

#include <locale>
#include <string>

namespace lumivard::platform::test_support {

/// Gives the process a locale with a decimal comma and groups of digits, as long as it lives.
class ContinentalLocale {
public:
    ContinentalLocale()
        : _before(std::locale::global(
              std::locale(std::locale(std::locale::classic(), new tNumbers<char>), new tNumbers<wchar_t>))) {}
    ~ContinentalLocale() { std::locale::global(_before); }
    ContinentalLocale(const ContinentalLocale&) = delete;
    ContinentalLocale& operator=(const ContinentalLocale&) = delete;

private:
    template <class Character>
    class tNumbers : public std::numpunct<Character> {
        Character do_decimal_point() const override { return ','; }
        Character do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };

    std::locale _before;
};

}  // namespace lumivard::platform::test_support
