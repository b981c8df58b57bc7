#pragma once

#include "lumivard/platform/core/Export.h"

namespace lumivard::platform::core::storage::datastore {

/// What a store can do beyond whole records, for callers that would otherwise copy a long record to see a few bytes.
///
/// It adds no meaning to `IDataStore`: each operation has a slower form in terms of that interface. The guard, the
/// errors and the threads of the store hold for it.
class LVP_EXPORT IRecordAccess {
public:
    virtual ~IRecordAccess() = default;

    /// Copies up to `size` bytes of a record, beginning at byte `position`, into `buffer`, and returns how many there
    /// were: fewer than `size` where the record ends before, 0 for an offset that names no record. The cost does not
    /// depend on the record's length.
    virtual unsigned int read(unsigned int offset, unsigned int position, void* buffer, unsigned int size) = 0;
};

}  // namespace lumivard::platform::core::storage::datastore
