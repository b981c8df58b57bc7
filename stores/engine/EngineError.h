#pragma once

#include <stdexcept>

namespace lumivard::platform::stores {

/// Why an engine could not do what it was asked, in words that complete "Cannot flush the store x: ...". It carries
/// neither the store's name nor the attempt: who asked knows both and makes the `StoreError`.
class EngineError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace lumivard::platform::stores
