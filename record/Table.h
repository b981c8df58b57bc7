#pragma once

#include "record/Property.h"

namespace lumivard::platform::data::Record {

/// The record of a table.
///
///     0                  14          18          22          26        30        34   36
///     +------------------+-----------+-----------+-----------+---------+---------+----+------+------+
///     |  entity header   | children  |     0     | defaults  | length  | length  | 0  | name | base |
///     +------------------+-----------+-----------+-----------+---------+---------+----+------+------+
///                            u32         u32         u32         u32       u32    u16   sections, wide text
///
/// `defaults`: an `Offsets` record used as pairs of a unit and a value kind, or `BADOFF`. `base`: as in a container.
class Table : public Property {
public:
    static constexpr unsigned int kReserved = kChildren + 4;
    static constexpr unsigned int kDefaults = kReserved + 4;
    static constexpr unsigned int kName = kDefaults + 4;
    static constexpr unsigned int kBase = kName + 4;
    static constexpr unsigned int kFixed = kBase + 4 + 2;
    static_assert(kDefaults == 22 && kName == 26 && kBase == 30 && kFixed == 36);

    /// The form of the record.
    static constexpr unsigned int kLengths[] = {kName, kBase};
    static constexpr tRange kZeros[] = {{kReserved, kDefaults}, {kBase + 4, kFixed}};
    static constexpr tSections kSections{kFixed, kLengths, kZeros};

    /// Makes a new record and writes it to the store.
    Table(IDataStore* store, const wchar_t* name);
    Table(IDataStore* store, unsigned int offset) : Property(store, offset) {}
    Table(IDataStore* store, unsigned int offset, tInPlace place) : Property(store, offset, place) {}

    unsigned int defaults() const { return word(kDefaults, BADOFF); }
    void defaults(unsigned int offset) { putWord(kDefaults, offset); }
    void writeDefaults(unsigned int offset) { writeWord(kDefaults, offset, true, tTouches::kItself); }

    /// Sections, as in `Container`, by `kName` and `kBase`.
    const char* arrays(unsigned int section) const { return Entity::section(kSections, section).data(); }
    std::span<const char> section(unsigned int field) const { return Entity::section(kSections, field); }
    std::wstring text(unsigned int field) const { return sectionText(kSections, field); }
    bool arrays(unsigned int section, const char* data, std::uint64_t length) {
        return replaceSection(kSections, section, data, length,
                              section == kName ? tTouches::kChildren : tTouches::kItself);
    }
};

}  // namespace lumivard::platform::data::Record
