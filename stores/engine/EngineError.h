#pragma once

#include <stdexcept>

#include "lumivard/platform/core/Export.h"

namespace lumivard::platform::stores {

/// Why an engine could not do what it was asked, in words that complete "Cannot flush the store x: ...". It carries
/// neither the store's name nor the attempt: who asked knows both and makes the `StoreError`.
class LVP_EXPORT EngineError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Nothing of a batch was stored, since somebody else has changed the store in between, or since it could not be
/// reached. What it held is lost, and the engine goes on.
class LVP_EXPORT EngineConflict : public EngineError {
public:
    using EngineError::EngineError;
};

}  // namespace lumivard::platform::stores
