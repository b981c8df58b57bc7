#pragma once

#include "lumivard/platform/core.h"

namespace lumivard::platform::test_support {

/// The offset of no record.
inline constexpr unsigned int BADOFF = core::storage::datastore::IDataStore::BADOFF;

/// The offset of the record that a tree begins with.
inline constexpr unsigned int kRoot = 0;

}  // namespace lumivard::platform::test_support
