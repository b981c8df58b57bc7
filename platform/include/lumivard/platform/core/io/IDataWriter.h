#pragma once

#include "lumivard/platform/core/Export.h"

namespace lumivard::platform::core::io {

/// A destination of bytes, written from its start to its end. Threads: one at a time.
class LVP_EXPORT IDataWriter {
public:
    virtual ~IDataWriter() = default;
    /// Gets ready to write from the start; false when that is not possible.
    virtual bool open() = 0;
    /// Ends the writing and gives back what `open` took.
    virtual void close() = 0;
    /// Takes `size` bytes from `data`, all of them, or throws an exception derived from `std::exception`.
    virtual void write(const void* data, unsigned long size) = 0;
};

}  // namespace lumivard::platform::core::io
