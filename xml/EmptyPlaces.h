#pragma once

#include <cstdint>

namespace lumivard::platform::data {

/// How much of the values of one document a `dim` may reserve before a text fills it. A few bytes can ask for
/// gigabytes; without a bound a document would cost memory out of all proportion to its length.
class EmptyPlaces {
public:
    /// The most of them in a document, in bytes, beyond those that its texts have filled.
    static constexpr std::uint64_t kMost = std::uint64_t{128} << 20;

    /// Takes so many bytes for one value. False, with nothing taken, when the document has no more.
    bool take(std::uint64_t bytes) {
        if (bytes > _left) return false;
        _left -= bytes;
        return true;
    }

    /// A text has filled so many bytes of values, which may be such places.
    void fill(std::uint64_t bytes) { _left += bytes; }

private:
    std::uint64_t _left = kMost;
};

}  // namespace lumivard::platform::data
