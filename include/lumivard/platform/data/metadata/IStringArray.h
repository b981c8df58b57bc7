#pragma once

#include "lumivard/platform/core/Export.h"
#include "lumivard/platform/data/Names.h"

namespace lumivard::platform::data::metadata {

class IPrimitive;

/// A list of texts, and its packed form as the value of a text primitive: the characters of each text, followed by a
/// zero, one text after the other. A list of its own, with no link to any primitive.
///
/// Only the library implements it. Threads: one at a time.
class LVP_EXPORT IStringArray {
public:
    virtual ~IStringArray() = default;

    /// The number of texts, empty ones included.
    virtual unsigned int strings() const = 0;

    /// The text at `index`, from 0; empty when nothing is there.
    virtual WideString get(unsigned int index) const = 0;

    /// Appends a text to the list.
    virtual void add(WideString text) = 0;

    /// Stores the list in a primitive, from its first element on. An empty list empties it. Another list is written by
    /// `IPrimitive::set`, which does not shrink a value: over a longer one its tail stays behind the list, so
    /// `reset(0)` comes first where a list is replaced.
    ///
    /// False, with nothing changed, for null and for a kind that is no text (`kUUID` to `kVersion`). True otherwise,
    /// also when the primitive has a URI, or no room, and so takes nothing.
    virtual bool write(IPrimitive* primitive) = 0;

    /// Takes a packed value apart: `length` wide characters at `packed`, terminators included, which are copied.
    /// Characters behind the last zero are dropped; a `length` of 0 gives an empty list, whatever `packed` is. The
    /// caller owns the result and deletes it.
    static IStringArray* to(const wchar_t* packed, unsigned int length);
};

}  // namespace lumivard::platform::data::metadata
