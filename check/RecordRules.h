#pragma once

#include "check/Case.h"

namespace lumivard::platform::data::Check {

/// Reads the record of a node, takes in what it says and judges it by itself.
void judgeRecord(Case& subject, unsigned int number);

}  // namespace lumivard::platform::data::Check
