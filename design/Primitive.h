#pragma once

#include <cstdint>
#include <string>

#include "lumivard/platform/data/metadata/tValue.h"
#include "lumivard/platform/data/units/tUnit.h"
#include "metadata/Item.h"

namespace lumivard::platform::data::Record {
class Primitive;
}

namespace lumivard::platform::data::Design {

using core::storage::datastore::IDataStore;

/// One named array of typed values over a primitive record, with units and a locale for the value; or a URI that points
/// at values elsewhere. Counts and positions are in elements of the kind's stride.
class Primitive final : public Metadata::Item {
public:
    /// Opens a record; the second form takes one that is at hand.
    Primitive(IDataStore* store, unsigned int offset);
    Primitive(IDataStore* store, Record::Primitive& record);

    /// Makes a new record. The kind is not tested: one that does not exist can be made, and holds nothing for ever.
    Primitive(IDataStore* store, metadata::tValue type, const wchar_t* name);

    ~Primitive() override;

    bool unreferenced() override;
    /// The values stay in the record.
    void clear() override;
    unsigned int clone(IDataStore* target) override;

    /// Whether name and value kind are equal; values are not compared.
    bool equivalent(const Primitive& other) const {
        return _tag.view() == other._tag.view() && _valuetype == other._valuetype;
    }

    /// The name of a struct's type; null when there is none. Setting it is refused for any other kind; null removes it.
    const wchar_t* base() const { return _base.empty() ? nullptr : _base.c_str(); }
    bool base(const wchar_t* name);

    /// The URI that stands in place of values; null when there is none. URI and values share one place: setting either
    /// form, null included, loses what was there.
    const wchar_t* uri() const { return _external ? _uri.c_str() : nullptr; }
    bool uri(const wchar_t* uri);

    /// The unit, in the store.
    units::tUnit units() const;
    void units(units::tUnit unit);

    metadata::tValue valuetype() const { return _valuetype; }

    /// The bytes of the value section.
    unsigned int valuesize() const { return _valuesize; }

    static unsigned int stride(metadata::tValue kind);

    /// The number of elements; 0 with a URI, and for a kind that does not exist.
    unsigned int dimension() const;

    /// The locale that the value is meant for; null when there is none, and to remove it.
    const wchar_t* valuelocale() const { return _valuelocale.empty() ? nullptr : _valuelocale.c_str(); }
    void valuelocale(const wchar_t* locale);

    /// Makes the array `count` zero elements. False, with nothing changed, with a URI and where the record would
    /// outgrow 32 bits.
    bool reset(unsigned int count);

    /// Writes `count` elements from `data` at `start`. The array grows as needed, never shrinks, and gets zeros in a
    /// gap. Into an empty array at a `start` above 0 the elements are taken from `data` at `start` too: the block that
    /// is handed in then holds `start + count` elements. False, with nothing changed, for no elements, with a URI, for
    /// a kind that does not exist, and where the record would outgrow 32 bits.
    bool set(const char* data, unsigned int start, unsigned int count);

    /// Copies `count` elements from `start` into `buffer` and returns `count`; 0, with nothing copied, when not all of
    /// them are there.
    unsigned int get(char* buffer, unsigned int start, unsigned int count) const;

private:
    /// For constructors.
    void open(IDataStore* store, Record::Primitive& record);

    /// Replaces the whole value section; a null `data` stands for zeros.
    bool put(Record::Primitive& record, const char* data, std::uint64_t length);

    /// Replaces the value section by one of `start + length` bytes: the present bytes, zeros, and `data` at `start`.
    bool put(Record::Primitive& record, std::uint64_t start, const char* data, std::uint64_t length);

    bool _external = false;
    std::wstring _base;
    std::wstring _uri;
    metadata::tValue _valuetype{};
    unsigned int _valuesize = 0;
    std::wstring _valuelocale;
};

}  // namespace lumivard::platform::data::Design
