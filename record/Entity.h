#pragma once

#include <cstddef>
#include <cwchar>
#include <span>
#include <string_view>

#include "record/Base.h"

namespace lumivard::platform::data::Record {

/// The size in bytes of a text's section: its characters and the terminator, 4 bytes each.
inline std::uint64_t textSection(const wchar_t* text) {
    return (std::uint64_t{std::wcslen(text)} + 1) * sizeof(wchar_t);
}

/// The bytes of a wide text, without a terminator: the form in which names are compared where they lie, which may be at
/// any address.
inline std::string_view bytesOf(std::wstring_view text) {
    return {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t)};
}

/// The bytes of a section up to its terminator, or all whole characters where there is none.
std::string_view textOf(std::span<const char> section);

/// Whether these are the bytes of a primitive, table or container of that name, which is as `Entity::nameBytes` would
/// show it: for who looks for one among many. The name has no zero in it, nor parts of a character at its end.
bool isChildCalled(std::span<const char> record, std::string_view name);

/// The same as a text.
std::wstring wide(std::span<const char> section);

/// A record of one of the four kinds that stand in the tree: root, primitive, table, container. All begin alike:
///
///     0       1               5               9              13      14
///     +-------+---------------+---------------+---------------+-------+
///     | type  |    parent     |     refs      |    locale     | flags |  the kind's own fields
///     +-------+---------------+---------------+---------------+-------+
///       u8          u32             u32             u32          u8
///
/// `parent`: the owning entity, or `BADOFF`. `refs`: how many in-memory objects stand over the record now. `locale`:
/// the `Locale` record with the localized names, or `BADOFF`. `flags`: see `tFlag`.
///
/// Opened by offset it does not look at the kind: it is the way to what all entities share.
class Entity : public Base {
public:
    static constexpr unsigned int kParent = 1;
    static constexpr unsigned int kRefs = kParent + 4;
    static constexpr unsigned int kLocale = kRefs + 4;
    static constexpr unsigned int kFlags = kLocale + 4;
    static constexpr unsigned int kHeader = kFlags + 1;
    static_assert(kHeader == 14);

    /// The field behind the header that a root, a table and a container use for their list of children.
    static constexpr unsigned int kChildren = kHeader;

    Entity(IDataStore* store, unsigned int offset) : Base(store, offset) {}
    Entity(IDataStore* store, unsigned int offset, tInPlace place) : Base(store, offset, place) {}

    /// False for what is too short to be an entity: an erased record, say.
    bool whole() const { return size() >= kHeader; }

    unsigned int parent() const { return word(kParent, BADOFF); }
    void parent(unsigned int offset) { putWord(kParent, offset); }
    unsigned int refs() const { return word(kRefs); }
    void refs(unsigned int count) { putWord(kRefs, count); }
    unsigned int locale() const { return word(kLocale, BADOFF); }
    void locale(unsigned int offset) { putWord(kLocale, offset); }
    unsigned char flags() const { return byte(kFlags); }
    void flags(unsigned char bits) { putByte(kFlags, bits); }

    /// The list of children of a root, table or container; `BADOFF` when there is none, and for a primitive.
    unsigned int children() const;
    void children(unsigned int offset) { putWord(kChildren, offset); }

    /// The name, by the record's kind; empty for what is no entity.
    std::wstring name() const;

    /// The bytes of the name where they lie, good until the record changes.
    std::string_view nameBytes() const;

    /// Replaces the bytes of the name's section and writes the record. False, with nothing done, for a record that is
    /// no primitive, table or container, and where it would outgrow 32 bits.
    bool name(const char* section, std::uint64_t length, tTouches touches = tTouches::kChildren);

    /// Fields that are written at once, as content: a few bytes where the store can do that. Nothing for a record that
    /// is too short.
    void writeParent(unsigned int offset, tTouches touches) { writeWord(kParent, offset, true, touches); }
    void writeLocale(unsigned int offset) { writeWord(kLocale, offset, true, tTouches::kItself); }
    void writeFlags(unsigned char bits) { writeByte(kFlags, bits, true, tTouches::kItself); }
    void writeChildren(unsigned int offset) { writeWord(kChildren, offset, true, tTouches::kItself); }

    /// Counts one more, or one less, object over the record, and writes it as bookkeeping. Nothing for a record that is
    /// no longer there.
    void ref();
    void unref();

protected:
    Entity(IDataStore* store, std::uint64_t size, tType type);

    /// The bytes of the name's section, by the record's kind.
    std::span<const char> nameSection() const;

    /// The bytes of a section whose beginning is known, as far as they are there.
    std::span<const char> section(std::size_t begin, unsigned int field) const;

    /// The bytes of a section inside the record; those of the first section for a number that names none.
    std::span<const char> section(const tSections& sections, unsigned int field) const;
    std::wstring sectionText(const tSections& sections, unsigned int field) const;

    /// Replaces a section and writes the record. A null `data` stands for zeros. False, with nothing done, when the
    /// record would outgrow 32 bits or is too short for its kind, and for a number that names no section.
    bool replaceSection(const tSections& sections, unsigned int field, const char* data, std::uint64_t length,
                        tTouches touches = tTouches::kItself);

    /// Fills a fresh record's name section, the only one that a new record has.
    void putName(const tSections& sections, unsigned int field, const wchar_t* name);
};

}  // namespace lumivard::platform::data::Record
