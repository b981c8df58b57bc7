#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "stores/core/RecordHeap.h"

namespace lumivard::platform::stores {

/// What the core knows of one offset.
struct RecordSlot {
    enum class tPlace : unsigned char {
        kAway,  ///< not asked for yet: the engine may have it
        kLent,  ///< where the engine has it, until the loan ends
        kHere,  ///< in memory
        kGone   ///< names no record
    };

    [[no_unique_address]] RecordBytes bytes;  ///< of a record that is here or lent
    tPlace place : 2 = tPlace::kAway;
    bool changed : 1 = false;  ///< content differs from what is stored; listed among the changes
    bool counted : 1 = false;  ///< was updated by bookkeeping alone; listed among those
    bool used : 1 = false;     ///< was asked for since the table was last made smaller
    std::uint16_t loan = 0;    ///< in which the contents were lent; 0 for none
};

/// All offsets of a store, found in constant time, and the memory of their records.
///
/// Slots stand in pages that are made when they are first asked for and never move, so that no write ever pays for the
/// number of records before it. Not thread-safe.
class RecordTable {
public:
    /// The slot of an offset; a new one is away. The reference holds until `clear` or `shrink`. Throws
    /// `std::bad_alloc`.
    RecordSlot& at(unsigned int offset);

    /// The slot of an offset, or null where its page was never made.
    RecordSlot* find(unsigned int offset) noexcept {
        const std::size_t number = offset / kPageSlots;
        if (number >= _pages.size() || !_pages[number]) return nullptr;
        return &(*_pages[number])[offset % kPageSlots];
    }

    /// Puts an offset back to what it was before it was first asked for.
    void forget(unsigned int offset) noexcept;

    /// Forgets records that are here and have not changed until at most so many bytes are left, those first that nobody
    /// has used since the last time; their own and some for each count. Gives what is left. Goes over all offsets.
    std::size_t shrink(std::size_t bytes) noexcept;

    /// What a record counts for in that.
    static std::size_t weight(const RecordBytes& bytes) noexcept { return bytes.size() + sizeof(RecordSlot); }

    /// Which loan this is: contents that were lent in another one are not there any more.
    std::uint16_t loan() const noexcept { return _loan; }

    /// From now on nothing is looked at any more that was lent.
    void endLoan() noexcept;

    /// Forgets all offsets.
    void clear() noexcept {
        _pages.clear();
        _heap.clear();
    }

    /// Where the records lie.
    RecordHeap& heap() noexcept { return _heap; }

private:
    static constexpr unsigned int kPageSlots = 1024;
    using Page = std::array<RecordSlot, kPageSlots>;

    std::vector<std::unique_ptr<Page>> _pages;
    RecordHeap _heap;
    std::uint16_t _loan = 1;
};

}  // namespace lumivard::platform::stores
