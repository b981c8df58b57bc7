#include "xml/XMLPrimitive.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

#include "lumivard/platform/core/string/StringAlgorithm.h"
#include "record/Base.h"
#include "xml/Scalar.h"
#include "xml/Tokens.h"
#include "xml/ValueElements.h"

namespace lumivard::platform::data {

using core::string::StringAlgorithm;
using Design::Primitive;
using Metadata::Item;

namespace {

/// The number of components that a vector or matrix begins with; 0 for any other kind.
unsigned int fixedCount(metadata::tValue kind) {
    switch (kind) {
        case metadata::kVec2:
            return 2;
        case metadata::kVec3:
            return 3;
        case metadata::kVec4:
        case metadata::kMtx2x2:
            return 4;
        case metadata::kMtx3x3:
            return 9;
        case metadata::kMtx4x4:
            return 16;
        default:
            return 0;
    }
}

}  // namespace

const char* XMLPrimitive::name() const {
    return valueElement(_type).narrow;
}

const wchar_t* XMLPrimitive::wname() const {
    return valueElement(_type).wide;
}

unsigned int XMLPrimitive::type() const {
    return Record::kPrimitive;
}

std::unique_ptr<Item> XMLPrimitive::open(const char* const* attributes) {
    const char* name = find("name", attributes);
    if (!name) return refuse(kMissingName);
    const char* schema = _type == metadata::kStruct ? find("type", attributes) : nullptr;
    if (_type == metadata::kStruct) {
        if (!schema) return refuse(L"missing mandatory 'type' attribute for <struct>");
        if (!_locator) return refuse(L"missing locator to resolve the 'type' attribute");
    }

    auto primitive = std::make_unique<Primitive>(_store, _type, StringAlgorithm::UTF8Decode(name).c_str());
    const char* uri = find("uri", attributes);
    if (uri) primitive->uri(StringAlgorithm::UTF8Decode(uri).c_str());
    const char* locale = find("locale", attributes);
    if (locale) primitive->valuelocale(StringAlgorithm::UTF8Decode(locale).c_str());
    const char* unit = find("units", attributes);
    if (unit) primitive->units(units().unit(unit));

    const char* dim = find("dim", attributes);
    const unsigned int count = dim ? Scalar::scanCount(dim) : 0;
    if (schema) {
        openStruct(*primitive, schema, count);
    } else if (const unsigned int fixed = fixedCount(_type)) {
        primitive->reset(fixed);  // refused where a URI stands in place of the values
    } else {
        reserve(*primitive, count);
    }
    return primitive;
}

bool XMLPrimitive::set(Item& item, const char* text) {
    if (_mode == tMode::kName) {
        closeName(item, text);
        return true;
    }
    const bool piece = _mode == tMode::kVal;
    _mode = tMode::kNone;
    auto& primitive = static_cast<Primitive&>(item);
    if (!text || primitive.uri()) return false;
    switch (_type) {
        case metadata::kBinary:
            setBytes(primitive, text);
            break;
        case metadata::kUUID:
        case metadata::kString:
        case metadata::kTime:
        case metadata::kURI:
        case metadata::kVersion:
            setText(primitive, text, piece);
            break;
        case metadata::kStruct:
            setStructs(primitive, text);
            break;
        default:
            setNumbers(primitive, text);
            break;
    }
    return false;
}

void XMLPrimitive::close(Item& item) {
    if (!_value) return;
    const std::vector<char> value = std::move(*_value);
    _value.reset();
    const std::size_t count = value.size() / Primitive::stride(_type);
    if (count > std::numeric_limits<unsigned int>::max()) return;
    static_cast<Primitive&>(item).set(value.data(), 0, static_cast<unsigned int>(count));
}

void XMLPrimitive::reserve(Primitive& primitive, std::uint64_t count) {
    if (count == 0 || count > std::numeric_limits<unsigned int>::max() || primitive.uri()) return;
    if (_empty && !_empty->take(count * Primitive::stride(_type))) return;
    primitive.reset(static_cast<unsigned int>(count));
}

void XMLPrimitive::setText(const Primitive& primitive, const char* text, bool piece) {
    const std::wstring wide = StringAlgorithm::UTF8Decode(text);
    const auto* bytes = reinterpret_cast<const char*>(wide.c_str());
    const std::size_t size = (wide.size() + 1) * sizeof(wchar_t);
    if (!piece) return overlay(primitive, bytes, size);
    std::vector<char>& run = value(primitive);
    run.insert(run.end(), bytes, bytes + size);
}

void XMLPrimitive::setBytes(const Primitive& primitive, const char* text) {
    std::vector<char> bytes(StringAlgorithm::DecodeBase64(text, nullptr));
    if (bytes.empty()) return;
    StringAlgorithm::DecodeBase64(text, bytes.data());
    overlay(primitive, bytes.data(), bytes.size());
}

void XMLPrimitive::setNumbers(const Primitive& primitive, std::string_view text) {
    const std::size_t size = Primitive::stride(_type);
    std::size_t index = 0;
    std::string_view token;
    for (Tokens tokens(text); tokens.next(token); ++index) {
        char scanned[Scalar::kWidest] = {};
        if (!Scalar::scan(_type, token, scanned)) continue;
        std::vector<char>& numbers = value(primitive);
        const std::size_t start = index * size;
        if (numbers.size() < start + size) numbers.resize(start + size);
        std::memcpy(numbers.data() + start, scanned, size);
    }
}

std::vector<char>& XMLPrimitive::value(const Primitive& primitive) {
    if (!_value) {
        _value.emplace(std::size_t{primitive.dimension()} * Primitive::stride(_type));
        primitive.get(_value->data(), 0, primitive.dimension());
    }
    return *_value;
}

void XMLPrimitive::overlay(const Primitive& primitive, const void* data, std::size_t size) {
    std::vector<char>& bytes = value(primitive);
    if (bytes.size() < size) bytes.resize(size);
    std::memcpy(bytes.data(), data, size);
    if (_empty) _empty->fill(size);
}

}  // namespace lumivard::platform::data
