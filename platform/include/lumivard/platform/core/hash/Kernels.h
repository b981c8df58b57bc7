#pragma once

#include "lumivard/platform/core/Export.h"

namespace lumivard::platform::core {

/// MurmurHash2 (Austin Appleby) over a wide text, in this platform's own form: see `hash`.
struct LVP_EXPORT tMurmur2Kernel {
    /// The same as `hash`.
    unsigned long operator()(const wchar_t* key) const { return hash(key); }

    /// The hash of a text of n characters: MurmurHash2 with a 64-bit state and seed 0 over the first n *bytes* of its
    /// 4n. Texts of one length that share their first quarter therefore hash alike.
    unsigned long hash(const wchar_t* key) const;

    /// Whether two texts are equal, character by character.
    bool equal(const wchar_t* a, const wchar_t* b) const;
};

/// SuperFastHash (Paul Hsieh) with a 64-bit state.
struct LVP_EXPORT tSFHKernel {
    /// The hash of `size` bytes at `data`.
    static unsigned long hash(const void* data, unsigned long size);

    /// The hash of a text without its terminator.
    unsigned long operator()(const char* key) const;
};

}  // namespace lumivard::platform::core
