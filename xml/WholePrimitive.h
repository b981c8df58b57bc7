#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"
#include "lumivard/platform/data/metadata/tValue.h"
#include "lumivard/platform/data/units/tUnit.h"

namespace lumivard::platform::data {

using core::storage::datastore::IDataStore;

/// A primitive with values of its own, whose record is made with all that it has at once.
struct tWholePrimitive {
    metadata::tValue kind;
    units::tUnit unit;
    unsigned int parent;
    const std::wstring& name;
    const std::wstring* locale;  ///< of the value; null for none
    std::string_view value;      ///< the bytes
};

/// Writes a new record: the bytes that a primitive has which is made, changed field by field and put under its parent.
/// The parent's list does not know of it yet. `BADOFF`, with nothing done, where the record would outgrow 32 bits.
///
/// `scratch` is memory that the next call uses again.
unsigned int create(IDataStore* store, const tWholePrimitive& primitive, std::vector<char>& scratch);

}  // namespace lumivard::platform::data
