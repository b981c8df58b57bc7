#pragma once

#include "lumivard/platform/core/Export.h"
#include "lumivard/platform/data/Names.h"
#include "lumivard/platform/data/metadata/tValue.h"
#include "lumivard/platform/data/units/tUnit.h"

namespace lumivard::platform::data::metadata {

class IProperty;

/// One named array of values of one kind, with a unit; or, in place of values, a URI that tells where they are. The
/// library never follows the URI, and converts neither kinds nor units.
///
/// Counts and positions are in elements of `stride()` bytes; see `tValue` for what an element is.
///
/// An object keeps the length of the value as it was when it was opened, and follows only its own changes. Once another
/// object has changed the length or the URI, open the property anew before reading or writing here: ranges are judged
/// by the length that this object knows.
///
/// Only the library implements it. Threads: one at a time for each object; every operation holds the guard unless it
/// says otherwise.
class LVP_EXPORT IPrimitive {
public:
    virtual ~IPrimitive() = default;

    /// The same object as a property: valid as long as a `SharedPtr` holds either. Takes no guard.
    virtual IProperty* container() const = 0;

    /// The number of elements; 0 for a new primitive and for one that has a URI.
    virtual unsigned int dimension() = 0;

    /// The size of one element in bytes: 1, 2, 4 or 8, by the kind; 0 for a number that is no kind.
    virtual unsigned int stride() const = 0;

    /// The size of the whole value in bytes. With a URI, the size of its characters and their terminator, 4 bytes each.
    virtual unsigned int bytes() = 0;

    /// The kind of the values, as it was given when the primitive was made; in a damaged store any number.
    virtual tValue valuetype() = 0;

    /// The unit of the values, as it stands in the store; `kNoUnit` without one. It is given when the primitive is
    /// made.
    virtual units::tUnit units() = 0;

    /// The URI of the schema, or the URIs joined by ";", that lays a struct out; empty for another kind or without one.
    virtual WideString schema() const = 0;

    /// The URI that stands in place of the values; empty when there are values.
    virtual WideString uri() const = 0;

    /// Sets the schema of a struct; no characters clear it. Neither resolves it nor touches the value. False, with
    /// nothing changed, for a kind other than `kStruct`.
    virtual bool schema(WideString uri) = 0;

    /// Puts a URI in the place of the values, or without characters an empty array in the place of the URI. What stood
    /// there before is lost in both cases. Gives true, unless the record would reach 2^32 bytes.
    virtual bool uri(WideString uri) = 0;

    /// The locale in which the value itself is written, such as "en-us"; empty without one. It has nothing to do with
    /// the texts of `IProperty::describe`.
    virtual WideString valuelocale() = 0;

    /// Sets the locale of the value; no characters clear it.
    virtual void valuelocale(WideString locale) = 0;

    /// Copies `count` elements, `count * stride()` bytes at `data`, over those from `start` on. An array that ends
    /// before `start + count` grows to that number, with zeros in a gap; none shrinks. A property that was hidden is
    /// shown, and so are the hidden tables and containers around it, up to the first that is not.
    ///
    /// Into an array without elements at a `start` above 0, the elements are taken from `start` in `data` too: `data`
    /// then holds `start + count` elements, of which the first `start` are not looked at.
    ///
    /// False, with nothing changed, when `count` is 0, when the primitive has a URI, when its kind is none, or when the
    /// record (value, texts and some 50 bytes) would reach 2^32 bytes. Costs what is set where the array does not grow
    /// and the store shows its records in place, and a rewrite of the whole value otherwise.
    virtual bool set(const void* data, unsigned int start, unsigned int count) = 0;

    /// Makes the value `count` elements of zero; the old ones are lost. Shows nothing that is hidden. False, with
    /// nothing changed, when the primitive has a URI or the record would reach 2^32 bytes. A kind that is none has no
    /// elements, whatever `count` is.
    virtual bool reset(unsigned int count) = 0;

    /// Copies `count` elements from `start` on to `data`, which has room for `count * stride()` bytes. All of them or
    /// none: false, with `data` untouched, when `count` is 0 (then without taking the guard), when the array ends
    /// before `start + count`, or when the primitive has a URI. Costs what is read, or a read of the whole value from a
    /// store that gives out whole records only.
    virtual bool get(void* data, unsigned int start, unsigned int count) = 0;

    /// The primitive behind a property: the same object, with no change of ownership. Null for null and for a table.
    static IPrimitive* to(IProperty* property);
};

}  // namespace lumivard::platform::data::metadata
