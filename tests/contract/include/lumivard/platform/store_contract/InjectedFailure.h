#pragma once

#include <stdexcept>

#include "lumivard/platform/core/Export.h"

namespace lumivard::platform::store_contract {

/// What a store of this kit throws because it was told to, and for no other reason: a test that catches it knows that
/// it saw its own fault. `what()` says which call it was.
class LVP_EXPORT InjectedFailure : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace lumivard::platform::store_contract
