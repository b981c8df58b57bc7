#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "lumivard/platform/core/Export.h"
#include "lumivard/platform/core/storage/datastore/IDataStore.h"

namespace lumivard::platform::data::check {

using core::storage::datastore::IDataStore;

/// A field or a section of a record as it lies there.
struct Field {
    const char* name = "";     ///< as in the description of the format: "parent", "name length", "zeros"
    std::size_t position = 0;  ///< in bytes from the record's begin
    std::size_t size = 0;      ///< in bytes, which are all in the record

    /// What the bytes say, in UTF-8: a number, a text, the name of a kind. Texts of a store stand in it as they are,
    /// control characters included. Empty where there is nothing to say.
    std::string meaning;
};

/// One record, taken apart.
struct Dump {
    bool there = false;        ///< whether the offset names a record
    const char* kind = "";     ///< "root", "primitive", "table", "list", "container", "localized names", or "unknown"
    std::string bytes;         ///< all of them
    std::vector<Field> parts;  ///< by rising positions, each byte in one of them
};

/// Takes a record apart as the library reads it, whatever is in it: what is too short, too long or of no known kind
/// shows as that. Of a list the first 1,000 entries are told one by one. It changes nothing, and follows no reference.
///
/// Holds the store's guard. Costs a copy of the record, and as much again for its meaning. What the store throws passes
/// through.
LVP_EXPORT Dump dump(IDataStore& store, unsigned int offset);

}  // namespace lumivard::platform::data::check
