#include "lumivard/platform/core/xml/XMLSerializer.h"

#include <stdexcept>
#include <utility>

#include "platform/string/UTF8.h"
#include "platform/xml/XMLOutput.h"

namespace lumivard::platform::core::xml {

namespace {

void require(bool condition, const char* message) {
    if (!condition) throw std::logic_error(message);
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
    _output.reset();
    _open.clear();
    _starts.clear();
    _inStartTag = false;
    if (writer) _output = std::make_unique<XMLOutput>(writer);
}

void XMLSerializer::emitXMLHeader() {
    require(_output && _starts.empty(), "an XML declaration stands before all elements of an attached document");
    _output->put("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");
}

void XMLSerializer::startElement(const wchar_t* name, const wchar_t* /*extra*/) {
    startElement(narrowed(name));
}

void XMLSerializer::startElement(std::string_view name) {
    require(_output != nullptr, "an element needs an attached document");
    if (_starts.size() == _starts.capacity()) _starts.reserve(2 * _starts.size() + 1);
    _open.append(name);
    _starts.push_back(_open.size() - name.size());
    closeStartTag();
    _output->put('<');
    _output->put(name);
    _inStartTag = true;
}

void XMLSerializer::addAttribute(const wchar_t* name, const wchar_t* value, const wchar_t* /*extra*/) {
    require(_inStartTag, "an attribute needs an element without content so far");
    if (value) addAttribute(narrowed(name), std::wstring_view(value));
}

void XMLSerializer::addAttribute(std::string_view name, std::wstring_view value) {
    beginAttribute(name);
    _output->putAttribute(value);
    _output->put('"');
}

void XMLSerializer::addAttribute(std::string_view name, std::string_view value) {
    beginAttribute(name);
    _output->put(value);
    _output->put('"');
}

void XMLSerializer::addCharacterData(const wchar_t* text) {
    addCharacterData(text ? std::wstring_view(text) : std::wstring_view());
}

void XMLSerializer::addCharacterData(std::wstring_view text) {
    beginText(text.empty());
    _output->putText(text);
}

void XMLSerializer::addCharacterData(std::string_view text) {
    beginText(text.empty());
    _output->put(text);
}

void XMLSerializer::endElement(bool /*flag*/) {
    require(!_starts.empty(), "no element is open");
    if (_inStartTag) {
        _output->put("/>");
        _inStartTag = false;
    } else {
        _output->put("</");
        _output->put(std::string_view(_open).substr(_starts.back()));
        _output->put('>');
    }
    _open.resize(_starts.back());
    _starts.pop_back();
}

void XMLSerializer::detach() {
    if (!_output) return;
    closeStartTag();
    const std::unique_ptr<XMLOutput> output = std::move(_output);
    attach(nullptr);
    output->finish();
}

void XMLSerializer::beginAttribute(std::string_view name) {
    require(_inStartTag, "an attribute needs an element without content so far");
    _output->put(' ');
    _output->put(name);
    _output->put("=\"");
}

void XMLSerializer::beginText(bool empty) {
    require(!_starts.empty(), "text needs an open element");
    if (!empty) closeStartTag();
}

void XMLSerializer::closeStartTag() {
    if (_inStartTag) _output->put('>');
    _inStartTag = false;
}

}  // namespace lumivard::platform::core::xml
