#include "lumivard/platform/core/io/MemoryReader.h"

#include <algorithm>
#include <utility>

namespace lumivard::platform::core::io {

MemoryReader::MemoryReader(std::string bytes) : _bytes(std::move(bytes)) {}

bool MemoryReader::open() {
    _position = 0;
    return true;
}

void MemoryReader::close() {}

unsigned long MemoryReader::read(void* buffer, unsigned long size) {
    const unsigned long count = std::min<unsigned long>(size, _bytes.size() - _position);
    std::copy_n(_bytes.data() + _position, count, static_cast<char*>(buffer));
    _position += count;
    return count;
}

}  // namespace lumivard::platform::core::io
