#include "check/Overlay.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <stdexcept>

namespace lumivard::platform::data::Check {

namespace {

/// All bytes of a record.
std::string bytesOf(IDataStore& store, unsigned int offset) {
    std::string bytes(store.size(offset), '\0');
    if (!bytes.empty()) store.read(offset, bytes.data(), std::numeric_limits<unsigned int>::max());
    return bytes;
}

[[noreturn]] void refuse() {
    throw std::logic_error("a repair makes no records");
}

}  // namespace

std::vector<check::Step> Overlay::steps() {
    std::map<unsigned int, check::Step> steps;
    for (const auto& [offset, after] : _changed) {
        std::string before = bytesOf(_under, offset);
        if (before != after) steps[offset] = {offset, std::move(before), after, false};
    }
    for (const unsigned int offset : _erased) steps[offset] = {offset, bytesOf(_under, offset), {}, true};
    std::vector<check::Step> all;
    for (auto& [offset, step] : steps) all.push_back(std::move(step));
    return all;
}

void Overlay::version(unsigned int) {
    refuse();
}

unsigned int Overlay::create(const void*, unsigned int) {
    refuse();
}

void Overlay::append(unsigned int, const void*, unsigned int) {
    refuse();
}

void Overlay::update(unsigned int offset, const void* data, unsigned int size, bool) {
    _changed[offset].assign(static_cast<const char*>(data), size);
}

unsigned int Overlay::size(unsigned int offset) {
    if (_erased.contains(offset)) return 0;
    const auto changed = _changed.find(offset);
    return changed == _changed.end() ? _under.size(offset) : static_cast<unsigned int>(changed->second.size());
}

void Overlay::read(unsigned int offset, void* buffer, unsigned int size) {
    if (_erased.contains(offset)) return;
    const auto changed = _changed.find(offset);
    if (changed == _changed.end()) return _under.read(offset, buffer, size);
    const std::size_t count = std::min<std::size_t>(size, changed->second.size());
    if (count != 0) std::memcpy(buffer, changed->second.data(), count);
}

void Overlay::erase(unsigned int offset) {
    _erased.insert(offset);
    _changed.erase(offset);
}

}  // namespace lumivard::platform::data::Check
