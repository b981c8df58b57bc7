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
        auto next = _ranges.lower_bound(first);
        if (next != _ranges.end() && next->first < end) return false;
        if (next != _ranges.begin()) {
            const auto before = std::prev(next);
            if (before->second > first) return false;
            if (before->second == first) {
                before->second = end;
                if (next != _ranges.end() && next->first == end) {
                    before->second = next->second;
                    _ranges.erase(next);
                }
                _size += count;
                return true;
            }
        }
        if (next != _ranges.end() && next->first == end) {
            const std::uint64_t last = next->second;
            next = _ranges.erase(next);
            _ranges.emplace_hint(next, first, last);
        } else {
            _ranges.emplace_hint(next, first, end);
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
