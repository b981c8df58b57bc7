#include "stores/core/RecordTable.h"

namespace lumivard::platform::stores {

static_assert(sizeof(RecordSlot) == 16, "there is one slot for each record of a store");

RecordSlot& RecordTable::at(unsigned int offset) {
    const std::size_t number = offset / kPageSlots;
    if (number >= _pages.size()) _pages.resize(number + 1);
    auto& page = _pages[number];
    if (!page) page = std::make_unique<Page>();
    return (*page)[offset % kPageSlots];
}

void RecordTable::forget(unsigned int offset) noexcept {
    RecordSlot* slot = find(offset);
    if (!slot) return;
    _heap.release(slot->bytes);
    *slot = RecordSlot{};
}

std::size_t RecordTable::shrink(std::size_t bytes) noexcept {
    std::size_t left = 0;
    for (const auto& page : _pages) {
        for (std::size_t i = 0; page && i < kPageSlots; ++i) {
            if ((*page)[i].place == RecordSlot::tPlace::kHere) left += weight((*page)[i].bytes);
        }
    }
    for (const bool usedToo : {false, true}) {
        for (auto& page : _pages) {
            if (!page) continue;
            bool empty = true;
            for (RecordSlot& slot : *page) {
                const bool mayGo = slot.place == RecordSlot::tPlace::kHere && !slot.changed && !slot.counted;
                if (left > bytes && mayGo && (usedToo || !slot.used)) {
                    left -= weight(slot.bytes);
                    _heap.release(slot.bytes);
                    slot = RecordSlot{};
                }
                slot.used = false;
                empty = empty && slot.place == RecordSlot::tPlace::kAway;
            }
            if (empty) page.reset();
        }
    }
    return left;
}

// Slots have the number of a loan, so that nobody has to go through them, but for one time in 65,536, after which the
// numbers begin anew.
void RecordTable::endLoan() noexcept {
    if (++_loan != 0) return;
    for (const auto& page : _pages) {
        if (!page) continue;
        for (RecordSlot& slot : *page) {
            if (slot.place == RecordSlot::tPlace::kLent) slot.place = RecordSlot::tPlace::kAway;
            slot.loan = 0;
        }
    }
    _loan = 1;
}

}  // namespace lumivard::platform::stores
