#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "lumivard/platform/data/metadata/IStructLayout.h"

namespace lumivard::platform::data {

/// A struct value is a run of blocks without gaps, and its text a list of tokens: the elements of each field of each
/// block. This walks over the places of the elements in a run of blocks, in the order of the tokens.
///
/// A layout comes from outside, so nothing is taken for granted: neither that its sums fit together nor that a field is
/// there at all.
class StructPlaces {
public:
    explicit StructPlaces(metadata::IStructLayout& layout) {
        const unsigned int fields = layout.fields();
        for (unsigned int i = 0; i < fields; ++i) {
            const metadata::IStructLayout::tField* field = layout.get(i);
            if (!field) continue;
            // A field without elements, or whose elements have no bytes, takes none of the text.
            if (field->dim == 0 || field->size < field->dim) {
                _block += field->size;
                continue;
            }
            _fields.push_back({field->type, field->dim, field->size / field->dim, _block});
            _block += std::uint64_t{field->dim} * (field->size / field->dim);
        }
    }

    /// Goes to the next place; false when no field has any.
    bool next() {
        if (_fields.empty()) return false;
        if (!_begun) {
            _begun = true;
        } else if (++_element == _fields[_field].dim) {
            _element = 0;
            if (++_field == _fields.size()) {
                _field = 0;
                _start += _block;
            }
        }
        return true;
    }

    /// The kind of the element at this place, and where it begins, in bytes from the start of the run. Once `next` gave
    /// true.
    metadata::tValue kind() const { return _fields[_field].kind; }
    std::uint64_t position() const {
        return _start + _fields[_field].offset + std::uint64_t{_element} * _fields[_field].size;
    }

private:
    /// A field with elements: of a kind, so many, each of a size, from an offset in the block on.
    struct tField {
        metadata::tValue kind;
        unsigned int dim;
        unsigned int size;
        std::uint64_t offset;
    };

    std::vector<tField> _fields;
    std::uint64_t _block = 0;  ///< the bytes of all fields
    std::uint64_t _start = 0;  ///< of the block
    std::size_t _field = 0;
    unsigned int _element = 0;
    bool _begun = false;
};

}  // namespace lumivard::platform::data
