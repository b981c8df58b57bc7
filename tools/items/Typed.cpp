#include "tools/items/Typed.h"

#include <algorithm>
#include <array>

#include "tools/base/ExitStatus.h"
#include "tools/base/Nearest.h"
#include "tools/base/Units.h"

namespace lvp::tool {

namespace {

/// Whether a word among numbers or truth values is none: "Meter", but not "-1", "inf" or "true".
bool isName(const std::string& word) {
    const std::string small = lower(word);
    const bool letter = !small.empty() && small[0] >= 'a' && small[0] <= 'z';
    constexpr std::array kValues{"inf", "infinity", "nan", "true", "false"};
    return letter && std::find(kValues.begin(), kValues.end(), small) == kValues.end();
}

}  // namespace

tTyped typedValue(tValue kind, std::vector<std::string> words, const std::string& unit) {
    tTyped value;
    const tForm form = formOf(kind);
    const bool ofNumbers = form == tForm::kReals || form == tForm::kIntegers || form == tForm::kTruths;
    if (!unit.empty()) value.unit = unitNamed(unit);
    if (ofNumbers && !words.empty() && isName(words.back())) {
        const tUnit named = unitNamed(words.back());
        if (!unit.empty() && named != value.unit) {
            throw Failure(kWrongUsage, "two units are given: " + words.back() + " and " + unit);
        }
        value.unit = named;
        words.pop_back();
    }
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
