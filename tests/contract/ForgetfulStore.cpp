#include "lumivard/platform/store_contract/ForgetfulStore.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <random>
#include <stdexcept>
#include <utility>

namespace lumivard::platform::store_contract {
namespace {

using core::storage::datastore::IDataStore;

std::string bytes(const void* data, unsigned int size) {
    return size == 0 ? std::string() : std::string(static_cast<const char*>(data), size);
}

}  // namespace

class ForgetfulStore::Guard final : public ILock {
public:
    explicit Guard(std::recursive_mutex& mutex) : _held(mutex) {}

private:
    std::lock_guard<std::recursive_mutex> _held;
};

void ForgetfulStore::crash() {
    _now = _flushed;
    _changed.clear();
    _deadlySeed.reset();
    _dead = false;
}

void ForgetfulStore::dieInFlush(unsigned int seed) {
    _deadlySeed = seed;
}

void ForgetfulStore::_refuseWhenDead() const {
    if (_dead) throw InjectedFailure("the store has died in a flush");
}

IDataStore::ILock* ForgetfulStore::lock() {
    return new Guard(_guard);
}

void ForgetfulStore::flush() {
    _refuseWhenDead();
    if (!_deadlySeed) return _keep();
    if (std::mt19937(*_deadlySeed)() % 2 == 0) _keep();
    _dead = true;
    _refuseWhenDead();
}

// Makes what there is now what a crash leaves: all records of new content as they are, bookkeeping of theirs included.
// Where it runs out of memory nothing of it has happened.
void ForgetfulStore::_keep() {
    std::map<unsigned int, std::string> fresh;
    for (const unsigned int offset : _changed) {
        const auto record = _now.records.find(offset);
        if (record != _now.records.end()) fresh.emplace_hint(fresh.end(), offset, record->second);
    }
    for (const unsigned int offset : _changed) _flushed.records.erase(offset);
    _flushed.records.merge(fresh);
    _flushed.extent = _now.extent;
    _flushed.version = _now.version;
    _changed.clear();
    ++_flushes;
}

void ForgetfulStore::version(unsigned int number) {
    _refuseWhenDead();
    _now.version = number;
}

unsigned int ForgetfulStore::create(const void* data, unsigned int size) {
    _refuseWhenDead();
    if (_now.extent >= BADOFF) throw std::length_error("all offsets have been handed out");
    const auto offset = static_cast<unsigned int>(_now.extent);
    _changed.insert(offset);
    _now.records.emplace(offset, bytes(data, size));
    ++_now.extent;
    return offset;
}

std::string& ForgetfulStore::_existing(unsigned int offset) {
    const auto record = _now.records.find(offset);
    if (record == _now.records.end()) throw std::out_of_range("there is no record at " + std::to_string(offset));
    return record->second;
}

void ForgetfulStore::append(unsigned int offset, const void* data, unsigned int size) {
    _refuseWhenDead();
    std::string& record = _existing(offset);
    if (std::uint64_t{record.size()} + size > UINT32_MAX) throw std::length_error("a record became too long");
    _changed.insert(offset);
    record += bytes(data, size);
}

void ForgetfulStore::update(unsigned int offset, const void* data, unsigned int size, bool changed) {
    if (changed) _refuseWhenDead();
    std::string& record = _existing(offset);
    std::string next = bytes(data, size);
    if (changed) _changed.insert(offset);
    record = std::move(next);
}

unsigned int ForgetfulStore::size(unsigned int offset) {
    const auto record = _now.records.find(offset);
    return record == _now.records.end() ? 0 : static_cast<unsigned int>(record->second.size());
}

void ForgetfulStore::read(unsigned int offset, void* buffer, unsigned int size) {
    const auto record = _now.records.find(offset);
    if (record == _now.records.end()) return;
    const auto count = std::min<std::size_t>(size, record->second.size());
    if (count != 0) std::memcpy(buffer, record->second.data(), count);
}

void ForgetfulStore::erase(unsigned int offset) {
    _refuseWhenDead();
    _existing(offset);
    _changed.insert(offset);
    _now.records.erase(offset);
}

}  // namespace lumivard::platform::store_contract
