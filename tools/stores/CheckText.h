#pragma once

#include <ostream>

#include "tools/stores/CheckResult.h"

namespace lvp::tool {

/// Print a result for people, one after the other. First what was found: a line for each fault of the file, and for
/// each finding before any repair.
void printFound(const tCheckResult& result, std::ostream& out);

/// What a repair is about to do: a line for each record that changes.
void printPlan(const lumivard::platform::data::check::Repair& repair, std::ostream& out);

/// What a repair has left, the totals, and one sentence.
void printEnd(const tCheckResult& result, std::ostream& out);

}  // namespace lvp::tool
