#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>

#include "stores/core/RecordHeap.h"

namespace lumivard::platform::stores {

/// What this process has noted in records for itself, where a store is shared with others: how many objects it has open
/// on them. It is never stored, so that nobody hears of it, and it is void when the process is gone; and it comes back
/// into a record that others have changed since.
///
/// Of each record it knows one run of bytes: what stands there in the store, and what stands there for this process. A
/// byte that a change of content has made another one is content from then on. Not thread-safe. Members that throw
/// (`std::bad_alloc`) have changed nothing.
class PrivateBytes {
public:
    /// Bookkeeping is about to write `size` bytes at `position` of a record, all of them inside.
    void note(unsigned int offset, std::span<const std::byte> contents, unsigned int position, const void* data,
              unsigned int size);

    /// A record as it is to be stored; nothing where that is as it is here.
    std::optional<std::string> stored(unsigned int offset, std::span<const std::byte> contents);

    /// A record has come from the store: gives it what this process has noted in it, as far as it is long enough.
    void restore(unsigned int offset, RecordHeap& heap, RecordBytes& contents);

    /// The record is gone.
    void forget(unsigned int offset) noexcept { _runs.erase(offset); }

private:
    struct tRun {
        unsigned int position;
        std::string stored;
        std::string own;

        std::uint64_t end() const { return std::uint64_t{position} + own.size(); }
        void learn(std::span<const std::byte> contents);
    };

    std::unordered_map<unsigned int, tRun> _runs;
};

}  // namespace lumivard::platform::stores
