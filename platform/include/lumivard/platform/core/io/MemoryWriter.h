#pragma once

#include <string>

#include "lumivard/platform/core/Export.h"
#include "lumivard/platform/core/io/IDataWriter.h"

namespace lumivard::platform::core::io {

/// Gathers what is written; each `open` begins anew.
class LVP_EXPORT MemoryWriter : public IDataWriter {
public:
    bool open() override;
    void close() override;
    void write(const void* data, unsigned long size) override;

    /// What was written since `open`, also after `close`.
    const std::string& bytes() const;

private:
    std::string _bytes;
};

}  // namespace lumivard::platform::core::io
