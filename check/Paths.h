#pragma once

#include <string>
#include <unordered_map>

#include "check/Case.h"

namespace lumivard::platform::data::Check {

/// Tells the paths of records, as `Finding::path` has them. Names are shortened before they are joined: a name may be
/// as long as a store is large, and many findings may lie below it.
class Paths {
public:
    explicit Paths(Case& subject) : _case(subject), _census(subject.census) {}

    std::wstring operator()(unsigned int offset);

private:
    const std::wstring& name(unsigned int item);
    bool isTop(unsigned int item) const { return item == tNode::kNone || _census[item].owner == item; }

    Case& _case;
    const Census& _census;
    std::unordered_map<unsigned int, std::wstring> _names;  ///< by item, as far as they were asked for
};

}  // namespace lumivard::platform::data::Check
