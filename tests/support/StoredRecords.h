#pragma once

#include <cstring>
#include <string>
#include <vector>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"
#include "tests/support/Offsets.h"

/// Records as they lie in a store, for tests that look behind the public interfaces or put there what these would not.
/// The positions are those of the stored format, written down a second time on purpose.
namespace lumivard::platform::test_support::stored {

using core::storage::datastore::IDataStore;

using test_support::BADOFF;

// Positions of fields: of every entity, and of a container.
inline constexpr unsigned int kParent = 1;
inline constexpr unsigned int kRefs = 5;
inline constexpr unsigned int kLocale = 9;
inline constexpr unsigned int kFlags = 13;
inline constexpr unsigned int kChildren = 14;
inline constexpr unsigned int kContainerType = 18;

/// All bytes of a record; none for an offset that names no record.
inline std::string bytes(IDataStore* store, unsigned int offset) {
    if (offset == BADOFF) return {};
    std::string all(store->size(offset), '\0');
    store->read(offset, all.data(), 0xFFFFFFFFu);
    return all;
}

/// The bytes of all records of a store whose offsets are dense, by offset.
inline std::vector<std::string> contents(IDataStore& store) {
    std::vector<std::string> all;
    for (unsigned int offset = 0; offset < store.extent(); ++offset) all.push_back(bytes(&store, offset));
    return all;
}

/// The 32-bit field of a record at a position; `BADOFF` where the record ends before.
inline unsigned int word(IDataStore* store, unsigned int offset, unsigned int position) {
    const std::string all = bytes(store, offset);
    unsigned int value = BADOFF;
    if (position + sizeof(value) <= all.size()) std::memcpy(&value, all.data() + position, sizeof(value));
    return value;
}

/// The byte of a record at a position, which is there.
inline unsigned char byte(IDataStore* store, unsigned int offset, unsigned int position) {
    return static_cast<unsigned char>(bytes(store, offset).at(position));
}

inline void putWord(IDataStore* store, unsigned int offset, unsigned int position, unsigned int value) {
    std::string all = bytes(store, offset);
    all.replace(position, sizeof(value), reinterpret_cast<const char*>(&value), sizeof(value));
    store->update(offset, all.data(), static_cast<unsigned int>(all.size()), true);
}

inline void putByte(IDataStore* store, unsigned int offset, unsigned int position, unsigned char value) {
    std::string all = bytes(store, offset);
    all.at(position) = static_cast<char>(value);
    store->update(offset, all.data(), static_cast<unsigned int>(all.size()), true);
}

/// Makes the records at some offsets of a store, all that it has handed out, anew in another one that hands out the
/// same.
inline void copy(IDataStore* from, const std::vector<unsigned int>& offsets, IDataStore* to) {
    for (const unsigned int offset : offsets) {
        const std::string record = bytes(from, offset);
        const unsigned int made = to->create(record.data(), static_cast<unsigned int>(record.size()));
        if (record.empty()) to->erase(made);
    }
    to->version(from->version());
}

/// How many live objects a record says stand over it.
inline unsigned int refs(IDataStore* store, unsigned int offset) {
    return word(store, offset, kRefs);
}

/// A new empty list of offsets: a record that is no item, wherever it is listed.
inline unsigned int makeList(IDataStore* store) {
    constexpr char kEmpty[] = {3, 0, 0, 0};
    return store->create(kEmpty, sizeof(kEmpty));
}

/// The list of children of a root, table or container, entry by entry; empty when it has none.
inline std::vector<unsigned int> children(IDataStore* store, unsigned int owner) {
    const std::string list = bytes(store, word(store, owner, kChildren));
    std::vector<unsigned int> entries(list.size() < 4 ? 0 : (list.size() - 4) / 4);
    if (!entries.empty()) std::memcpy(entries.data(), list.data() + 4, entries.size() * 4);
    return entries;
}

/// Adds an offset to a list of children, whatever it names, and nothing else: the record does not learn of its owner.
inline void enlist(IDataStore* store, unsigned int owner, unsigned int offset) {
    if (word(store, owner, kChildren) == BADOFF) putWord(store, owner, kChildren, makeList(store));
    store->append(word(store, owner, kChildren), &offset, sizeof(offset));
}

/// Makes a listed child the child of another owner: it leaves the one list and ends the other.
inline void move(IDataStore* store, unsigned int child, unsigned int from, unsigned int to) {
    const unsigned int list = word(store, from, kChildren);
    std::string entries = bytes(store, list).substr(0, 4);
    for (const unsigned int entry : children(store, from)) {
        if (entry != child) entries.append(reinterpret_cast<const char*>(&entry), sizeof(entry));
    }
    store->update(list, entries.data(), static_cast<unsigned int>(entries.size()), true);
    putWord(store, child, kParent, to);
    enlist(store, to, child);
}

}  // namespace lumivard::platform::test_support::stored
