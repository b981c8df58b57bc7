#pragma once

#include "lumivard/platform/core/Export.h"

/// Sources and destinations of bytes.
namespace lumivard::platform::core::io {

/// A source of bytes, read from its start to its end. Threads: one at a time.
class LVP_EXPORT IDataReader {
public:
    virtual ~IDataReader() = default;
    /// Gets ready to read from the start; false when that is not possible.
    virtual bool open() = 0;
    /// Ends the reading and gives back what `open` took.
    virtual void close() = 0;
    /// Copies up to `size` bytes into `buffer` and returns how many there were, 0 only at the end. Throws an exception
    /// derived from `std::exception` when the source fails.
    virtual unsigned long read(void* buffer, unsigned long size) = 0;
};

}  // namespace lumivard::platform::core::io
