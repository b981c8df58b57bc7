#pragma once

#include <cstddef>
#include <memory>

namespace lumivard::platform::data::Metadata {

/// Memory for a `google::dense_hash_map`. The map's own allocator gives null where memory runs out, and the map writes
/// there; this one throws `std::bad_alloc`, which leaves the map as it was.
template <class T>
class MapAllocator : public std::allocator<T> {
public:
    // What the map asks for, and C++20 has taken out of `std::allocator`.
    using pointer = T*;
    using const_pointer = const T*;
    using reference = T&;
    using const_reference = const T&;
    template <class Other>
    struct rebind {
        using other = MapAllocator<Other>;
    };

    MapAllocator() = default;
    template <class Other>
    MapAllocator(const MapAllocator<Other>&) {}  // NOLINT(google-explicit-constructor): as allocators do

    std::size_t max_size() const { return static_cast<std::size_t>(-1) / sizeof(T); }
};

}  // namespace lumivard::platform::data::Metadata
