#pragma once

#include "check/Case.h"

namespace lumivard::platform::data::Check {

/// Notes of all lists how they are named. To be called before the tree is sought.
void noteLists(Case& subject);

/// Judges what all items name: their lists of children, localized names and defaults. To be called when the tree is
/// known; gives each of these records its owner.
void judgeReferences(Case& subject);

}  // namespace lumivard::platform::data::Check
