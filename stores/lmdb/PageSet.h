#pragma once

#include <cstdint>
#include <iterator>
#include <map>

namespace lumivard::platform::stores::lmdb {

/// A set of page numbers, kept as ranges: it costs what was put in, whatever length a file claims.
class PageSet {
public:
    /// Adds a range. False, with nothing added, when one of its pages is in the set. `count` is not 0. O(log n).
    bool insert(std::uint64_t first, std::uint64_t count) {
        const std::uint64_t end = first + count;
        const auto none = _ranges.end();
        const auto next = _ranges.lower_bound(first);
        if (next != none && next->first < end) return false;
        const auto before = next == _ranges.begin() ? none : std::prev(next);
        if (before != none && before->second > first) return false;
        // Ranges that touch become one.
        std::uint64_t last = end;
        if (next != none && next->first == end) {
            last = next->second;
            _ranges.erase(next);
        }
        if (before != none && before->second == first) {
            before->second = last;
        } else {
            _ranges.emplace(first, last);
        }
        _size += count;
        return true;
    }

    bool contains(std::uint64_t number) const {
        const auto behind = _ranges.upper_bound(number);
        return behind != _ranges.begin() && std::prev(behind)->second > number;
    }

    /// How many pages are in it.
    std::uint64_t size() const { return _size; }

private:
    std::map<std::uint64_t, std::uint64_t> _ranges;  // the first page, and the one behind the last
    std::uint64_t _size = 0;
};

}  // namespace lumivard::platform::stores::lmdb
