#include "check/Case.h"

#include "lumivard/platform/core/string/WideString.h"
#include "record/Entity.h"
#include "record/Offsets.h"

namespace lumivard::platform::data::Check {

std::vector<unsigned int> Case::entries(unsigned int list) {
    std::vector<unsigned int> entries;
    reading(list, [&] { entries = Record::Offsets(&store, census[list].offset).get(); });
    return entries;
}

std::wstring Case::name(unsigned int item) {
    std::wstring name;
    reading(item, [&] { name = Record::Entity(&store, census[item].offset).name(); });
    return name;
}

std::string Case::describe(unsigned int offset) const {
    if (offset == IDataStore::BADOFF) return "none";
    std::string words = "record " + std::to_string(offset) + ", ";
    const unsigned int number = census.find(offset);
    if (number == Census::kNone) return words + "which is not there";
    return words + (census[number].readable ? kindName(census[number].kind) : "which cannot be read");
}

const char* kindName(Record::tType kind) {
    switch (kind) {
        case Record::kRoot:
            return "a root";
        case Record::kPrimitive:
            return "a primitive";
        case Record::kTable:
            return "a table";
        case Record::kOffsets:
            return "a list";
        case Record::kContainer:
            return "a container";
        case Record::kLocale:
            return "localized names";
    }
    return "of an unknown kind";
}

std::wstring shortened(std::wstring text) {
    constexpr std::size_t kMost = 60;
    return text.size() > kMost ? text.substr(0, kMost) + L"\u2026" : text;
}

std::string quoted(const std::wstring& text) {
    return '"' + core::string::WideString(shortened(text).c_str()).string() + '"';
}

}  // namespace lumivard::platform::data::Check
