#include "tools/documents/CanonicalDocument.h"

#include <algorithm>
#include <string_view>

#include "lumivard/platform/core/string/StringAlgorithm.h"

namespace lvp::tool {

using lumivard::platform::core::string::StringAlgorithm;
using lumivard::platform::core::xml::XMLSerializer;

namespace {

constexpr std::size_t kBase64Line = 76;  // characters, as in mail (RFC 2045)
constexpr std::string_view kBlanks = " \t\r\n";

bool isSet(const std::string& kind) {
    return kind == "root" || kind == "node" || kind == "group" || kind == "link" || kind == "table";
}

/// White space is a part of texts, and of nothing else.
bool isText(const std::string& kind) {
    return kind == "string" || kind == "uuid" || kind == "time" || kind == "uri" || kind == "version";
}

void put(XMLSerializer& serializer, std::string_view text) {
    serializer.addCharacterData(StringAlgorithm::UTF8Decode(std::string(text).c_str()).c_str());
}

void startLine(XMLSerializer& serializer, std::size_t depth) {
    put(serializer, "\n" + std::string(2 * depth, ' '));
}

/// The words of a text, each on a line of its own.
void putWords(XMLSerializer& serializer, std::string_view text, std::size_t depth) {
    for (std::size_t begin = text.find_first_not_of(kBlanks); begin != text.npos;) {
        const std::size_t end = std::min(text.find_first_of(kBlanks, begin), text.size());
        startLine(serializer, depth);
        put(serializer, text.substr(begin, end - begin));
        begin = text.find_first_not_of(kBlanks, end);
    }
}

void putBase64(XMLSerializer& serializer, std::string_view text, std::size_t depth) {
    for (std::size_t begin = 0; begin < text.size(); begin += kBase64Line) {
        startLine(serializer, depth);
        put(serializer, text.substr(begin, kBase64Line));
    }
}

/// Whether there is more than one number or line.
bool isLong(const std::string& kind, std::string_view text) {
    return kind == "binary" ? text.size() > kBase64Line : text.find_first_of(kBlanks) != text.npos;
}

}  // namespace

void CanonicalDocument::notifyStartElement(const char* name, const char** attributes) {
    tElement element;
    element.kind = name;
    element.subElement = element.kind == "name" || element.kind == "val" || element.kind == "default";
    element.values = element.kind == "val" && !_open.empty() ? _elements[_open.back()].kind : element.kind;
    for (; *attributes; attributes += 2) element.attributes.emplace_back(attributes[0], attributes[1]);
    if (!_open.empty()) _elements[_open.back()].children.push_back(_elements.size());
    _open.push_back(_elements.size());
    _elements.push_back(std::move(element));
}

void CanonicalDocument::notifyEndElement(const char*) {
    _open.pop_back();
}

void CanonicalDocument::notifyCharacterData(const char* data, int length) {
    _elements[_open.back()].text.append(data, static_cast<std::size_t>(length));
}

void CanonicalDocument::write(XMLSerializer& serializer) {
    std::vector<tOpen> open;
    if (!_elements.empty()) {
        begin(serializer, 0, 0);
        open.push_back({0, 0});
    }
    while (!open.empty()) {
        const tElement& element = _elements[open.back().element];
        if (open.back().next < element.children.size()) {
            const std::size_t child = element.children[open.back().next++];
            startLine(serializer, open.size());
            begin(serializer, child, open.size());
            open.push_back({child, 0});
            continue;
        }
        open.pop_back();
        if (!element.children.empty()) startLine(serializer, open.size());
        serializer.endElement(false);
    }
}

const std::string& CanonicalDocument::name(std::size_t element) const {
    static const std::string none;
    for (const auto& [key, value] : _elements[element].attributes) {
        if (key == "name") return value;
    }
    return none;
}

/// What is no item stays where it was: values are in order, and texts say their locale.
void CanonicalDocument::sort(tElement& element) const {
    const auto items = std::stable_partition(element.children.begin(), element.children.end(),
                                             [this](std::size_t child) { return _elements[child].subElement; });
    std::stable_sort(items, element.children.end(), [this](std::size_t a, std::size_t b) { return name(a) < name(b); });
    const auto localized = [this](std::size_t child) { return _elements[child].kind == "name"; };
    const auto texts = std::stable_partition(element.children.begin(), items, localized);
    std::stable_sort(element.children.begin(), texts, [this](std::size_t a, std::size_t b) {
        return _elements[a].attributes < _elements[b].attributes;
    });
    if (isSet(element.kind)) {
        std::stable_sort(texts, items, [this](std::size_t a, std::size_t b) {
            return _elements[a].attributes < _elements[b].attributes;
        });
    }
}

void CanonicalDocument::begin(XMLSerializer& serializer, std::size_t number, std::size_t depth) {
    tElement& element = _elements[number];
    sort(element);
    serializer.startElement(StringAlgorithm::UTF8Decode(element.kind.c_str()).c_str(), nullptr);
    for (const auto& [key, value] : element.attributes) {
        serializer.addAttribute(StringAlgorithm::UTF8Decode(key.c_str()).c_str(),
                                StringAlgorithm::UTF8Decode(value.c_str()).c_str(), nullptr);
    }
    if (!isSet(element.kind) && element.children.empty()) writeText(serializer, number, depth);
}

void CanonicalDocument::writeText(XMLSerializer& serializer, std::size_t number, std::size_t depth) {
    const tElement& element = _elements[number];
    if (element.kind == "name" || isText(element.values) || !isLong(element.values, element.text)) {
        put(serializer, element.text);
        return;
    }
    if (element.values == "binary") {
        putBase64(serializer, element.text, depth + 1);
    } else {
        putWords(serializer, element.text, depth + 1);
    }
    startLine(serializer, depth);
}

}  // namespace lvp::tool
