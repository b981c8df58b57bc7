#pragma once

#include <algorithm>
#include <cstdint>

namespace lumivard::platform::data {

/// How much of the values of one document may be places that a `dim` reserves and no text fills. A few bytes can ask
/// for gigabytes of them; without a bound a document would cost memory out of all proportion to its length.
class EmptyPlaces {
public:
    /// The most of them in a document, in bytes.
    static constexpr std::uint64_t kMost = std::uint64_t{64} << 20;

    /// So many of each value are not counted: its record takes as much, whatever stands in it.
    static constexpr std::uint64_t kUncounted = 256;

    /// Takes so many bytes for one value. False, with nothing taken, when the document has no more.
    bool take(std::uint64_t bytes) {
        const std::uint64_t counted = bytes - std::min(bytes, kUncounted);
        if (counted > _left) return false;
        _left -= counted;
        return true;
    }

private:
    std::uint64_t _left = kMost;
};

}  // namespace lumivard::platform::data
