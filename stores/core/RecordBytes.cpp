#include "stores/core/RecordBytes.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "lumivard/platform/core/memory/PooledHeap.h"

namespace lumivard::platform::stores {
namespace {

using core::memory::PooledHeap;

constexpr unsigned int kSmallBlock = 64;  // a block up to this size is kept however little it holds

std::byte* allocate(unsigned int size) {
    return size == 0 ? nullptr : static_cast<std::byte*>(PooledHeap::malloc(size));
}

void copyBytes(std::byte* to, const void* from, unsigned int size) {
    if (size != 0) std::memcpy(to, from, size);
}

}  // namespace

void RecordBytes::assign(const void* data, unsigned int size) {
    const bool fits = size <= _capacity && (_capacity <= kSmallBlock || size >= _capacity / 2);
    if (!fits) {
        std::byte* block = allocate(size);
        clear();
        _data = block;
        _capacity = size;
    }
    copyBytes(_data, data, size);
    _size = size;
}

void RecordBytes::append(const void* data, unsigned int size) {
    const std::uint64_t needed = std::uint64_t{_size} + size;
    if (needed > _capacity) {
        const std::uint64_t doubled = std::min<std::uint64_t>(std::uint64_t{_capacity} * 2, UINT32_MAX);
        const auto capacity = static_cast<unsigned int>(std::max(needed, doubled));
        std::byte* block = allocate(capacity);
        copyBytes(block, _data, _size);
        const unsigned int kept = _size;
        clear();
        _data = block;
        _size = kept;
        _capacity = capacity;
    }
    copyBytes(_data + _size, data, size);
    _size += size;
}

void RecordBytes::clear() noexcept {
    PooledHeap::free(_data, _capacity);
    _data = nullptr;
    _size = 0;
    _capacity = 0;
}

}  // namespace lumivard::platform::stores
