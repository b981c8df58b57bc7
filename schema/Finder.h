#pragma once

#include "lumivard/platform/core/storage/datastore/IDataStore.h"

namespace lumivard::platform::data::Schema {

using core::storage::datastore::IDataStore;

/// Follows a dotted path from a record to a record. Each piece of the path, empty ones included, names a direct child
/// of what was reached before; a null path leads nowhere. Nothing is opened for longer than the walk.
///
/// A path that meets a record without children, a primitive say, with exactly one piece left ends there, and that piece
/// is never looked at: who cares looks at the kind of the result.
class Finder {
public:
    Finder(IDataStore* store, unsigned int start, const wchar_t* path);

    /// Where the path leads, or `BADOFF`.
    unsigned int offset;
};

}  // namespace lumivard::platform::data::Schema
