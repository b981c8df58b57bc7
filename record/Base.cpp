#include "record/Base.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

#include "lumivard/platform/core/memory/PooledHeap.h"

namespace lumivard::platform::data::Record {

using core::memory::PooledHeap;

namespace {

constexpr std::uint64_t kLongest = std::numeric_limits<unsigned int>::max();

char* zeroed(unsigned int capacity) {
    auto* bytes = static_cast<char*>(PooledHeap::malloc(capacity));
    std::memset(bytes, 0, capacity);
    return bytes;
}

}  // namespace

unsigned int allocator(unsigned int size) {
    if (size == 0) return 0;
    const auto* entry = std::lower_bound(kpAllocations.begin(), kpAllocations.end(), size);
    return entry == kpAllocations.end() ? size : *entry;
}

tType peek(IDataStore* store, unsigned int offset) {
    unsigned char kind = 0;
    if (offset != IDataStore::BADOFF) store->read(offset, &kind, 1);
    return static_cast<tType>(kind);
}

Base::Base(IDataStore* store, std::uint64_t size, tType type) : _store(store), _offset(BADOFF) {
    if (size > kLongest) throw std::bad_array_new_length();
    _size = static_cast<unsigned int>(size);
    _capacity = allocator(_size);
    _buffer = zeroed(_capacity);
    putByte(0, type);
}

Base::Base(IDataStore* store, unsigned int offset) : _store(store), _offset(offset) {
    if (offset == BADOFF) return;
    const unsigned int size = store->size(offset);
    if (size == 0) return;
    const unsigned int capacity = allocator(size);
    _buffer = zeroed(capacity);
    _capacity = capacity;
    _size = size;
    try {
        store->read(offset, _buffer, std::numeric_limits<unsigned int>::max());
    } catch (...) {
        PooledHeap::free(_buffer, _capacity);
        throw;
    }
}

Base::~Base() {
    if (_capacity != 0) PooledHeap::free(_buffer, _capacity);
}

unsigned int Base::clone(IDataStore* target) const {
    return target->create(_buffer, _size);
}

void Base::update(bool changed) {
    if (_offset == BADOFF) {
        _offset = _store->create(_buffer, _size);
    } else {
        _store->update(_offset, _buffer, _size, changed);
    }
}

bool Base::grow(unsigned int count) {
    if (count == 0) return true;
    const std::uint64_t size = std::uint64_t{_size} + count;
    if (size > kLongest) return false;
    if (size > _capacity) {
        const unsigned int capacity = allocator(static_cast<unsigned int>(size));
        char* buffer = zeroed(capacity);
        if (_size != 0) std::memcpy(buffer, _buffer, _size);
        adopt(buffer, _size, capacity);
    }
    _size = static_cast<unsigned int>(size);
    return true;
}

void Base::shrink(unsigned int position, unsigned int count) {
    if (count == 0) return;
    const unsigned int tail = _size - position - count;
    std::memmove(_buffer + position, _buffer + position + count, tail);
    std::memset(_buffer + position + tail, 0, count);
    _size -= count;
}

unsigned char Base::byte(unsigned int position, unsigned char absent) const {
    return position < _size ? static_cast<unsigned char>(_buffer[position]) : absent;
}

unsigned int Base::word(unsigned int position, unsigned int absent) const {
    if (std::uint64_t{position} + sizeof(unsigned int) > _size) return absent;
    unsigned int value;
    std::memcpy(&value, _buffer + position, sizeof(value));
    return value;
}

void Base::putByte(unsigned int position, unsigned char value) {
    if (position < _size) _buffer[position] = static_cast<char>(value);
}

void Base::putWord(unsigned int position, unsigned int value) {
    if (std::uint64_t{position} + sizeof(value) > _size) return;
    std::memcpy(_buffer + position, &value, sizeof(value));
}

std::wstring Base::text(std::uint64_t position, std::uint64_t length) const {
    if (position >= _size) return {};
    const std::uint64_t characters = std::min<std::uint64_t>(length, _size - position) / sizeof(wchar_t);
    std::wstring text(characters, L'\0');
    std::memcpy(text.data(), _buffer + position, characters * sizeof(wchar_t));
    const auto end = text.find(L'\0');
    if (end != std::wstring::npos) text.resize(end);
    return text;
}

void Base::adopt(char* buffer, unsigned int size, unsigned int capacity) {
    if (_capacity != 0) PooledHeap::free(_buffer, _capacity);
    _buffer = buffer;
    _size = size;
    _capacity = capacity;
}

}  // namespace lumivard::platform::data::Record
