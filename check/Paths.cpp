#include "check/Paths.h"

#include <algorithm>

namespace lumivard::platform::data::Check {

std::wstring pathOf(Case& subject, unsigned int offset) {
    constexpr std::size_t kMost = 100;
    const Census& census = subject.census;
    unsigned int item = census.find(offset);
    if (item == tNode::kNone || !census[item].reached) return {};
    if (!census[item].isEntity()) item = census[item].owner;
    std::vector<std::wstring> names;
    while (item != tNode::kNone && census[item].owner != item && names.size() < kMost) {
        names.push_back(subject.name(item));
        item = census[item].owner;
    }
    const bool cut = item != tNode::kNone && census[item].owner != item;
    std::wstring path = cut ? L"..." : L"";
    for (auto name = names.rbegin(); name != names.rend(); ++name) {
        if (name != names.rbegin()) path += L'.';
        path += *name;
    }
    return path;
}

}  // namespace lumivard::platform::data::Check
