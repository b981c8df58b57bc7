#include <cstdint>
#include <cwchar>
#include <limits>
#include <vector>

#include "design/Stride.h"
#include "lumivard/platform/core/string/StringAlgorithm.h"
#include "lumivard/platform/data/metadata/ISchema.h"
#include "lumivard/platform/data/metadata/ISchemaLocator.h"
#include "lumivard/platform/data/metadata/IStructLayout.h"
#include "xml/Scalar.h"
#include "xml/Tokens.h"
#include "xml/XMLPrimitive.h"

// A struct value is a run of blocks without gaps. Its text is a list of tokens: the elements of each field of each
// block.

namespace lumivard::platform::data {

using core::string::StringAlgorithm;
using core::xml::XMLSerializer;
using Design::Primitive;
using metadata::IStructLayout;

namespace {

/// Holds the place of an element that is no number, and that no text can set.
constexpr const wchar_t* kNoNumber = L"-";

constexpr std::uint64_t kLargest = std::numeric_limits<unsigned int>::max();

/// Walks over the places of the elements in a run of blocks, in their order. A layout comes from outside, so nothing is
/// taken for granted: neither that its sums fit together nor that a field is there at all.
class Places {
public:
    explicit Places(IStructLayout& layout) {
        const unsigned int fields = layout.fields();
        for (unsigned int i = 0; i < fields; ++i) {
            const IStructLayout::tField* field = layout.get(i);
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

}  // namespace

void XMLPrimitive::openStruct(Primitive& primitive, const char* schema, unsigned int count) {
    const std::wstring uri = StringAlgorithm::UTF8Decode(schema);
    const SharedPtr<metadata::ISchema> found = _locator->resolve(uri.c_str());
    if (!found) {
        _message = L"unable to resolve type schema '" + uri + L"'";
        return;
    }
    primitive.base(uri.c_str());
    const IStructLayout* blocks = found->layout();
    reserve(primitive, blocks ? std::uint64_t{blocks->stride()} * count : 0);
}

void XMLPrimitive::setStructs(const Primitive& primitive, std::string_view text) {
    if (!_locator) return;
    const SharedPtr<metadata::ISchema> schema = _locator->resolve(primitive.base());
    IStructLayout* layout = schema ? schema->layout() : nullptr;
    if (!layout || layout->values() == 0) return;
    const std::uint64_t size = Tokens::count(text) / layout->values() * std::uint64_t{layout->stride()};
    if (size == 0 || size > kLargest) return;

    // An element that is scanned wider than it is reaches into the next one, which then overwrites that.
    std::vector<char> blocks(size + Scalar::kWidest);
    Tokens tokens(text);
    std::string_view token;
    for (Places places(*layout); places.next() && places.position() < size && tokens.next(token);) {
        Scalar::scan(places.kind(), token, blocks.data() + places.position());
    }
    overlay(primitive, blocks.data(), size);
}

void XMLPrimitive::writeStructs(const Primitive& primitive, XMLSerializer& serializer) const {
    const SharedPtr<metadata::ISchema> schema = _locator->resolve(primitive.base());
    IStructLayout* layout = schema ? schema->layout() : nullptr;
    const unsigned int stride = layout ? layout->stride() : 0;
    if (stride == 0) return;
    std::vector<char> blocks(primitive.valuesize());
    primitive.get(blocks.data(), 0, primitive.dimension());
    blocks.resize(blocks.size() / stride * stride);

    wchar_t text[1 + Scalar::kLongest] = L" ";
    Places places(*layout);
    for (bool first = true; places.next(); first = false) {
        if (places.position() + Design::stride(places.kind()) > blocks.size()) return;
        const char* value = blocks.data() + places.position();
        if (!Scalar::print(places.kind(), value, text + 1)) std::wcscpy(text + 1, kNoNumber);
        serializer.addCharacterData(first ? text + 1 : text);
    }
}

}  // namespace lumivard::platform::data
