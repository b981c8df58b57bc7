#pragma once

#include "lumivard/platform/core/Export.h"
#include "lumivard/platform/data/Names.h"

namespace lumivard::platform::data::metadata {

class IStructLayout;

/// What `ISchemaLocator::resolve` found under a URI: one schema, or several in the order in which they were named. It
/// is handed to `create` and `validates`.
///
/// It owns nothing of what it shows, so it is not to be used once its locator is gone or has let go of a store that one
/// of its schemas stands in. Only the library implements it, and no other implementation is accepted where one is asked
/// for. Threads: it never changes, so any number may read it. No operation takes a guard.
class LVP_EXPORT ISchema {
public:
    virtual ~ISchema() = default;

    /// The URI of the first schema that was found, which need not be the first that was named.
    virtual WideString path() const = 0;

    /// The layout of that schema; belongs to the locator. The others' are not shown.
    virtual IStructLayout* layout() = 0;
};

}  // namespace lumivard::platform::data::metadata
