#pragma once

#include <vector>

#include "check/Case.h"

namespace lumivard::platform::data::Check {

/// Judges the record at offset 0, whose node may be none; whether it can stand at the top.
bool judgeTop(Case& subject, unsigned int top);

/// Judges the lists of all sets in the tree, entry by entry: each names an item that has its place there and names the
/// set as its parent. Returns the number of levels below the top.
std::uint64_t judgeTree(Case& subject);

}  // namespace lumivard::platform::data::Check
