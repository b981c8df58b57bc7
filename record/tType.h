#pragma once

namespace lumivard::platform::data::Record {

/// The kind of a record, held in its first byte.
enum tType : unsigned char {
    kRoot = 0,       ///< the top of a store; see `Root`
    kPrimitive = 1,  ///< a named array of values; see `Primitive`
    kTable = 2,      ///< a set of primitives and tables; see `Table`
    kOffsets = 3,    ///< a list of offsets; see `Offsets`
    kContainer = 4,  ///< a node, group or link; see `Container`
    kLocale = 5,     ///< the localized names of an entity; see `Locale`
};

/// Whether a record of a kind can be the child of another.
constexpr bool isChild(tType kind) {
    return kind == kPrimitive || kind == kTable || kind == kContainer;
}

/// The bits of an entity's flags byte.
enum tFlag : unsigned char {
    kOptional = 0x01,   ///< the item is optional; nothing below the public interfaces acts on it
    kInherited = 0x02,  ///< came from a schema: cannot be removed or renamed
    kHidden = 0x04,     ///< still the untouched default of a schema: not written to documents
    kExternal = 0x08,   ///< a primitive's value section holds a URI instead of values
};

}  // namespace lumivard::platform::data::Record
