#include "lumivard/platform/core/io/MemoryWriter.h"

namespace lumivard::platform::core::io {

bool MemoryWriter::open() {
    _bytes.clear();
    return true;
}

void MemoryWriter::close() {}

void MemoryWriter::write(const void* data, unsigned long size) {
    if (size != 0) _bytes.append(static_cast<const char*>(data), size);
}

const std::string& MemoryWriter::bytes() const {
    return _bytes;
}

}  // namespace lumivard::platform::core::io
