#pragma once

#include <ostream>

#include "tools/stores/CheckResult.h"

namespace lvp::tool {

/// Prints a result for programs: one JSON object in UTF-8, with a key for all that the text tells.
void printJson(const tCheckResult& result, std::ostream& out);

}  // namespace lvp::tool
