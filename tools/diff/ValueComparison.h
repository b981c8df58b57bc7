#pragma once

#include <cstdint>
#include <vector>

#include "tools/diff/Difference.h"

namespace lvp::tool {

/// Compares the values of primitives, which it reads in pieces. Texts are read whole, and so is everything where the
/// kinds differ.
class ValueComparison {
public:
    using tPrimitive = IVisitor::tPrimitive;

    /// Where values differ: the index of the first one, and how many; what one side has more counts as different.
    struct tUnlike {
        std::uint64_t first = 0;
        std::uint64_t differing = 0;
    };

    /// Real numbers are equal that differ by `tolerance` times the larger of their magnitudes or less; NaN equals NaN.
    explicit ValueComparison(double tolerance) : _tolerance(tolerance) {}

    bool equal(const tPrimitive& a, const tPrimitive& b) { return unlike(a, b, false).differing == 0; }
    tUnlike unlike(const tPrimitive& a, const tPrimitive& b) { return unlike(a, b, true); }

    /// Takes values into a hash, which is the same for values that are equal without a tolerance.
    std::uint64_t hash(std::uint64_t seed, const tPrimitive& item);

    /// The values of a primitive about the one at `first`: of more than `most` that many, beginning a little before it.
    static tSide shown(const tPrimitive& item, std::uint64_t first, std::uint64_t most);

    /// Where what is shown begins, of `count` values of which that at `first` differs.
    static std::uint64_t startOf(std::uint64_t count, std::uint64_t first, std::uint64_t most);

private:
    tUnlike unlike(const tPrimitive& a, const tPrimitive& b, bool all);
    static tUnlike unlikeTexts(const tPrimitive& a, const tPrimitive& b);
    tUnlike unlikeKinds(const tPrimitive& a, const tPrimitive& b) const;
    bool sameBytes(const tPrimitive& a, const tPrimitive& b);
    bool equalElements(tForm form, std::size_t stride, const char* a, const char* b) const;
    template <class Number>
    bool equalNumbers(Number x, Number y) const;
    std::uint32_t piece(const tPrimitive& item, std::uint32_t start);
    bool load(const tPrimitive& item, std::uint32_t start, std::uint32_t count, std::vector<char>& bytes);

    double _tolerance;
    std::vector<char> _a;
    std::vector<char> _b;
};

}  // namespace lvp::tool
