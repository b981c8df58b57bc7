#pragma once

#include <string_view>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"
#include "record/tType.h"

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
    Finder(IDataStore* store, unsigned int start, std::wstring_view path);

    /// Whether a record of a kind has children.
    static constexpr bool isSet(Record::tType kind) {
        return kind == Record::kRoot || kind == Record::kTable || kind == Record::kContainer;
    }

    /// Where the path leads, or `BADOFF`.
    unsigned int offset;
};

}  // namespace lumivard::platform::data::Schema
