#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace lvp::tool {

/// Takes a number into a hash, such that each bit of it turns about half of the bits of what comes out.
inline std::uint64_t mixed(std::uint64_t hash, std::uint64_t number) {
    hash ^= number;
    hash *= 0xFF51AFD7ED558CCDu;
    hash ^= hash >> 33;
    hash *= 0xC4CEB9FE1A85EC53u;
    return hash ^ (hash >> 29);
}

/// The same for bytes. What the hash began with has to be unknown to whoever chose them: else they could collide.
inline std::uint64_t mixed(std::uint64_t hash, const char* bytes, std::size_t size) {
    hash = mixed(hash, size);
    for (std::uint64_t part = 0; size > 0; part = 0) {
        const std::size_t taken = size < sizeof part ? size : sizeof part;
        std::memcpy(&part, bytes, taken);
        hash = mixed(hash, part);
        bytes += taken;
        size -= taken;
    }
    return hash;
}

}  // namespace lvp::tool
