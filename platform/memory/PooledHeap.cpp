#include "lumivard/platform/core/memory/PooledHeap.h"

#include <new>

namespace lumivard::platform::core::memory {

void* PooledHeap::malloc(unsigned long size) {
    return ::operator new(size);
}

void PooledHeap::free(void* block, unsigned long size) {
    ::operator delete(block, size);
}

}  // namespace lumivard::platform::core::memory
