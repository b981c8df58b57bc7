#pragma once

#include <string>

#include "lumivard/platform/stores/StoreError.h"

namespace lumivard::platform::stores {

/// The error of the store `name`, as one sentence: Cannot <attempt> the store "<name>": <reason>. Or of what else it is
/// that has the name.
StoreError failure(const std::string& attempt, const std::string& name, const std::string& reason,
                   const char* what = "the store");

/// The system's words for an errno value.
std::string systemReason(int error);

}  // namespace lumivard::platform::stores
