#include "OwnStore.h"

#include <stdexcept>

class OwnStore::Guard final : public ILock {
public:
    explicit Guard(std::recursive_mutex& mutex) : _held(mutex) {}

private:
    std::lock_guard<std::recursive_mutex> _held;
};

namespace {

// `data` may be null where there is nothing to copy.
std::string bytes(const void* data, unsigned int size) {
    return size == 0 ? std::string() : std::string(static_cast<const char*>(data), size);
}

}  // namespace

OwnStore::ILock* OwnStore::lock() {
    return new Guard(_mutex);
}

unsigned int OwnStore::create(const void* data, unsigned int size) {
    if (_next == BADOFF) throw std::length_error("the store is full");
    _records.emplace(_next, bytes(data, size));
    return _next++;
}

// Each change is made ready first and then done by what cannot fail: an operation that throws has changed nothing.
void OwnStore::append(unsigned int offset, const void* data, unsigned int size) {
    std::string& record = _records.at(offset);
    if (size > 0xFFFFFFFFu - record.size()) throw std::length_error("the record would become too long");
    record += bytes(data, size);
}

void OwnStore::update(unsigned int offset, const void* data, unsigned int size, bool) {
    std::string& record = _records.at(offset);
    record = bytes(data, size);
}

unsigned int OwnStore::size(unsigned int offset) {
    const auto record = _records.find(offset);
    return record == _records.end() ? 0 : static_cast<unsigned int>(record->second.size());
}

void OwnStore::read(unsigned int offset, void* buffer, unsigned int size) {
    const auto record = _records.find(offset);
    if (record != _records.end()) record->second.copy(static_cast<char*>(buffer), size);
}

void OwnStore::erase(unsigned int offset) {
    if (_records.erase(offset) == 0) throw std::out_of_range("there is no such record");
}
