#include "metadata/NameIndex.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <functional>
#include <new>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"

namespace lumivard::platform::data::Metadata {

namespace {

constexpr unsigned int BADOFF = core::storage::datastore::IDataStore::BADOFF;
constexpr std::size_t npos = std::string::npos;

/// At most half of the slots are taken.
std::size_t slotsFor(std::size_t entries) {
    return std::bit_ceil(2 * entries);
}

}  // namespace

unsigned int NameIndex::find(std::string_view name) const {
    const std::size_t found = position(name);
    return found == npos ? BADOFF : head(found).offset;
}

bool NameIndex::insert(unsigned int offset, std::string_view name) {
    if (position(name) != npos) return false;
    const bool many = !_slots.empty() || _entries >= kFew;
    if (many && 2 * (_entries + 1) > _slots.size()) rebuild(slotsFor(std::max(kFew, 2 * (size() + 1))));

    const tHead fresh{offset, static_cast<std::uint32_t>(name.size()), hashOf(name)};
    const std::size_t begin = _bytes.size();
    const std::size_t end = next(begin, fresh);
    if (begin / kUnit >= kFree) throw std::bad_alloc();
    if (end > _bytes.capacity()) _bytes.reserve(std::max(end, 2 * begin));
    _bytes.append(reinterpret_cast<const char*>(&fresh), sizeof(fresh)).append(name);
    if (_bytes.size() != end) _bytes.resize(end);
    _seen |= markOf(fresh.hash);
    if (many) place(_slots, fresh.hash, begin);
    ++_entries;
    return true;
}

void NameIndex::erase(std::string_view name) noexcept {
    const std::size_t found = position(name);
    if (found == npos) return;
    // The dead entry keeps its slot, so that those behind it are still found.
    std::memcpy(_bytes.data() + found, &BADOFF, sizeof(BADOFF));
    if (++_dead != _entries) return;
    _bytes.clear();
    std::fill(_slots.begin(), _slots.end(), tSlot{});
    _seen = 0;
    _entries = 0;
    _dead = 0;
}

void NameIndex::reserve(std::size_t children) {
    _bytes.reserve(children * (sizeof(tHead) + kUsualName));
    if (children > kFew && slotsFor(children) > _slots.size()) rebuild(slotsFor(children));
}

std::vector<unsigned int> NameIndex::offsets() const {
    std::vector<unsigned int> offsets;
    offsets.reserve(size());
    each([&](std::size_t, const tHead& entry) { offsets.push_back(entry.offset); });
    return offsets;
}

std::uint32_t NameIndex::signature(std::string_view name) {
    std::uint32_t last = 0;
    if (name.size() >= sizeof(last)) std::memcpy(&last, name.data() + name.size() - sizeof(last), sizeof(last));
    return last ^ (static_cast<std::uint32_t>(name.size()) << 16);
}

std::uint32_t NameIndex::hash(std::string_view name) {
    const std::size_t hash = std::hash<std::string_view>{}(name);
    return static_cast<std::uint32_t>(hash ^ (hash >> 32));
}

NameIndex::tHead NameIndex::head(std::size_t position) const {
    tHead head;
    std::memcpy(&head, _bytes.data() + position, sizeof(head));
    return head;
}

std::string_view NameIndex::name(std::size_t position, const tHead& head) const {
    return {_bytes.data() + position + sizeof(head), head.length};
}

std::size_t NameIndex::next(std::size_t position, const tHead& head) {
    return position + sizeof(head) + (std::size_t{head.length} + kUnit - 1) / kUnit * kUnit;
}

template <class Visit>
void NameIndex::each(Visit visit) const {
    for (std::size_t position = 0; position < _bytes.size();) {
        const tHead entry = head(position);
        if (entry.offset != BADOFF) visit(position, entry);
        position = next(position, entry);
    }
}

std::size_t NameIndex::position(std::string_view wanted) const {
    const std::uint32_t hash = hashOf(wanted);
    const auto is = [&](std::size_t position, const tHead& entry) {
        return entry.hash == hash && entry.offset != BADOFF && name(position, entry) == wanted;
    };
    if (_slots.empty()) {
        if ((_seen & markOf(hash)) == 0) return npos;
        for (std::size_t position = 0; position < _bytes.size();) {
            const tHead entry = head(position);
            if (is(position, entry)) return position;
            position = next(position, entry);
        }
        return npos;
    }
    const std::size_t mask = _slots.size() - 1;
    for (std::size_t slot = hash & mask; _slots[slot].place != kFree; slot = (slot + 1) & mask) {
        if (_slots[slot].hash != hash) continue;
        const std::size_t position = _slots[slot].place * kUnit;
        if (is(position, head(position))) return position;
    }
    return npos;
}

void NameIndex::rebuild(std::size_t slots) {
    std::vector<tSlot> table(slots);
    std::string living;
    living.reserve(_bytes.capacity());
    each([&](std::size_t position, tHead entry) {
        entry.hash = hash(name(position, entry));
        place(table, entry.hash, living.size());
        living.append(reinterpret_cast<const char*>(&entry), sizeof(entry));
        living.append(_bytes, position + sizeof(entry), next(position, entry) - position - sizeof(entry));
    });
    _bytes = std::move(living);
    _slots = std::move(table);
    _entries -= _dead;
    _dead = 0;
}

void NameIndex::place(std::vector<tSlot>& slots, std::uint32_t hash, std::size_t position) {
    const std::size_t mask = slots.size() - 1;
    std::size_t slot = hash & mask;
    while (slots[slot].place != kFree) slot = (slot + 1) & mask;
    slots[slot] = {hash, static_cast<std::uint32_t>(position / kUnit)};
}

}  // namespace lumivard::platform::data::Metadata
