#pragma once

#include <ostream>

#include "tools/CheckResult.h"

namespace lvp::tool {

/// Prints a result for people: a line for each finding, the totals, and one sentence.
void printText(const tCheckResult& result, std::ostream& out);

}  // namespace lvp::tool
