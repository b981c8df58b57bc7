#include <cstring>
#include <string>
#include <vector>

#include <utf8.h>

#include "lumivard/platform/core.h"
#include "tests/fuzz/Targets.h"

namespace lumivard::platform::fuzz {

using core::string::StringAlgorithm;
using core::string::WideString;

namespace {

std::string encoded(const std::vector<char>& bytes) {
    std::string text(StringAlgorithm::EncodeBase64(bytes.data(), bytes.size(), nullptr), '\0');
    StringAlgorithm::EncodeBase64(bytes.data(), bytes.size(), text.data());
    return text;
}

std::vector<char> decoded(const std::string& text) {
    std::vector<char> bytes(StringAlgorithm::DecodeBase64(text.c_str(), nullptr));
    const unsigned long size = StringAlgorithm::DecodeBase64(text.c_str(), bytes.data());
    require(size == bytes.size() || bytes.empty(), "base64 decodes to as many bytes as it announces");
    return bytes;
}

void checkBase64(const std::string& input) {
    const std::vector<char> bytes(input.begin(), input.end());
    require(decoded(encoded(bytes)) == bytes, "bytes survive base64");
    const std::vector<char> meant = decoded(input);
    require(decoded(encoded(meant)) == meant, "what base64 means survives it");
}

void checkUTF8(const std::string& input) {
    const std::string bytes = input.c_str();  // up to the first zero
    const std::wstring wide = StringAlgorithm::UTF8Decode(bytes.c_str());
    const std::string again = WideString(wide.c_str()).string();
    require(utf8::is_valid(again.begin(), again.end()), "text goes out as UTF-8");
    require(StringAlgorithm::UTF8Decode(again.c_str()) == wide, "text survives UTF-8");
    if (utf8::is_valid(bytes.begin(), bytes.end())) require(again == bytes, "UTF-8 comes back byte for byte");
}

/// The characters that four bytes each are, whatever numbers these are, up to the first that is 0.
std::wstring wideOf(const std::string& input) {
    std::wstring wide(input.size() / sizeof(wchar_t), L'\0');
    std::memcpy(wide.data(), input.data(), wide.size() * sizeof(wchar_t));
    return wide.substr(0, wide.find(L'\0'));
}

/// Those characters as they are where one of these numbers cannot be told.
std::wstring told(std::wstring text, bool (*canBeTold)(char32_t)) {
    for (wchar_t& character : text) {
        if (!canBeTold(static_cast<char32_t>(character))) character = wchar_t{0xFFFD};
    }
    return text;
}

bool isScalarValue(char32_t character) {
    return character <= 0x10FFFF && (character < 0xD800 || character > 0xDFFF);
}

bool isXMLCharacter(char32_t character) {
    if (character < 0x20) return character == '\t' || character == '\n' || character == '\r';
    return isScalarValue(character) && character != 0xFFFE && character != 0xFFFF;
}

void checkWide(const std::string& input) {
    const std::wstring wide = wideOf(input);
    const std::string narrow = WideString(wide.c_str()).string();
    require(utf8::is_valid(narrow.begin(), narrow.end()), "text goes out as UTF-8");
    require(StringAlgorithm::UTF8Decode(narrow.c_str()) == told(wide, isScalarValue), "wide text survives UTF-8");
}

/// Keeps the text of a document and the value of its one attribute.
class Events final : public core::xml::XMLCallback {
public:
    void notifyStartElement(const char*, const char** attributes) override { attribute = attributes[1]; }
    void notifyEndElement(const char*) override {}
    void notifyStartNamespace(const char*, const char*) override {}
    void notifyEndNamespace(const char*) override {}
    void notifyCharacterData(const char* data, int length) override {
        text.append(data, static_cast<std::size_t>(length));
    }

    std::string attribute;
    std::string text;
};

void checkSerializer(const std::wstring& wide) {
    core::LVPUUID id;
    core::io::MemoryWriter writer;
    core::xml::XMLSerializer serializer(id);
    writer.open();
    serializer.attach(&writer);
    serializer.emitXMLHeader();
    serializer.startElement(L"e", nullptr);
    serializer.addAttribute(L"a", wide.c_str(), nullptr);
    serializer.addCharacterData(wide.c_str());
    serializer.endElement(false);
    serializer.detach();

    Events listener;
    core::io::MemoryReader reader(writer.bytes());
    reader.open();
    core::xml::XMLParser(&listener, nullptr).parseDocument(&reader);
    const std::wstring expected = told(wide, isXMLCharacter);
    require(StringAlgorithm::UTF8Decode(listener.text.c_str()) == expected, "text survives a document");
    require(StringAlgorithm::UTF8Decode(listener.attribute.c_str()) == expected, "an attribute survives a document");
}

}  // namespace

int fuzzText(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::string input(data + 1, data + size);
    switch (data[0] % 5) {
        case 0:
            checkBase64(input);
            break;
        case 1:
            checkUTF8(input);
            break;
        case 2:
            checkWide(input);
            break;
        case 3:
            checkSerializer(StringAlgorithm::UTF8Decode(input.c_str()));
            break;
        default:
            checkSerializer(wideOf(input));
            break;
    }
    return 0;
}

}  // namespace lumivard::platform::fuzz
