#include "tools/items/Typed.h"

#include "tools/base/ExitStatus.h"
#include "tools/base/Units.h"

namespace lvp::tool {

namespace {

/// Whether a word among numbers is none: "Meter", but not "-1" or "inf".
bool isName(const std::string& word) {
    const bool letter = !word.empty() && ((word[0] >= 'a' && word[0] <= 'z') || (word[0] >= 'A' && word[0] <= 'Z'));
    return letter && word != "inf" && word != "nan" && word != "true" && word != "false";
}

}  // namespace

tTyped typedValue(tValue kind, std::vector<std::string> words, const std::string& unit) {
    tTyped value;
    const tForm form = formOf(kind);
    const bool ofNumbers = form == tForm::kReals || form == tForm::kIntegers || form == tForm::kTruths;
    if (ofNumbers && !words.empty() && isName(words.back())) {
        value.unit = unitNamed(words.back());
        words.pop_back();
    }
    if (!unit.empty()) value.unit = unitNamed(unit);
    value.bytes = parseValues(kind, words);
    return value;
}

bool put(lumivard::platform::data::metadata::IPrimitive& primitive, const tTyped& value) {
    const unsigned int stride = primitive.stride();
    if (stride == 0 || value.bytes.size() / stride > 0xFFFFFFFFu) return false;
    const auto count = static_cast<unsigned int>(value.bytes.size() / stride);
    if (primitive.uri().length() != 0 && !primitive.uri(lumivard::platform::data::WideString())) return false;
    return primitive.reset(count) && (count == 0 || primitive.set(value.bytes.data(), 0, count));
}

}  // namespace lvp::tool
