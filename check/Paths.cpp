#include "check/Paths.h"

#include <vector>

namespace lumivard::platform::data::Check {

std::wstring Paths::operator()(unsigned int offset) {
    constexpr std::size_t kLevels = 100;
    constexpr std::size_t kLength = 1000;
    unsigned int item = _census.find(offset);
    if (item == tNode::kNone || !_census[item].reached) return {};
    if (!_census[item].isEntity()) item = _census[item].owner;
    std::vector<const std::wstring*> names;
    for (std::size_t length = 0; !isTop(item) && names.size() < kLevels && length < kLength;) {
        names.push_back(&name(item));
        length += names.back()->size() + 1;
        item = _census[item].owner;
    }
    std::wstring path = isTop(item) ? L"" : L"...";
    for (auto name = names.rbegin(); name != names.rend(); ++name) {
        if (name != names.rbegin()) path += L'.';
        path += **name;
    }
    return path;
}

const std::wstring& Paths::name(unsigned int item) {
    const auto [entry, isNew] = _names.try_emplace(item);
    if (isNew) entry->second = shortened(_case.name(item));
    return entry->second;
}

}  // namespace lumivard::platform::data::Check
