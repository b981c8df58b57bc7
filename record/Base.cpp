#include "record/Base.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

#include "lumivard/platform/core/memory/PooledHeap.h"
#include "record/Ledger.h"

namespace lumivard::platform::data::Record {

using core::memory::PooledHeap;

namespace {

constexpr std::uint64_t kLongest = std::numeric_limits<unsigned int>::max();

}  // namespace

unsigned int allocator(unsigned int size) {
    if (size == 0) return 0;
    const auto* entry = std::lower_bound(kpAllocations.begin(), kpAllocations.end(), size);
    return entry == kpAllocations.end() ? size : *entry;
}

tType peek(IDataStore* store, unsigned int offset) {
    unsigned char kind = 0;
    if (offset == IDataStore::BADOFF) return static_cast<tType>(kind);
    if (auto* access = store->access()) {
        const auto view = access->view(offset);
        if (view.size != 0) kind = static_cast<unsigned char>(*view.data);
    } else {
        store->read(offset, &kind, 1);
    }
    return static_cast<tType>(kind);
}

Base::Base(IDataStore* store, std::uint64_t size, tType type) : _store(store), _offset(BADOFF) {
    if (size > kLongest) throw std::bad_array_new_length();
    const unsigned int capacity = allocator(static_cast<unsigned int>(size));
    adopt(zeroed(capacity), static_cast<unsigned int>(size), capacity);
    putByte(0, type);
}

Base::Base(IDataStore* store, unsigned int offset) : _store(store), _offset(offset) {
    if (offset != BADOFF) load();
}

void Base::load() {
    const unsigned int size = _store->size(_offset);
    if (size == 0) return;
    const unsigned int capacity = allocator(size);
    adopt(zeroed(capacity), size, capacity);
    try {
        _store->read(_offset, _buffer, std::numeric_limits<unsigned int>::max());
    } catch (...) {
        if (_buffer != _inside) release();
        throw;
    }
}

void Base::release() {
    PooledHeap::free(_buffer, _capacity);
}

char* Base::room(unsigned int capacity) {
    if (capacity <= kInside && _buffer != _inside) return _inside;
    return static_cast<char*>(PooledHeap::malloc(capacity));
}

char* Base::zeroed(unsigned int capacity) {
    char* bytes = room(capacity);
    std::memset(bytes, 0, capacity);
    return bytes;
}

unsigned int Base::clone(IDataStore* target) const {
    const unsigned int copy = target->create(_bytes, _size);
    Ledger::account(target);
    return copy;
}

void Base::update(bool changed, tTouches touches) {
    const bool fresh = _offset == BADOFF;
    if (fresh) {
        _offset = _store->create(_bytes, _size);
    } else {
        _store->update(_offset, buffer(), _size, changed);
    }
    if (fresh || (changed && touches == tTouches::kItself)) Ledger::account(_store);
}

bool Base::writeWord(unsigned int position, unsigned int value, bool changed, tTouches touches) {
    return write(position, reinterpret_cast<const char*>(&value), sizeof(value), changed, touches);
}

bool Base::writeByte(unsigned int position, unsigned char value, bool changed, tTouches touches) {
    return write(position, reinterpret_cast<const char*>(&value), sizeof(value), changed, touches);
}

bool Base::write(std::uint64_t position, const char* data, std::uint64_t size, bool changed, tTouches touches) {
    if (position > _size || size > _size - position) return false;
    if (auto* access = _store->access()) {
        const auto view =
            access->write(_offset, static_cast<unsigned int>(position), data, static_cast<unsigned int>(size), changed);
        if (_buffer) {
            std::memcpy(_buffer + position, data, size);
        } else {
            _bytes = view.data;
            _size = view.size;
        }
        if (changed && touches == tTouches::kItself) Ledger::account(_store);
    } else {
        std::memcpy(buffer() + position, data, size);
        update(changed, touches);
    }
    return true;
}

char* Base::buffer() {
    if (!_buffer && _size != 0) {
        const unsigned int capacity = allocator(_size);
        char* copy = zeroed(capacity);
        std::memcpy(copy, _bytes, _size);
        adopt(copy, _size, capacity);
    }
    return _buffer;
}

bool Base::grow(unsigned int count) {
    if (count == 0) return true;
    const std::uint64_t size = std::uint64_t{_size} + count;
    if (size > kLongest) return false;
    if (size > _capacity) {
        const unsigned int capacity = allocator(static_cast<unsigned int>(size));
        char* buffer = zeroed(capacity);
        if (_size != 0) std::memcpy(buffer, _bytes, _size);
        adopt(buffer, _size, capacity);
    }
    _size = static_cast<unsigned int>(size);
    return true;
}

void Base::shrink(unsigned int position, unsigned int count) {
    if (count == 0) return;
    const unsigned int tail = _size - position - count;
    char* bytes = buffer();
    std::memmove(bytes + position, bytes + position + count, tail);
    std::memset(bytes + position + tail, 0, count);
    _size -= count;
}

void Base::putByte(unsigned int position, unsigned char value) {
    if (position < _size) buffer()[position] = static_cast<char>(value);
}

void Base::putWord(unsigned int position, unsigned int value) {
    if (std::uint64_t{position} + sizeof(value) > _size) return;
    std::memcpy(buffer() + position, &value, sizeof(value));
}

void Base::adopt(char* buffer, unsigned int size, unsigned int capacity) {
    if (_buffer && _buffer != _inside) release();
    _buffer = buffer;
    _bytes = buffer;
    _size = size;
    _capacity = capacity;
}

}  // namespace lumivard::platform::data::Record
