#include "xml/SiblingNames.h"

#include <bit>
#include <functional>
#include <utility>

namespace lumivard::platform::data {

void SiblingNames::reserve(std::size_t names) {
    if (2 * names <= _hashes.size()) return;
    const std::vector<std::size_t> before = std::exchange(_hashes, std::vector<std::size_t>(std::bit_ceil(2 * names)));
    for (const std::size_t hash : before) {
        if (hash != 0) _hashes[place(hash)] = hash;
    }
}

bool SiblingNames::add(std::wstring_view name) {
    constexpr std::size_t kLeast = 16;
    reserve(_count < kLeast ? kLeast : _count + 1);
    const std::size_t hash = std::hash<std::wstring_view>{}(name) | 1;  // 0 stands for none
    std::size_t& at = _hashes[place(hash)];
    if (at != 0) return false;
    at = hash;
    ++_count;
    return true;
}

}  // namespace lumivard::platform::data
