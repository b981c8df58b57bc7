#pragma once

#include "check/Case.h"

namespace lumivard::platform::data::Check {

/// Judges the counts of live objects.
void judgeCounts(Case& subject);

/// Finds what nothing reaches: one finding for each subtree. Returns the offsets of all these records, of which a
/// subtree's stand together.
std::vector<unsigned int> judgeUnattached(Case& subject);

}  // namespace lumivard::platform::data::Check
