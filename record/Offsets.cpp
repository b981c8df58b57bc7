#include "record/Offsets.h"

#include <cstring>
#include <limits>

#include "lumivard/platform/core/storage/datastore/IRecordAccess.h"

namespace lumivard::platform::data::Record {

namespace {

constexpr std::uint64_t position(std::uint64_t index) {
    return Offsets::kEntries + index * Offsets::kEntry;
}

}  // namespace

Offsets::Offsets(IDataStore* store) : Base(store, std::uint64_t{kEntries}, kOffsets) {
    update(true);
}

unsigned int Offsets::items() const {
    return type() == kOffsets && size() >= kEntries ? (size() - kEntries) / kEntry : 0;
}

std::vector<unsigned int> Offsets::get() const {
    std::vector<unsigned int> entries(items());
    if (!entries.empty()) std::memcpy(entries.data(), bytes() + kEntries, entries.size() * kEntry);
    return entries;
}

bool Offsets::set(unsigned int index, std::span<const unsigned int> values) {
    const std::uint64_t end = position(std::uint64_t{index} + values.size());
    if (type() != kOffsets || end > std::numeric_limits<unsigned int>::max()) return false;
    if (end > size() && !grow(static_cast<unsigned int>(end) - size())) return false;
    if (!values.empty()) std::memcpy(buffer() + position(index), values.data(), values.size() * kEntry);
    update(true);
    return true;
}

bool Offsets::removeVal(unsigned int value) {
    for (unsigned int index = 0; index < items(); ++index) {
        if (get(index) != value) continue;
        shrink(static_cast<unsigned int>(position(index)), kEntry);
        update(true);
        return true;
    }
    return false;
}

unsigned int Offsets::at(IDataStore* store, unsigned int offset, unsigned int index) {
    auto* access = store->access();
    const std::uint64_t where = position(index);
    if (peek(store, offset) != kOffsets) return BADOFF;
    if (!access || where > std::numeric_limits<unsigned int>::max()) return Offsets(store, offset).get(index);
    unsigned int entry = BADOFF;
    const unsigned int count = access->read(offset, static_cast<unsigned int>(where), &entry, kEntry);
    return count == kEntry ? entry : BADOFF;
}

}  // namespace lumivard::platform::data::Record
