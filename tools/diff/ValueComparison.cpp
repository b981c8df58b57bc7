#include "tools/diff/ValueComparison.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include "tools/diff/Mix.h"

namespace lvp::tool {

namespace {

constexpr std::uint32_t kPiece = 1U << 16;  // bytes
constexpr std::uint64_t kBefore = 3;        // values that are shown before the first one that differs

/// One number for all that are equal: there are two zeros, and many that are none.
template <class Real>
void settle(std::vector<char>& bytes) {
    for (std::size_t i = 0; i + sizeof(Real) <= bytes.size(); i += sizeof(Real)) {
        Real number;
        std::memcpy(&number, bytes.data() + i, sizeof number);
        if (number == 0) number = 0;
        if (std::isnan(number)) number = std::numeric_limits<Real>::quiet_NaN();
        std::memcpy(bytes.data() + i, &number, sizeof number);
    }
}

template <class Real>
Real realAt(const char* bytes) {
    Real number;
    std::memcpy(&number, bytes, sizeof number);
    return number;
}

/// Where lists of so many values differ, of which `equal` compares those at an index.
template <class Equal>
ValueComparison::tUnlike differing(std::size_t left, std::size_t right, Equal equal) {
    const std::size_t common = std::min(left, right);
    ValueComparison::tUnlike found{.first = common, .differing = std::max(left, right) - common};
    for (std::size_t i = common; i-- > 0;) {
        if (equal(i)) continue;
        found.first = i;
        ++found.differing;
    }
    return found;
}

/// A part of values that are there as texts.
tSide part(tForm form, std::vector<std::string> values, std::uint64_t start, std::uint64_t most) {
    tSide side{.sort = tSide::tSort::kValues, .form = form, .values = {}, .start = start, .count = values.size()};
    const std::uint64_t end = std::min<std::uint64_t>(values.size(), start + most);
    for (std::uint64_t i = start; i < end; ++i) side.values.push_back(std::move(values[i]));
    side.whole = side.values.size() == side.count;
    return side;
}

}  // namespace

std::uint64_t ValueComparison::startOf(std::uint64_t count, std::uint64_t first, std::uint64_t most) {
    if (count <= most) return 0;
    return std::min(first - std::min(first, kBefore), count - 1);
}

template <class Number>
bool ValueComparison::equalNumbers(Number x, Number y) const {
    if (x == y || (std::isnan(x) && std::isnan(y))) return true;
    if (!std::isfinite(x) || !std::isfinite(y)) return false;
    if (!(_tolerance > 0) || x == 0 || y == 0) return false;
    const Number larger = std::max(std::abs(x), std::abs(y));
    const Number apart = std::abs(x - y);
    return std::isfinite(apart) ? apart <= _tolerance * larger : std::abs(x / 2 - y / 2) <= _tolerance * (larger / 2);
}

bool ValueComparison::equalElements(tForm form, std::size_t stride, const char* a, const char* b) const {
    if (form == tForm::kReals) {
        return stride == sizeof(float) ? equalNumbers<double>(realAt<float>(a), realAt<float>(b))
                                       : equalNumbers(realAt<double>(a), realAt<double>(b));
    }
    if (form == tForm::kTruths) return (*a != 0) == (*b != 0);
    return std::memcmp(a, b, stride) == 0;
}

ValueComparison::tUnlike ValueComparison::unlike(const tPrimitive& a, const tPrimitive& b, bool all) {
    const tForm form = formOf(a.valuetype);
    if (a.valuetype != b.valuetype) return unlikeKinds(a, b);
    if (form == tForm::kTexts) return sameBytes(a, b) ? tUnlike{} : unlikeTexts(a, b);
    const std::uint32_t common = std::min(a.dimension, b.dimension);
    tUnlike found{.first = common, .differing = std::max(a.dimension, b.dimension) - common};
    if (found.differing != 0 && !all) return found;
    for (std::uint32_t start = 0, count; start < common; start += count) {
        count = std::min(piece(a, start), common - start);
        if (!load(a, start, count, _a) || !load(b, start, count, _b)) return found;
        if (_a == _b) continue;
        for (std::uint32_t i = 0; i < count; ++i) {
            const std::size_t at = std::size_t{i} * a.stride;
            if (equalElements(form, a.stride, _a.data() + at, _b.data() + at)) continue;
            found.first = std::min<std::uint64_t>(found.first, start + i);
            ++found.differing;
            if (!all) return found;
        }
    }
    return found;
}

bool ValueComparison::sameBytes(const tPrimitive& a, const tPrimitive& b) {
    if (a.dimension != b.dimension) return false;
    for (std::uint32_t start = 0, count; start < a.dimension; start += count) {
        count = piece(a, start);
        if (!load(a, start, count, _a) || !load(b, start, count, _b)) return true;
        if (_a != _b) return false;
    }
    return true;
}

ValueComparison::tUnlike ValueComparison::unlikeTexts(const tPrimitive& a, const tPrimitive& b) {
    const std::vector<std::string> left = valuesOf(a.valuetype, bytesOf(a));
    const std::vector<std::string> right = valuesOf(b.valuetype, bytesOf(b));
    return differing(left.size(), right.size(), [&](std::size_t i) { return left[i] == right[i]; });
}

// What is written the same is equal, though a float that is written 0.1 is not quite that; and so are equal numbers.
ValueComparison::tUnlike ValueComparison::unlikeKinds(const tPrimitive& a, const tPrimitive& b) const {
    const std::vector<char> bytesA = bytesOf(a);
    const std::vector<char> bytesB = bytesOf(b);
    const std::vector<std::string> left = valuesOf(a.valuetype, bytesA);
    const std::vector<std::string> right = valuesOf(b.valuetype, bytesB);
    const std::vector<long double> x = numbersOf(a.valuetype, bytesA);
    const std::vector<long double> y = numbersOf(b.valuetype, bytesB);
    const bool real = formOf(a.valuetype) == tForm::kReals || formOf(b.valuetype) == tForm::kReals;
    const bool numbers = real && !x.empty() && !y.empty();
    return differing(left.size(), right.size(),
                     [&](std::size_t i) { return left[i] == right[i] || (numbers && equalNumbers(x[i], y[i])); });
}

std::uint64_t ValueComparison::hash(std::uint64_t seed, const tPrimitive& item) {
    std::uint64_t hash = mixed(seed, item.dimension);
    const bool real = formOf(item.valuetype) == tForm::kReals;
    for (std::uint32_t start = 0, count; start < item.dimension; start += count) {
        count = piece(item, start);
        if (!load(item, start, count, _a)) break;
        if (real && item.stride == sizeof(float)) settle<float>(_a);
        if (real && item.stride == sizeof(double)) settle<double>(_a);
        hash = mixed(hash, _a.data(), _a.size());
    }
    return hash;
}

tSide ValueComparison::shown(const tPrimitive& item, std::uint64_t first, std::uint64_t most) {
    const tForm form = formOf(item.valuetype);
    if (form == tForm::kTexts) {
        std::vector<std::string> texts = valuesOf(item.valuetype, bytesOf(item));
        const std::uint64_t start = startOf(texts.size(), first, most);
        return part(form, std::move(texts), start, most);
    }
    if (form == tForm::kBytes) most *= 3;  // as many letters, four of which are three bytes
    std::uint64_t start = startOf(item.dimension, first, most);
    if (form == tForm::kBytes) start -= start % 3;
    const std::uint64_t count = std::min<std::uint64_t>(item.dimension - start, most);
    std::vector<char> bytes(count * item.stride);
    if (!item.get(bytes.data(), static_cast<unsigned int>(start), static_cast<unsigned int>(count))) bytes.clear();
    tSide side{.sort = tSide::tSort::kValues,
               .form = form,
               .values = valuesOf(item.valuetype, bytes),
               .start = start,
               .count = item.dimension};
    side.whole = count == side.count;
    return side;
}

/// How many values are read at once.
std::uint32_t ValueComparison::piece(const tPrimitive& item, std::uint32_t start) {
    return std::min(kPiece / std::max(item.stride, 1U), item.dimension - start);
}

bool ValueComparison::load(const tPrimitive& item, std::uint32_t start, std::uint32_t count, std::vector<char>& bytes) {
    bytes.resize(std::size_t{count} * item.stride);
    return item.get(bytes.data(), start, count);
}

}  // namespace lvp::tool
