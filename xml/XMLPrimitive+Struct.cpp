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

/// Walks over the elements of a run of blocks, in their order. A layout comes from outside, so nothing is taken for
/// granted: neither that its sums fit together nor that a field is there at all.
class Elements {
public:
    explicit Elements(IStructLayout& layout) : _layout(layout), _fields(layout.fields()) {}

    /// Goes to the next element; false when no field has any.
    bool next() {
        if (_left == 0) {
            if (!nextField()) return false;
        } else {
            _position += _field->size / _field->dim;
        }
        --_left;
        return true;
    }

    /// The kind of the element, and where it begins, in bytes from the start of the run.
    metadata::tValue kind() const { return _field->type; }
    std::uint64_t position() const { return _position; }

private:
    /// Goes to the start of the next field with elements, passing over those without, and those whose elements have no
    /// bytes: each step goes forward.
    bool nextField() {
        if (_field) _position += _field->size / _field->dim;
        for (unsigned int tried = 0; tried < _fields; ++tried) {
            _field = _layout.get(_next);
            _next = _next + 1 == _fields ? 0 : _next + 1;
            if (!_field) continue;
            if (_field->dim == 0 || _field->size < _field->dim) {
                _position += _field->size;
                continue;
            }
            _left = _field->dim;
            return true;
        }
        return false;
    }

    IStructLayout& _layout;
    unsigned int _fields;
    unsigned int _next = 0;
    const IStructLayout::tField* _field = nullptr;
    unsigned int _left = 0;
    std::uint64_t _position = 0;
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
    const std::uint64_t size = blocks ? std::uint64_t{blocks->stride()} * count : 0;
    if (size != 0 && size <= kLargest) primitive.reset(static_cast<unsigned int>(size));
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
    for (Elements elements(*layout); elements.next() && elements.position() < size && tokens.next(token);) {
        Scalar::scan(elements.kind(), token, blocks.data() + elements.position());
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
    Elements elements(*layout);
    for (bool first = true; elements.next(); first = false) {
        if (elements.position() + Design::stride(elements.kind()) > blocks.size()) return;
        const char* value = blocks.data() + elements.position();
        if (!Scalar::print(elements.kind(), value, text + 1)) std::wcscpy(text + 1, kNoNumber);
        serializer.addCharacterData(first ? text + 1 : text);
    }
}

}  // namespace lumivard::platform::data
