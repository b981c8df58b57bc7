#pragma once

#include "lumivard/platform/core/Export.h"

namespace lumivard::platform::data::metadata {

/// A place holder in the signature of `IXMLFrontEnd::parse`. It has no operations, the library never calls it, and
/// callers pass null.
class LVP_EXPORT IURIResolver {
public:
    virtual ~IURIResolver() = default;
};

}  // namespace lumivard::platform::data::metadata
