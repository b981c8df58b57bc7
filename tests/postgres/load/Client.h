#pragma once

#include <istream>
#include <ostream>
#include <string>

#include "lumivard/platform/stores/tMode.h"

namespace lumivard::platform::stores::load {

/// Has a ledger open, and does what it is told, a word a line, with one line as the answer to each:
///
///   read      "read" and the tally
///   write     takes a step as the first writer, and stores it: "wrote" and the tally
///   take      takes the guard, and keeps it: "taken"
///   change    takes a step under it, without storing that: "changed"
///   give      gives it back: "given"
///
/// What the store throws is an answer that begins with "error". The first line is "open", or an error.
void serve(const std::string& location, tMode mode, std::istream& orders, std::ostream& answers);

}  // namespace lumivard::platform::stores::load
