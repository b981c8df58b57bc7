#pragma once

#include <string>

#include "lumivard/platform/core/Export.h"
#include "lumivard/platform/core/io/IDataReader.h"

namespace lumivard::platform::core::io {

/// Reads bytes that it holds; each `open` begins at the start again.
class LVP_EXPORT MemoryReader : public IDataReader {
public:
    /// Takes the bytes that it gives out.
    explicit MemoryReader(std::string bytes);
    bool open() override;
    void close() override;
    unsigned long read(void* buffer, unsigned long size) override;

private:
    std::string _bytes;
    unsigned long _position = 0;
};

}  // namespace lumivard::platform::core::io
