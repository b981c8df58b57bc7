#include "tools/base/Values.h"

#include <charconv>
#include <cstdint>
#include <cstring>

#include "lumivard/platform/core/string/StringAlgorithm.h"
#include "lumivard/platform/core/string/WideString.h"
#include "tools/base/ExitStatus.h"
#include "tools/base/Kinds.h"

namespace lvp::tool {

using namespace lumivard::platform::data::metadata;
using lumivard::platform::core::string::StringAlgorithm;
using lumivard::platform::core::string::WideString;

namespace {

/// Calls `work` with a number of the type of which a kind's values are.
template <class Work>
void withType(tValue kind, Work work) {
    switch (kind) {
        case kInt8:
            return work(std::int8_t{});
        case kUInt8:
            return work(std::uint8_t{});
        case kInt16:
            return work(std::int16_t{});
        case kUInt16:
            return work(std::uint16_t{});
        case kInt32:
            return work(std::int32_t{});
        case kUInt32:
            return work(std::uint32_t{});
        case kInt64:
            return work(std::int64_t{});
        case kUInt64:
            return work(std::uint64_t{});
        case kScalar:
            return work(float{});
        default:
            return work(double{});
    }
}

template <class Number>
void appendNumbers(std::span<const char> bytes, std::vector<std::string>& values) {
    for (std::size_t i = 0; i + sizeof(Number) <= bytes.size(); i += sizeof(Number)) {
        Number number;
        std::memcpy(&number, bytes.data() + i, sizeof number);
        char digits[32];
        values.emplace_back(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
    }
}

void appendTexts(std::span<const char> bytes, std::vector<std::string>& values) {
    std::wstring characters(bytes.size() / sizeof(wchar_t), L'\0');
    if (!characters.empty()) std::memcpy(characters.data(), bytes.data(), characters.size() * sizeof(wchar_t));
    for (std::size_t begin = 0; begin < characters.size();) {
        const std::size_t end = std::min(characters.find(L'\0', begin), characters.size());
        values.push_back(WideString(characters.substr(begin, end - begin).c_str()).string());
        begin = end + 1;
    }
}

[[noreturn]] void refuse(tValue kind, const std::string& value, const char* why) {
    throw Failure(kWrongUsage, "\"" + value + "\" " + why + " " + nameOf(kind));
}

void append(std::vector<char>& bytes, const void* data, std::size_t size) {
    const auto* const begin = static_cast<const char*>(data);
    bytes.insert(bytes.end(), begin, begin + size);
}

template <class Number>
void appendNumber(tValue kind, const std::string& value, std::vector<char>& bytes) {
    Number number{};
    const char* const begin = value.data() + (value.size() > 1 && value[0] == '+' && value[1] != '-' ? 1 : 0);
    const auto read = std::from_chars(begin, value.data() + value.size(), number);
    if (read.ec == std::errc::result_out_of_range) refuse(kind, value, "is out of the range of the kind");
    if (read.ec != std::errc() || read.ptr != value.data() + value.size())
        refuse(kind, value, "is no value of the kind");
    append(bytes, &number, sizeof number);
}

void appendTruth(const std::string& value, std::vector<char>& bytes) {
    const bool truth = value == "true" || value == "1";
    if (!truth && value != "false" && value != "0") {
        throw Failure(kWrongUsage, "\"" + value + "\" is neither true nor false");
    }
    append(bytes, &truth, sizeof truth);
}

void appendText(const std::string& value, std::vector<char>& bytes) {
    const std::wstring text = StringAlgorithm::UTF8Decode(value.c_str());
    if (WideString(text.c_str()).string() != value) {
        throw Failure(kWrongUsage, "\"" + value + "\" is not text in UTF-8");
    }
    append(bytes, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
}

void appendBytes(const std::string& value, std::vector<char>& bytes) {
    std::vector<char> decoded(StringAlgorithm::DecodeBase64(value.c_str(), nullptr));
    StringAlgorithm::DecodeBase64(value.c_str(), decoded.data());
    if (decoded.empty() && !value.empty()) throw Failure(kWrongUsage, "the bytes are not given in base64");
    append(bytes, decoded.data(), decoded.size());
}

}  // namespace

tForm formOf(tValue kind) {
    if (kind == kBinary || kind == kStruct) return tForm::kBytes;
    if (kind >= kUUID && kind <= kVersion) return tForm::kTexts;
    if (kind == kBool) return tForm::kTruths;
    if (kind >= kInt8 && kind <= kUInt64) return tForm::kIntegers;
    if (kind >= kScalar && kind <= kMtx4x4) return tForm::kReals;
    return tForm::kNothing;
}

unsigned int componentsOf(tValue kind) {
    static constexpr unsigned int kOfVectors[] = {2, 3, 4, 4, 9, 16};
    return kind >= kVec2 && kind <= kMtx4x4 ? kOfVectors[kind - kVec2] : 1;
}

std::vector<char> bytesOf(const IVisitor::tPrimitive& item) {
    std::vector<char> bytes(std::size_t{item.dimension} * item.stride);
    if (!item.get(bytes.data(), 0, item.dimension)) bytes.clear();
    return bytes;
}

std::vector<std::string> valuesOf(tValue kind, std::span<const char> bytes) {
    std::vector<std::string> values;
    switch (formOf(kind)) {
        case tForm::kNothing:
            break;
        case tForm::kBytes:
            if (bytes.empty()) break;
            values.emplace_back(StringAlgorithm::EncodeBase64(bytes.data(), bytes.size(), nullptr), '\0');
            StringAlgorithm::EncodeBase64(bytes.data(), bytes.size(), values.back().data());
            break;
        case tForm::kTexts:
            appendTexts(bytes, values);
            break;
        case tForm::kTruths:
            for (const char byte : bytes) values.emplace_back(byte ? "true" : "false");
            break;
        case tForm::kIntegers:
        case tForm::kReals:
            withType(kind, [&](auto number) { appendNumbers<decltype(number)>(bytes, values); });
    }
    return values;
}

std::vector<long double> numbersOf(tValue kind, std::span<const char> bytes) {
    std::vector<long double> numbers;  // whose mantissa takes 64 bits
    if (formOf(kind) != tForm::kIntegers && formOf(kind) != tForm::kReals) return numbers;
    withType(kind, [&](auto number) {
        for (std::size_t i = 0; i + sizeof number <= bytes.size(); i += sizeof number) {
            std::memcpy(&number, bytes.data() + i, sizeof number);
            numbers.push_back(static_cast<long double>(number));
        }
    });
    return numbers;
}

std::vector<char> parseValues(tValue kind, std::span<const std::string> values) {
    std::vector<char> bytes;
    const unsigned int components = componentsOf(kind);
    if (values.size() % components != 0) {
        throw Failure(kWrongUsage, std::string("a ") + nameOf(kind) + " takes " + std::to_string(components) +
                                       " numbers, or a multiple of that: " + std::to_string(values.size()) +
                                       " were given");
    }
    for (const std::string& value : values) {
        switch (formOf(kind)) {
            case tForm::kNothing:
                throw Failure(kWrongUsage, "values of this kind cannot be typed");
            case tForm::kBytes:
                appendBytes(value, bytes);
                break;
            case tForm::kTexts:
                appendText(value, bytes);
                break;
            case tForm::kTruths:
                appendTruth(value, bytes);
                break;
            case tForm::kIntegers:
            case tForm::kReals:
                withType(kind, [&](auto number) { appendNumber<decltype(number)>(kind, value, bytes); });
        }
    }
    return bytes;
}

tValue kindNamed(const std::string& name) {
    for (unsigned int kind = kBinary; kind <= kStruct; ++kind) {
        if (name == nameOf(static_cast<tValue>(kind))) return static_cast<tValue>(kind);
    }
    return {};
}

}  // namespace lvp::tool
