#pragma once

#include <stdexcept>

#include "lumivard/platform/core/Export.h"

namespace lumivard::platform::stores {

/// What a store of this library throws when it cannot do what it is asked.
///
/// `what()` is a sentence for a person, in UTF-8: it names the store, what was tried and why it failed. Control
/// characters in names are written as `\xHH`, so that a file's name cannot steer a terminal, and of a very long name
/// the end is shown. The operation that threw has changed nothing.
class LVP_EXPORT StoreError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace lumivard::platform::stores
