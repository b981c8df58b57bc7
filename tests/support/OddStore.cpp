#include "tests/support/OddStore.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

namespace lumivard::platform::test_support {
namespace {

std::string bytes(const void* data, unsigned int size) {
    return size == 0 ? std::string() : std::string(static_cast<const char*>(data), size);
}

}  // namespace

unsigned int OddStore::create(const void* data, unsigned int size) {
    const unsigned int offset = _next;
    _records.emplace(offset, bytes(data, size));
    _next += _step;
    _step += 16;
    return offset;
}

void OddStore::append(unsigned int offset, const void* data, unsigned int size) {
    _records.at(offset) += bytes(data, size);
}

void OddStore::update(unsigned int offset, const void* data, unsigned int size, bool) {
    _records.at(offset) = bytes(data, size);
}

unsigned int OddStore::size(unsigned int offset) {
    if (offset == BADOFF) throw std::logic_error("the size of no record was asked for");
    const auto record = _records.find(offset);
    return record == _records.end() ? 0 : static_cast<unsigned int>(record->second.size());
}

void OddStore::read(unsigned int offset, void* buffer, unsigned int size) {
    const auto record = _records.find(offset);
    if (record == _records.end()) return;
    const auto count = std::min<std::size_t>(size, record->second.size());
    if (count != 0) std::memcpy(buffer, record->second.data(), count);
}

void OddStore::erase(unsigned int offset) {
    _records.at(offset);
    _records.erase(offset);
}

}  // namespace lumivard::platform::test_support
