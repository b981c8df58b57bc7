#include "xml/XMLPrimitive.h"

#include <cstdint>
#include <cstring>
#include <limits>
#include <utility>

#include "lumivard/platform/core/string/StringAlgorithm.h"
#include "record/Base.h"
#include "xml/Scalar.h"
#include "xml/Tokens.h"
#include "xml/ValueElements.h"
#include "xml/WholePrimitive.h"

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

/// The attributes that a primitive has, the first of each name; null for those that are missing.
struct tAttributes {
    explicit tAttributes(const char* const* attributes) {
        for (; *attributes; attributes += 2) {
            const char** const known = find(attributes[0]);
            if (known && !*known) *known = attributes[1];
        }
    }

    const char* name = nullptr;
    const char* units = nullptr;
    const char* locale = nullptr;
    const char* uri = nullptr;
    const char* dim = nullptr;
    const char* type = nullptr;

private:
    const char** find(std::string_view attribute) {
        if (attribute == "name") return &name;
        if (attribute == "units") return &units;
        if (attribute == "locale") return &locale;
        if (attribute == "uri") return &uri;
        if (attribute == "dim") return &dim;
        if (attribute == "type") return &type;
        return nullptr;
    }
};

/// How long a value may be whose memory is kept for the next one, in bytes.
constexpr std::size_t kKept = 65536;

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
    return begin(attributes) ? make() : nullptr;
}

bool XMLPrimitive::begin(const char* const* attributes) {
    const tAttributes told(attributes);
    if (!told.name) return refuse(kMissingName) != nullptr;
    _start.schema = _type == metadata::kStruct ? told.type : nullptr;
    if (_type == metadata::kStruct) {
        if (!_start.schema) return refuse(L"missing mandatory 'type' attribute for <struct>") != nullptr;
        if (!_locator) return refuse(L"missing locator to resolve the 'type' attribute") != nullptr;
    }
    StringAlgorithm::UTF8Decode(told.name, _start.name);
    _start.hasURI = told.uri != nullptr;
    if (told.uri) StringAlgorithm::UTF8Decode(told.uri, _start.uri);
    _start.hasLocale = told.locale != nullptr;
    if (told.locale) StringAlgorithm::UTF8Decode(told.locale, _start.locale);
    _start.hasUnit = told.units != nullptr;
    _start.unit = told.units ? units().unit(told.units) : units::kNoUnit;
    _start.count = told.dim && fixedCount(_type) == 0 ? Scalar::scanCount(told.dim) : 0;
    return true;
}

std::unique_ptr<Item> XMLPrimitive::make() {
    auto primitive = std::make_unique<Primitive>(_store, _type, _start.name.c_str());
    if (_start.hasURI) primitive->uri(_start.uri.c_str());
    if (_start.hasLocale) primitive->valuelocale(_start.locale.c_str());
    if (_start.hasUnit) primitive->units(_start.unit);
    if (_type == metadata::kStruct) {
        makeStruct(*primitive);
    } else if (const unsigned int fixed = fixedCount(_type)) {
        primitive->reset(fixed);  // refused where a URI stands in place of the values
    } else {
        reserve(*primitive, _start.count);
    }
    return primitive;
}

unsigned int XMLPrimitive::makeWhole(unsigned int parent, const char* text) {
    _value.assign(std::size_t{fixedCount(_type)} * Primitive::stride(_type), 0);
    _changed = true;
    take(nullptr, text, false);
    _changed = false;
    const std::wstring* locale = _start.hasLocale ? &_start.locale : nullptr;
    const tWholePrimitive whole{_type, _start.unit, parent, _start.name, locale, {_value.data(), _value.size()}};
    const unsigned int offset = create(_store, whole, _record);
    forgetValue();
    return offset;
}

bool XMLPrimitive::set(Item& item, const char* text) {
    if (_mode == tMode::kName) {
        closeName(item, text);
        return true;
    }
    const bool piece = _mode == tMode::kVal;
    _mode = tMode::kNone;
    const auto& primitive = static_cast<const Primitive&>(item);
    if (text && !primitive.uri()) take(&primitive, text, piece);
    return false;
}

void XMLPrimitive::close(Item& item) {
    if (!std::exchange(_changed, false)) return;
    const std::size_t count = _value.size() / Primitive::stride(_type);
    if (count <= std::numeric_limits<unsigned int>::max()) {
        static_cast<Primitive&>(item).set(_value.data(), 0, static_cast<unsigned int>(count));
    }
    forgetValue();
}

void XMLPrimitive::reserve(Primitive& primitive, std::uint64_t count) {
    if (count == 0 || count > std::numeric_limits<unsigned int>::max() || primitive.uri()) return;
    if (_empty && !_empty->take(count * Primitive::stride(_type))) return;
    primitive.reset(static_cast<unsigned int>(count));
}

void XMLPrimitive::take(const Primitive* primitive, const char* text, bool piece) {
    switch (_type) {
        case metadata::kBinary:
            return takeBytes(primitive, text);
        case metadata::kUUID:
        case metadata::kString:
        case metadata::kTime:
        case metadata::kURI:
        case metadata::kVersion:
            return takeText(primitive, text, piece);
        case metadata::kStruct:
            return takeStructs(*primitive, text);
        default:
            return takeNumbers(primitive, text);
    }
}

void XMLPrimitive::takeText(const Primitive* primitive, const char* text, bool piece) {
    StringAlgorithm::UTF8Decode(text, _wide);
    const auto* bytes = reinterpret_cast<const char*>(_wide.c_str());
    const std::size_t size = (_wide.size() + 1) * sizeof(wchar_t);
    if (!piece) return overlay(primitive, bytes, size);
    std::vector<char>& run = value(primitive);
    run.insert(run.end(), bytes, bytes + size);
}

void XMLPrimitive::takeBytes(const Primitive* primitive, const char* text) {
    std::vector<char> bytes(StringAlgorithm::DecodeBase64(text, nullptr));
    if (bytes.empty()) return;
    StringAlgorithm::DecodeBase64(text, bytes.data());
    overlay(primitive, bytes.data(), bytes.size());
}

void XMLPrimitive::takeNumbers(const Primitive* primitive, std::string_view text) {
    const std::size_t size = Primitive::stride(_type);
    std::size_t index = 0;
    std::string_view token;
    for (Tokens tokens(text); tokens.next(token); ++index) {
        char scanned[Scalar::kWidest] = {};
        if (!Scalar::scan(_type, token, scanned)) continue;
        if (!_changed) value(primitive);
        const std::size_t start = index * size;
        if (_value.size() == start) {
            _value.insert(_value.end(), scanned, scanned + size);
        } else {
            if (_value.size() < start + size) _value.resize(start + size);
            std::memcpy(_value.data() + start, scanned, size);
        }
    }
    if (_empty && _changed) _empty->fill(index * size);
}

std::vector<char>& XMLPrimitive::value(const Primitive* primitive) {
    if (!_changed) {
        _value.assign(std::size_t{primitive->dimension()} * Primitive::stride(_type), 0);
        primitive->get(_value.data(), 0, primitive->dimension());
        _changed = true;
    }
    return _value;
}

void XMLPrimitive::overlay(const Primitive* primitive, const void* data, std::size_t size) {
    std::vector<char>& bytes = value(primitive);
    if (bytes.size() < size) bytes.resize(size);
    std::memcpy(bytes.data(), data, size);
    if (_empty) _empty->fill(size);
}

void XMLPrimitive::forgetValue() {
    if (_value.capacity() <= kKept) return;
    _value = {};
    _record = {};
    _wide = {};
}

}  // namespace lumivard::platform::data
