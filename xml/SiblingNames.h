#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace lumivard::platform::data {

/// Tells names apart without keeping them: two that are told apart are different, and two that are not may be different
/// all the same, though hardly ever. Nothing is allocated before the first name. Where memory runs out `std::bad_alloc`
/// passes, and nothing is changed.
class SiblingNames {
public:
    /// Sees to it that so many names can be added without an allocation.
    void reserve(std::size_t names);

    bool empty() const { return _count == 0; }

    /// False when the name may have come before.
    bool add(std::wstring_view name);

private:
    /// Where a hash stands, or the free place where it would.
    std::size_t place(std::size_t hash) const {
        const std::size_t last = _hashes.size() - 1;
        std::size_t place = hash >> 1 & last;
        while (_hashes[place] != 0 && _hashes[place] != hash) place = (place + 1) & last;
        return place;
    }

    std::vector<std::size_t> _hashes;  ///< a power of 2 of places, at most half of them taken; 0 is a free one
    std::size_t _count = 0;
};

}  // namespace lumivard::platform::data
