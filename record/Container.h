#pragma once

#include "record/Entity.h"

namespace lumivard::platform::data::Record {

/// The record of a node, group or link.
///
///     0                  14          18     19        23        27        31  32
///     +------------------+-----------+------+---------+---------+---------+---+------+------+------+
///     |  entity header   | children  | kind | length  | length  | length  | 0 | name | base | info |
///     +------------------+-----------+------+---------+---------+---------+---+------+------+------+
///                            u32       u8      u32       u32       u32     u8   sections, wide text
///
/// `kind`: an `IContainer::tType`. `base`: the schemas that the container inherits from, joined by ";". `info`: a
/// link's target. A section is absent when its length is 0.
class Container : public Entity {
public:
    static constexpr unsigned int kKind = kChildren + 4;
    static constexpr unsigned int kName = kKind + 1;
    static constexpr unsigned int kBase = kName + 4;
    static constexpr unsigned int kInfo = kBase + 4;
    static constexpr unsigned int kFixed = kInfo + 4 + 1;
    static_assert(kKind == 18 && kName == 19 && kBase == 23 && kInfo == 27 && kFixed == 32);

    /// The form of the record.
    static constexpr unsigned int kLengths[] = {kName, kBase, kInfo};
    static constexpr tRange kZeros[] = {{kInfo + 4, kFixed}};
    static constexpr tSections kSections{kFixed, kLengths, kZeros};

    /// Makes a new record and writes it to the store.
    Container(IDataStore* store, const wchar_t* name);
    Container(IDataStore* store, unsigned int offset) : Entity(store, offset) {}
    Container(IDataStore* store, unsigned int offset, tInPlace place) : Entity(store, offset, place) {}

    unsigned char kind() const { return byte(kKind); }
    void kind(unsigned char value) { putByte(kKind, value); }
    void writeKind(unsigned char value) { writeByte(kKind, value, true, tTouches::kItself); }

    /// A section by the position of its length field (`kName`, `kBase`, `kInfo`; any other number is the first one):
    /// its first byte, good until the object changes; its bytes in all; its text up to the terminator.
    const char* arrays(unsigned int section) const { return Entity::section(kSections, section).data(); }
    std::span<const char> section(unsigned int field) const { return Entity::section(kSections, field); }
    std::wstring text(unsigned int field) const { return sectionText(kSections, field); }

    /// Replaces a section and writes the record; a null `data` stands for zeros. False, with nothing done, when the
    /// record would outgrow 32 bits.
    bool arrays(unsigned int section, const char* data, std::uint64_t length) {
        return replaceSection(kSections, section, data, length,
                              section == kName ? tTouches::kChildren : tTouches::kItself);
    }
};

}  // namespace lumivard::platform::data::Record
