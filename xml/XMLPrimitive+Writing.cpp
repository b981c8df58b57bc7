#include <algorithm>
#include <vector>

#include "design/Stride.h"
#include "lumivard/platform/core/string/StringAlgorithm.h"
#include "xml/Scalar.h"
#include "xml/XMLPrimitive.h"

namespace lumivard::platform::data {

using core::string::StringAlgorithm;
using core::xml::XMLSerializer;
using Design::Primitive;
using Metadata::Item;

namespace {

/// How many bytes are encoded at a time: a multiple of 3, so that the pieces of base64 join.
constexpr std::size_t kEncodedAtOnce = 3 * 16384;

/// Writes a piece of the value, in a sub-element of its own where it has to be told from the names.
template <class Write>
void inVal(bool wrapped, XMLSerializer& serializer, Write write) {
    if (wrapped) serializer.startElement(L"val", nullptr);
    write();
    if (wrapped) serializer.endElement(false);
}

/// One text stands by itself; of several each is told from the others. What no zero ends is no text.
void writeTexts(const Primitive& primitive, bool named, XMLSerializer& serializer) {
    std::wstring run(primitive.dimension(), L'\0');
    primitive.get(reinterpret_cast<char*>(run.data()), 0, primitive.dimension());
    std::size_t end = run.find(L'\0');
    const bool wrapped = named || end != run.size() - 1;
    for (std::size_t start = 0; end != std::wstring::npos; end = run.find(L'\0', start)) {
        inVal(wrapped, serializer, [&] { serializer.addCharacterData(run.c_str() + start); });
        start = end + 1;
    }
}

void writeBytes(const Primitive& primitive, XMLSerializer& serializer) {
    std::vector<char> bytes(primitive.dimension());
    primitive.get(bytes.data(), 0, primitive.dimension());
    std::string text;
    for (std::size_t start = 0; start < bytes.size(); start += kEncodedAtOnce) {
        const std::size_t count = std::min(kEncodedAtOnce, bytes.size() - start);
        text.resize(StringAlgorithm::EncodeBase64(bytes.data() + start, count, nullptr));
        StringAlgorithm::EncodeBase64(bytes.data() + start, count, text.data());
        serializer.addCharacterData(std::wstring(text.begin(), text.end()).c_str());
    }
}

}  // namespace

bool XMLPrimitive::serialize(Item& item, XMLSerializer& serializer) {
    const auto& primitive = static_cast<const Primitive&>(item);
    serializer.startElement(wname(), nullptr);
    serializer.addAttribute(L"name", primitive.tag(), nullptr);
    const char* unit = units().unit(primitive.units());
    serializer.addAttribute(L"units", unit ? StringAlgorithm::UTF8Decode(unit).c_str() : nullptr, nullptr);
    serializer.addAttribute(L"locale", primitive.valuelocale(), nullptr);
    if (_type == metadata::kStruct) serializer.addAttribute(L"type", primitive.base(), nullptr);
    serializer.addAttribute(L"uri", primitive.uri(), nullptr);
    const bool named = writeNames(item, serializer);
    if (!primitive.uri() && primitive.dimension() != 0) writeValue(primitive, named, serializer);
    return true;
}

void XMLPrimitive::writeValue(const Primitive& primitive, bool named, XMLSerializer& serializer) const {
    switch (_type) {
        case metadata::kBinary:
            inVal(named, serializer, [&] { writeBytes(primitive, serializer); });
            return;
        case metadata::kUUID:
        case metadata::kString:
        case metadata::kTime:
        case metadata::kURI:
        case metadata::kVersion:
            writeTexts(primitive, named, serializer);
            return;
        case metadata::kStruct:
            if (_locator) inVal(named, serializer, [&] { writeStructs(primitive, serializer); });
            return;
        default:
            inVal(named, serializer, [&] { writeNumbers(primitive, serializer); });
            return;
    }
}

void XMLPrimitive::writeNumbers(const Primitive& primitive, XMLSerializer& serializer) const {
    const std::size_t stride = Design::stride(_type);
    std::vector<char> values(primitive.dimension() * stride);
    primitive.get(values.data(), 0, primitive.dimension());
    wchar_t text[1 + Scalar::kLongest] = L" ";
    for (std::size_t start = 0; start < values.size(); start += stride) {
        if (!Scalar::print(_type, values.data() + start, text + 1)) return;
        serializer.addCharacterData(start == 0 ? text + 1 : text);
    }
}

}  // namespace lumivard::platform::data
