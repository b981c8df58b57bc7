#pragma once

#include <cstddef>
#include <span>

namespace lumivard::platform::stores {

/// The contents of one record in memory, in a block of its own from `PooledHeap`.
///
/// A member that throws (`std::bad_alloc`) has changed nothing. 16 bytes large, since there is one for each record.
class RecordBytes {
public:
    RecordBytes() = default;
    RecordBytes(const RecordBytes&) = delete;
    RecordBytes& operator=(const RecordBytes&) = delete;
    ~RecordBytes() { clear(); }

    unsigned int size() const noexcept { return _size; }
    std::span<const std::byte> view() const noexcept { return {_data, _size}; }

    /// Replaces the contents. Takes a new block only when the old one is too small, or more than twice too large.
    void assign(const void* data, unsigned int size);

    /// Adds to the end; `size() + size` must fit in 32 bits. Blocks grow by doubling, so that many small additions cost
    /// in proportion to the bytes added.
    void append(const void* data, unsigned int size);

    /// Leaves no contents and gives the block back.
    void clear() noexcept;

private:
    std::byte* _data = nullptr;
    unsigned int _size = 0;
    unsigned int _capacity = 0;
};

}  // namespace lumivard::platform::stores
