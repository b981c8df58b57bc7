#pragma once

#include "lumivard/platform/data/metadata/IProperty.h"

namespace lumivard::platform::data {

/// Opens the record at an offset as a property and gives it its public face; null for `BADOFF` and for a record that is
/// neither a primitive nor a table. For callers that hold the store's guard.
SharedPtr<metadata::IProperty> openProperty(IDataStore* store, unsigned int offset);

}  // namespace lumivard::platform::data
