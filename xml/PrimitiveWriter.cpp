#include "xml/PrimitiveWriter.h"

#include <algorithm>
#include <cstring>

#include "design/Primitive.h"
#include "design/Stride.h"
#include "lumivard/platform/core/string/StringAlgorithm.h"
#include "lumivard/platform/data/metadata/ISchema.h"
#include "lumivard/platform/data/metadata/ISchemaLocator.h"
#include "lumivard/platform/data/metadata/IStructLayout.h"
#include "record/Primitive.h"
#include "xml/Element.h"
#include "xml/Scalar.h"
#include "xml/StructPlaces.h"
#include "xml/ValueElements.h"

namespace lumivard::platform::data {

using core::string::StringAlgorithm;
using core::xml::XMLSerializer;

namespace {

/// How many bytes are encoded at a time: a multiple of 3, so that the pieces of base64 join.
constexpr std::size_t kEncodedAtOnce = 3 * 16384;

/// Holds the place of an element that is no number, and that no text can set.
constexpr char kNoNumber = '-';

bool isText(metadata::tValue kind) {
    return kind >= metadata::kUUID && kind <= metadata::kVersion;
}

/// Copies the wide characters that lie in some bytes.
void copyCharacters(std::span<const char> bytes, std::wstring& out) {
    out.resize(bytes.size() / sizeof(wchar_t));
    if (!out.empty()) std::memcpy(out.data(), bytes.data(), out.size() * sizeof(wchar_t));
}

/// Copies a wide text, up to its terminator or the end of its bytes.
void copyText(std::span<const char> bytes, std::wstring& out) {
    copyCharacters(bytes, out);
    const std::size_t end = out.find(L'\0');
    if (end != std::wstring::npos) out.resize(end);
}

}  // namespace

class PrimitiveWriter::Numbers {
public:
    explicit Numbers(XMLSerializer& serializer) : _serializer(serializer) {}

    void add(metadata::tValue kind, const char* value) {
        char* const start = next();
        _end = Scalar::print(kind, value, start);
        if (_end) return;
        *start = kNoNumber;
        _end = start + 1;
    }
    void flush() {
        _serializer.addCharacterData(std::string_view(_text, static_cast<std::size_t>(_end - _text)));
        _end = _text;
    }

private:
    static constexpr std::size_t kRoom = 1024;

    /// Where the next number goes; all but the first have a blank before them.
    char* next() {
        if (static_cast<std::size_t>(_end - _text) > kRoom - Scalar::kLongest - 1) flush();
        if (_first)
            _first = false;
        else
            *_end++ = ' ';
        return _end;
    }

    XMLSerializer& _serializer;
    char _text[kRoom];
    char* _end = _text;
    bool _first = true;
};

void PrimitiveWriter::load(const Record::Primitive& record) {
    using Record::Primitive;
    _offset = record.offset();
    _localized = record.locale() != IDataStore::BADOFF;
    _external = (record.flags() & Record::kExternal) != 0;
    _kind = static_cast<metadata::tValue>(record.valuetype());
    _unit = record.units();
    record.eachSection(Primitive::kSections, [this](const Record::tSection& section) {
        switch (section.field) {
            case Primitive::kValueLocale:
                return copyText(section.bytes, _locale);
            case Primitive::kName:
                return copyText(section.bytes, _name);
            case Primitive::kBase:
                return copyText(section.bytes, _base);
            default:
                return loadValue(section.bytes);
        }
    });
}

void PrimitiveWriter::loadValue(std::span<const char> bytes) {
    if (_external)
        copyText(bytes, _uri);
    else if (isText(_kind))
        copyCharacters(bytes, _texts);
    else
        _values.assign(bytes.begin(), bytes.end());
}

void PrimitiveWriter::write() {
    const char* element = valueElement(_kind).narrow;
    if (!element) return;
    _serializer.startElement(element);
    writeAttributes();
    const bool named = _localized && writeNames();
    if (!_external) writeValue(named);
    _serializer.endElement(false);
}

void PrimitiveWriter::writeAttributes() {
    _serializer.addAttribute("name", _name);
    const char* unit = _unit == 0 ? nullptr : Element::units().unit(static_cast<units::tUnit>(_unit));
    if (unit) _serializer.addAttribute("units", std::string_view(unit));
    if (!_locale.empty()) _serializer.addAttribute("locale", _locale);
    if (_kind == metadata::kStruct && !_base.empty()) _serializer.addAttribute("type", _base);
    if (_external) _serializer.addAttribute("uri", _uri);
}

bool PrimitiveWriter::writeNames() {
    Design::Primitive primitive(_store, _offset);
    return Element::writeNames(primitive, _serializer);
}

template <class Write>
void PrimitiveWriter::inVal(bool wrapped, Write write) {
    if (wrapped) _serializer.startElement("val");
    write();
    if (wrapped) _serializer.endElement(false);
}

void PrimitiveWriter::writeValue(bool named) {
    if (isText(_kind)) return writeTexts(named);
    if (_values.size() < Design::stride(_kind)) return;
    switch (_kind) {
        case metadata::kBinary:
            return inVal(named, [this] { writeBytes(); });
        case metadata::kStruct:
            if (_locator) inVal(named, [this] { writeStructs(); });
            return;
        default:
            return inVal(named, [this] { writeNumbers(); });
    }
}

/// One text stands by itself; of several each is told from the others. What no zero ends is no text.
void PrimitiveWriter::writeTexts(bool named) {
    std::size_t end = _texts.find(L'\0');
    const bool wrapped = named || end != _texts.size() - 1;
    for (std::size_t start = 0; end != std::wstring::npos; end = _texts.find(L'\0', start)) {
        const auto text = std::wstring_view(_texts).substr(start, end - start);
        inVal(wrapped, [&] { _serializer.addCharacterData(text); });
        start = end + 1;
    }
}

void PrimitiveWriter::writeBytes() {
    std::string text;
    for (std::size_t start = 0; start < _values.size(); start += kEncodedAtOnce) {
        const std::size_t count = std::min(kEncodedAtOnce, _values.size() - start);
        text.resize(StringAlgorithm::EncodeBase64(_values.data() + start, count, nullptr));
        StringAlgorithm::EncodeBase64(_values.data() + start, count, text.data());
        _serializer.addCharacterData(std::string_view(text));
    }
}

void PrimitiveWriter::writeNumbers() {
    const std::size_t stride = Design::stride(_kind);
    Numbers numbers(_serializer);
    for (std::size_t start = 0; start + stride <= _values.size(); start += stride) {
        numbers.add(_kind, _values.data() + start);
    }
    numbers.flush();
}

void PrimitiveWriter::writeStructs() {
    const SharedPtr<metadata::ISchema> schema = _locator->resolve(_base.empty() ? nullptr : _base.c_str());
    metadata::IStructLayout* layout = schema ? schema->layout() : nullptr;
    if (layout && layout->stride() != 0) writeBlocks(*layout);
}

void PrimitiveWriter::writeBlocks(metadata::IStructLayout& layout) {
    const std::size_t size = _values.size() / layout.stride() * layout.stride();
    Numbers numbers(_serializer);
    for (StructPlaces places(layout); places.next();) {
        if (places.position() + Design::stride(places.kind()) > size) break;
        numbers.add(places.kind(), _values.data() + places.position());
    }
    numbers.flush();
}

}  // namespace lumivard::platform::data
