#include "lumivard/platform/core/xml/XMLSerializer.h"

#include <stdexcept>
#include <utility>

#include "platform/string/UTF8.h"

namespace lumivard::platform::core::xml {

namespace {

constexpr unsigned long kBufferSize = 65536;

void require(bool condition, const char* message) {
    if (!condition) throw std::logic_error(message);
}

/// Whether XML 1.0 has a place for the character, as itself or as a reference.
bool isCharacter(char32_t character) {
    if (character < 0x20) return character == '\t' || character == '\n' || character == '\r';
    return string::isScalarValue(character) && character != 0xFFFE && character != 0xFFFF;
}

/// What stands for a character in an attribute (`attribute`) or a text; null where it stands for itself.
const char* reference(char32_t character, bool attribute) {
    switch (character) {
        case '&':
            return "&amp;";
        case '<':
            return "&lt;";
        case '>':
            return attribute ? nullptr : "&gt;";
        case '"':
            return attribute ? "&quot;" : nullptr;
        case '\t':
            return attribute ? "&#9;" : nullptr;
        case '\n':
            return attribute ? "&#10;" : nullptr;
        case '\r':
            return "&#13;";
        default:
            return nullptr;
    }
}

std::string narrowed(const wchar_t* text) {
    std::string narrow;
    for (; text && *text; ++text) string::appendUTF8(narrow, static_cast<char32_t>(*text));
    return narrow;
}

}  // namespace

XMLSerializer::XMLSerializer(LVPUUID& /*id*/) {}

XMLSerializer::~XMLSerializer() = default;

void XMLSerializer::attach(io::IDataWriter* writer) {
    _writer = writer;
    _buffer.clear();
    _open.clear();
    _inStartTag = false;
}

void XMLSerializer::emitXMLHeader() {
    require(_writer && _open.empty(), "an XML declaration stands before all elements of an attached document");
    _buffer += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
}

void XMLSerializer::startElement(const wchar_t* name, const wchar_t* /*extra*/) {
    require(_writer, "an element needs an attached document");
    closeStartTag();
    _open.push_back(narrowed(name));
    _buffer += '<';
    _buffer += _open.back();
    _inStartTag = true;
    drain();
}

void XMLSerializer::addAttribute(const wchar_t* name, const wchar_t* value, const wchar_t* /*extra*/) {
    require(_inStartTag, "an attribute needs an element without content so far");
    if (!value) return;
    _buffer += ' ';
    _buffer += narrowed(name);
    _buffer += "=\"";
    escape(value, true);
    _buffer += '"';
}

void XMLSerializer::addCharacterData(const wchar_t* text) {
    require(!_open.empty(), "text needs an open element");
    if (!text || !*text) return;
    closeStartTag();
    escape(text, false);
}

void XMLSerializer::endElement(bool /*flag*/) {
    require(!_open.empty(), "no element is open");
    if (_inStartTag) {
        _buffer += "/>";
        _inStartTag = false;
    } else {
        _buffer += "</";
        _buffer += _open.back();
        _buffer += '>';
    }
    _open.pop_back();
    drain();
}

void XMLSerializer::detach() {
    if (!_writer) return;
    closeStartTag();
    const std::string rest = std::move(_buffer);
    io::IDataWriter* writer = _writer;
    attach(nullptr);
    if (!rest.empty()) writer->write(rest.data(), rest.size());
}

void XMLSerializer::closeStartTag() {
    if (_inStartTag) _buffer += '>';
    _inStartTag = false;
}

void XMLSerializer::escape(const wchar_t* text, bool attribute) {
    for (; *text; ++text) {
        const auto character = static_cast<char32_t>(*text);
        if (const char* instead = reference(character, attribute))
            _buffer += instead;
        else
            string::appendUTF8(_buffer, isCharacter(character) ? character : string::kReplacementCharacter);
        drain();
    }
}

void XMLSerializer::drain() {
    if (_buffer.size() < kBufferSize) return;
    _writer->write(_buffer.data(), _buffer.size());
    _buffer.clear();
}

}  // namespace lumivard::platform::core::xml
