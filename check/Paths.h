#pragma once

#include <string>

#include "check/Case.h"

namespace lumivard::platform::data::Check {

/// The path of a record, as `Finding::path` tells it.
std::wstring pathOf(Case& subject, unsigned int offset);

}  // namespace lumivard::platform::data::Check
