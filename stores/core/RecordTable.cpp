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
    slot->place = RecordSlot::tPlace::kAway;
    slot->changed = false;
    slot->counted = false;
}

}  // namespace lumivard::platform::stores
