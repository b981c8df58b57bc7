#pragma once

#include "lumivard/platform/core/Export.h"

namespace lumivard::platform::core::memory {

/// The heap of records and facades: small blocks that come and go with every call.
///
/// It stands on the global sized `operator new` and `operator delete`: the allocators behind those keep pools by size
/// and by thread, a program may replace them, and memory checkers see every block. Threads: any.
class LVP_EXPORT PooledHeap {
public:
    /// Returns `size` bytes of uninitialised memory, aligned for any type; never null. Throws `std::bad_alloc`.
    static void* malloc(unsigned long size);

    /// Gives a block back; `size` is the size that was asked for. A null block with a size of 0 does nothing.
    static void free(void* block, unsigned long size);
};

/// Gives a class its memory from `PooledHeap`: a class that derives from it is made by plain `new` and `delete`, and
/// each block returns with the size of the class that was made, also when it is deleted through a virtual destructor.
class PooledObject {
public:
    /// What `PooledHeap::malloc` gives.
    static void* operator new(unsigned long size) { return PooledHeap::malloc(size); }
    /// Gives the block back to `PooledHeap::free`; null does nothing.
    static void operator delete(void* block, unsigned long size) { PooledHeap::free(block, size); }

protected:
    ~PooledObject() = default;
};

}  // namespace lumivard::platform::core::memory
