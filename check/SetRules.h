#pragma once

#include <vector>

#include "check/Case.h"

namespace lumivard::platform::data::Check {

/// Judges the names of the items of one set, which come in the order of its list.
void judgeNames(Case& subject, const std::vector<unsigned int>& items);

}  // namespace lumivard::platform::data::Check
