#pragma once

#include "record/Property.h"

namespace lumivard::platform::data::Record {

/// The record of a primitive.
///
///     0                  14       18       22        26       30       34       38       42   44
///     +------------------+--------+--------+---------+--------+--------+--------+--------+----+
///     |  entity header   |   0    | units  |  kind   | length | length | length | length | 0  | sections
///     +------------------+--------+--------+---------+--------+--------+--------+--------+----+
///                           u32      u32       u32      u32      u32      u32      u32    u16
///
/// The sections, in order: the locale of the value, the name, the base (a struct's type), all wide text; then the value
/// bytes, or a URI as wide text where `kExternal` is set. `units`: a `units::tUnit`. `kind`: a `metadata::tValue`.
class Primitive : public Property {
public:
    static constexpr unsigned int kReserved = kHeader;
    static constexpr unsigned int kUnits = kReserved + 4;
    static constexpr unsigned int kValueType = kUnits + 4;
    static constexpr unsigned int kValueLocale = kValueType + 4;
    static constexpr unsigned int kName = kValueLocale + 4;
    static constexpr unsigned int kBase = kName + 4;
    static constexpr unsigned int kValue = kBase + 4;
    static constexpr unsigned int kFixed = kValue + 4 + 2;
    static_assert(kUnits == 18 && kValueType == 22 && kValueLocale == 26 && kName == 30 && kBase == 34 &&
                  kValue == 38 && kFixed == 44);

    /// The form of the record.
    static constexpr unsigned int kLengths[] = {kValueLocale, kName, kBase, kValue};
    static constexpr tRange kZeros[] = {{kReserved, kUnits}, {kValue + 4, kFixed}};
    static constexpr tSections kSections{kFixed, kLengths, kZeros};

    /// Makes a new record and writes it to the store.
    Primitive(IDataStore* store, unsigned int valuetype, const wchar_t* name);
    Primitive(IDataStore* store, unsigned int offset) : Property(store, offset) {}
    Primitive(IDataStore* store, unsigned int offset, tInPlace place) : Property(store, offset, place) {}

    unsigned int units() const { return word(kUnits); }
    void units(unsigned int unit) { putWord(kUnits, unit); }
    unsigned int valuetype() const { return word(kValueType); }

    /// Sections, as in `Container`, by `kValueLocale`, `kName`, `kBase` and `kValue`.
    const char* arrays(unsigned int section) const { return Entity::section(kSections, section).data(); }
    std::span<const char> section(unsigned int field) const { return Entity::section(kSections, field); }
    std::wstring text(unsigned int field) const { return sectionText(kSections, field); }
    bool arrays(unsigned int section, const char* data, std::uint64_t length) {
        return replaceSection(kSections, section, data, length,
                              section == kName ? tTouches::kChildren : tTouches::kItself);
    }

    /// All sections at once, for who needs several.
    struct tParts {
        std::span<const char> valueLocale;
        std::span<const char> name;
        std::span<const char> base;
        std::span<const char> value;
    };
    tParts parts() const;

    /// The value section.
    std::span<const char> value() const;

    /// Overwrites `length` bytes of the value section from byte `start`, at once. False, and nothing done, when they do
    /// not lie inside it.
    bool writeValue(std::uint64_t start, const char* data, std::uint64_t length);

    /// Sets the unit at once; nothing for a record that is too short.
    void writeUnits(unsigned int unit) { writeWord(kUnits, unit, true, tTouches::kItself); }
};

}  // namespace lumivard::platform::data::Record
