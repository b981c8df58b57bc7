#pragma once

#include "record/Entity.h"

namespace lumivard::platform::data::Record {

/// The record at the top of a store, which has no parent. Its name is given once and never changes.
///
///     0                  14              18              22      24
///     +------------------+---------------+---------------+-------+--------------+
///     |  entity header   |   children    |  name length  |   0   | name         |
///     +------------------+---------------+---------------+-------+--------------+
///                              u32             u32          u16    wide, ended by a zero
class Root : public Entity {
public:
    static constexpr unsigned int kNameLength = kChildren + 4;
    static constexpr unsigned int kName = kNameLength + 4 + 2;
    static_assert(kNameLength == 18 && kName == 24);

    /// The form of the record.
    static constexpr unsigned int kLengths[] = {kNameLength};
    static constexpr tRange kZeros[] = {{kNameLength + 4, kName}};
    static constexpr tSections kSections{kName, kLengths, kZeros};

    /// Makes a new record and writes it to the store.
    Root(IDataStore* store, const wchar_t* name);
    Root(IDataStore* store, unsigned int offset) : Entity(store, offset) {}
    Root(IDataStore* store, unsigned int offset, tInPlace place) : Entity(store, offset, place) {}

    /// The first byte of the name; the argument is not used. Null for a record that has no room for one.
    const char* arrays(unsigned int) const { return size() > kName ? bytes() + kName : nullptr; }
};

}  // namespace lumivard::platform::data::Record
