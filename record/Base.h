#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"
#include "lumivard/platform/core/storage/datastore/IRecordAccess.h"
#include "record/Sections.h"
#include "record/tType.h"

namespace lumivard::platform::data::Record {

using core::storage::datastore::IDataStore;
using core::storage::datastore::IRecordAccess;

/// The buffer sizes that records are given, in bytes, so that a record that grows a little stays where it is.
inline constexpr std::array<unsigned int, 13> kpAllocations{8,   16,  32,   48,   64,   96,   128,
                                                            256, 512, 1024, 2048, 4096, 16384};

/// The buffer size for a record of `size` bytes: the next entry of `kpAllocations`, or `size` itself above the last.
unsigned int allocator(unsigned int size);

/// The kind of a record, without loading it; `kRoot` for an offset that names no record, `BADOFF` included.
tType peek(IDataStore* store, unsigned int offset);

/// What a change of a record can make others forget: what they know of a set's children, or nothing.
enum class tTouches {
    kChildren,  ///< an entry of a list, or the name, the owner or the kind of an entity
    kItself     ///< anything else
};

/// Asks for a record that is read where it lies, as far as its store shows it there (`IDataStore::access`): nothing is
/// copied before something is changed. For a short time, in which nobody else changes that record.
struct tInPlace {};
inline constexpr tInPlace kInPlace;

/// A private working copy of one record: load it, look at the bytes or change them, write them back with `update`, drop
/// it. It sees no change that reaches the store by another way (but see `kInPlace`), and of two copies of one record
/// the last one written wins. Offsets inside a record are in bytes; fields are unaligned and in host byte order.
///
/// Bytes that were loaded are measured before they are followed: a field that the record is too short for reads as
/// absent. It belongs to one thread, inside the store's guard. Exceptions of the store pass through.
class Base {
public:
    static constexpr unsigned int BADOFF = IDataStore::BADOFF;

    /// Prepares a record of `size` bytes, all zero but for the kind. The store does not know it before `update`.
    /// Throws `std::bad_alloc` when `size` does not fit in 32 bits.
    Base(IDataStore* store, std::uint64_t size, tType type);

    /// Loads a record; an offset that names no record gives an empty one.
    Base(IDataStore* store, unsigned int offset);

    /// The same, read where it lies.
    Base(IDataStore* store, unsigned int offset, tInPlace);

    virtual ~Base() {
        if (_buffer && _buffer != _inside) release();
    }
    Base(const Base&) = delete;
    Base& operator=(const Base&) = delete;

    IDataStore* store() const { return _store; }

    /// Where the record lies; `BADOFF` before the first `update` of a new one.
    unsigned int offset() const { return _offset; }

    /// The bytes in use, and the bytes that a buffer for them has.
    unsigned int size() const { return _size; }
    unsigned int capacity() const { return _buffer ? _capacity : allocator(_size); }

    /// The working bytes, `size()` of them; null for an empty record.
    const char* bytes() const { return _bytes; }

    /// The kind byte; `kRoot` for an empty record.
    tType type() const { return static_cast<tType>(byte(0)); }

    /// Calls `visit(const tSection&)` for each section of a form, in order; not at all where the record is too short
    /// for the fixed part.
    template <class Visit>
    void eachSection(const tSections& form, Visit visit) const;

    /// Writes the working bytes as a new record into a store, which may be any, and returns its offset. This object
    /// goes on standing for its own record.
    unsigned int clone(IDataStore* target) const;

    /// Writes the working bytes to the store: as a new record the first time, in place afterwards. `changed` is what
    /// `IDataStore::update` takes; a new record touches nothing but itself, whatever is said.
    void update(bool changed, tTouches touches = tTouches::kChildren);

    /// Adds `count` bytes at the end: zero, unless a section was replaced before. False, and nothing done, when the
    /// record would outgrow 32 bits.
    bool grow(unsigned int count);

    /// Cuts out `count` bytes at `position`, both inside the record, and zeroes as many that fall free behind the end.
    void shrink(unsigned int position, unsigned int count);

protected:
    /// The byte or the 32-bit field at `position`, or `absent` where the record is too short for it.
    unsigned char byte(unsigned int position, unsigned char absent = 0) const;
    unsigned int word(unsigned int position, unsigned int absent = 0) const;

    /// Sets a field; does nothing where the record is too short for it.
    void putByte(unsigned int position, unsigned char value);
    void putWord(unsigned int position, unsigned int value);

    /// Room for so many bytes, beside those of this buffer; `adopt` takes it, and nothing else may become of it. Room
    /// for a few lies inside this object: most records are small, and most objects gone soon.
    char* room(unsigned int capacity);

    /// Puts another buffer, which is from `room`, in the place of this one, which is freed.
    void adopt(char* buffer, unsigned int size, unsigned int capacity);

    /// The working bytes, to be changed.
    char* buffer();

    /// Writes a 32-bit field, in the store and in the working bytes; nothing else of the working bytes is written.
    /// False, with nothing done, where the record is too short for it.
    bool writeWord(unsigned int position, unsigned int value, bool changed, tTouches touches);

    /// The same for a byte.
    bool writeByte(unsigned int position, unsigned char value, bool changed, tTouches touches);

    /// The same for any bytes of the record.
    bool write(std::uint64_t position, const char* data, std::uint64_t size, bool changed, tTouches touches);

private:
    static constexpr unsigned int kInside = 128;

    /// For constructors, and for the destructor.
    void load();
    void release();

    char* zeroed(unsigned int capacity);

    IDataStore* _store;
    unsigned int _offset;
    const char* _bytes = nullptr;
    char* _buffer = nullptr;  ///< null while the bytes are those of the store
    unsigned int _size = 0;
    unsigned int _capacity = 0;
    char _inside[kInside];  // NOLINT(modernize-avoid-c-arrays): raw memory
};

inline Base::Base(IDataStore* store, unsigned int offset, tInPlace) : _store(store), _offset(offset) {
    if (offset == BADOFF) return;
    if (auto* access = store->access()) {
        const auto view = access->view(offset);
        _bytes = view.data;
        _size = view.size;
    } else {
        load();
    }
}

inline unsigned char Base::byte(unsigned int position, unsigned char absent) const {
    return position < _size ? static_cast<unsigned char>(_bytes[position]) : absent;
}

inline unsigned int Base::word(unsigned int position, unsigned int absent) const {
    if (std::uint64_t{position} + sizeof(unsigned int) > _size) return absent;
    unsigned int value;
    std::memcpy(&value, _bytes + position, sizeof(value));
    return value;
}

template <class Visit>
void Base::eachSection(const tSections& form, Visit visit) const {
    if (_size < form.header) return;
    std::uint64_t begin = form.header;
    for (const unsigned int field : form.lengths) {
        const unsigned int claimed = word(field);
        const auto there = static_cast<std::size_t>(std::min<std::uint64_t>(claimed, _size - begin));
        visit(tSection{field, claimed, {_bytes + begin, there}});
        begin += there;
    }
}

}  // namespace lumivard::platform::data::Record
