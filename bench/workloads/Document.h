#pragma once

#include <array>
#include <charconv>
#include <cstring>
#include <string_view>

#include "bench/workloads/Checksum.h"
#include "bench/workloads/Data.h"

// The tree as a document, as far as the programs share it: the element that a property becomes, and the way back.
//
// A property is an element of its kind, with its name, its unit where it has one, and its value as text: reals with
// seven significant digits, numbers separated by blanks, a bool as 1 or 0. An item is a `table`, the top a `group`.

namespace lvp::bench {

constexpr const char* kItemElement = "table";
constexpr const char* kTopElement = "group";
constexpr const char* kNameAttribute = "name";
constexpr const char* kUnitAttribute = "units";

/// How reals become text: with seven digits, as in the documents of this library ("%.7g"), or with as many as it takes
/// to get the same real back, as in the files of those whose only form is a document.
enum class tDigits { kSeven, kAll };

inline char* printReal(char* out, double value, tDigits digits) {
    constexpr std::size_t kLongest = 32;
    if (digits == tDigits::kAll) return std::to_chars(out, out + kLongest, value).ptr;
    return std::to_chars(out, out + kLongest, value, std::chars_format::general, 7).ptr;
}

/// The real that a document gives back for `value`.
inline double documentedReal(double value) {
    char text[32];
    const char* const end = printReal(text, value, tDigits::kSeven);
    std::from_chars(text, end, value);
    return value;
}

/// The element of the property that was given last. A sink (see `give`).
class Element {
public:
    explicit Element(tDigits digits) : _digits(digits) {}

    void real(std::string_view name, std::string_view unit, double value) {
        begin("double", name, unit);
        _end = printReal(_end, value, _digits);
    }
    void vector(std::string_view name, std::string_view unit, tVector value) {
        begin("vector3", name, unit);
        for (const double component : value) _end = printReal(blank(), component, _digits);
    }
    void text(std::string_view name, std::string_view unit, std::string_view value) {
        begin("string", name, unit);
        std::memcpy(_end, value.data(), value.size());
        _end += value.size();
    }
    void integers(std::string_view name, std::string_view unit, tIntegers value) {
        begin("int32", name, unit);
        for (const std::int32_t number : value) {
            char* const start = blank();
            _end = std::to_chars(start, start + 16, number).ptr;
        }
    }
    void flag(std::string_view name, std::string_view unit, bool value) {
        begin("bool", name, unit);
        *_end++ = value ? '1' : '0';
    }

    /// Its kind, name and unit, each with a zero behind it; the unit is empty where there is none.
    const char* kind() const { return _kind; }
    const char* name() const { return _name.data(); }
    const char* unit() const { return _unit.data(); }

    /// Its text, which gets a zero behind it.
    const char* value() {
        *_end = 0;
        return _value.data();
    }

private:
    void begin(const char* kind, std::string_view name, std::string_view unit) {
        _kind = kind;
        _name = name;
        _unit = unit;
        _end = _value.data();
    }

    char* blank() {
        if (_end != _value.data()) *_end++ = ' ';
        return _end;
    }

    tDigits _digits;
    const char* _kind = "";
    std::string_view _name = "";  // of names and units, which are literals
    std::string_view _unit = "";
    std::array<char, 256> _value;
    char* _end = _value.data();
};

/// Adds the property of an element to a sum, its numbers scanned by std::from_chars. False for an element that is no
/// property, and for too few numbers.
bool readElement(std::string_view kind, std::string_view name, std::string_view unit, std::string_view value,
                 Checksum& sum);

}  // namespace lvp::bench
