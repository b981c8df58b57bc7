#include "bench/workloads/Document.h"

namespace lvp::bench {

namespace {

/// Scans numbers that are separated by blanks, all that `out` has room for.
template <class Number>
bool scan(std::string_view text, std::span<Number> out) {
    const char* next = text.data();
    const char* const end = next + text.size();
    for (Number& number : out) {
        while (next != end && *next == ' ') ++next;
        const auto scanned = std::from_chars(next, end, number);
        if (scanned.ec != std::errc()) return false;
        next = scanned.ptr;
    }
    return true;
}

}  // namespace

bool readElement(std::string_view kind, std::string_view name, std::string_view unit, std::string_view value,
                 Checksum& sum) {
    if (kind == "double") {
        double real[1];
        if (!scan<double>(value, real)) return false;
        sum.real(name, unit, real[0]);
    } else if (kind == "vector3") {
        double reals[3];
        if (!scan<double>(value, reals)) return false;
        sum.vector(name, unit, reals);
    } else if (kind == "string") {
        sum.text(name, unit, value);
    } else if (kind == "int32") {
        std::int32_t numbers[8];
        if (!scan<std::int32_t>(value, numbers)) return false;
        sum.integers(name, unit, numbers);
    } else if (kind == "bool") {
        sum.flag(name, unit, value == "1");
    } else {
        return false;
    }
    return true;
}

}  // namespace lvp::bench
