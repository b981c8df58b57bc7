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

void Offsets::expect() const {
    const unsigned int count = items();
    if (count < 2) return;
    if (auto* const access = store()->access()) access->expect(bytes() + kEntries, count);
}

bool Offsets::rising() const {
    const unsigned int count = items();
    for (unsigned int index = 1; index < count; ++index) {
        if (get(index - 1) >= get(index)) return false;
    }
    return true;
}

std::vector<unsigned int> Offsets::get() const {
    std::vector<unsigned int> entries;
    get(entries);
    return entries;
}

void Offsets::get(std::vector<unsigned int>& entries) const {
    expect();
    entries.resize(items());
    if (!entries.empty()) std::memcpy(entries.data(), bytes() + kEntries, entries.size() * kEntry);
}

bool Offsets::set(unsigned int index, std::span<const unsigned int> values, tTouches touches) {
    const std::uint64_t end = position(std::uint64_t{index} + values.size());
    if (type() != kOffsets || end > std::numeric_limits<unsigned int>::max()) return false;
    if (end > size() && !grow(static_cast<unsigned int>(end) - size())) return false;
    if (!values.empty()) std::memcpy(buffer() + position(index), values.data(), values.size() * kEntry);
    update(true, touches);
    return true;
}

bool Offsets::removeVal(unsigned int value, tTouches touches) {
    const unsigned int count = items();
    for (unsigned int index = 0; index < count; ++index) {
        if (word(kEntries + index * kEntry) != value) continue;
        shrink(static_cast<unsigned int>(position(index)), kEntry);
        update(true, touches);
        return true;
    }
    return false;
}

unsigned int Offsets::at(IDataStore* store, unsigned int offset, unsigned int index) {
    return Offsets(store, offset, kInPlace).get(index);
}

}  // namespace lumivard::platform::data::Record
