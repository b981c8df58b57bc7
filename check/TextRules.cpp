#include "check/TextRules.h"

#include <algorithm>
#include <cstring>
#include <string>

namespace lumivard::platform::data::Check {

namespace {

constexpr std::size_t kWidth = sizeof(wchar_t);

/// One character of a text; sections are not aligned.
unsigned int characterAt(std::span<const char> bytes, std::size_t index) {
    unsigned int character;
    std::memcpy(&character, bytes.data() + index * kWidth, kWidth);
    return character;
}

std::size_t charactersIn(std::span<const char> bytes) {
    return bytes.size() / kWidth;
}

bool isCharacter(unsigned int number) {
    return number < 0xD800 || (number > 0xDFFF && number <= 0x10FFFF);
}

/// The place of the first character of which a question is true; their number where there is none.
template <class Question>
std::size_t findCharacter(std::span<const char> bytes, Question question) {
    const std::size_t count = charactersIn(bytes);
    for (std::size_t index = 0; index < count; ++index) {
        if (question(characterAt(bytes, index))) return index;
    }
    return count;
}

/// Looks for a character that is none.
void judgeCharacters(Case& subject, unsigned int offset, const char* what, std::span<const char> bytes) {
    const std::size_t wrong = findCharacter(bytes, [](unsigned int character) { return !isCharacter(character); });
    if (wrong == charactersIn(bytes)) return;
    constexpr char kDigits[] = "0123456789abcdef";
    std::string digits;
    for (int shift = 28; shift >= 0; shift -= 4) digits += kDigits[(characterAt(bytes, wrong) >> shift) & 15u];
    subject.findings.add(kTextCharacter, offset, std::string(what) + " holds 0x" + digits);
}

}  // namespace

void judgeText(Case& subject, unsigned int offset, const char* what, std::span<const char> bytes, bool required) {
    Findings& findings = subject.findings;
    if (bytes.empty()) {
        if (required) findings.add(kTextEnd, offset, std::string(what) + " is not there, not even its end");
        return;
    }
    if (bytes.size() % kWidth != 0) {
        findings.add(kTextLength, offset, std::string(what) + " has " + std::to_string(bytes.size()) + " bytes");
    }
    const std::size_t end = findCharacter(bytes, [](unsigned int character) { return character == 0; });
    if (end == charactersIn(bytes)) {
        findings.add(kTextEnd, offset, std::string(what) + " has no end");
    } else {
        const auto behind = bytes.subspan((end + 1) * kWidth);
        if (std::any_of(behind.begin(), behind.end(), [](char byte) { return byte != 0; })) {
            findings.add(kTextRest, offset, std::string("something stands behind the end of ") + what);
        }
    }
    judgeCharacters(subject, offset, what, bytes.first(end * kWidth));
}

void judgePairs(Case& subject, unsigned int offset, std::span<const char> bytes) {
    Findings& findings = subject.findings;
    if (bytes.size() % kWidth != 0) {
        findings.add(kTextLength, offset, "the texts have " + std::to_string(bytes.size()) + " bytes");
    }
    const std::size_t characters = charactersIn(bytes);
    if (characters != 0 && characterAt(bytes, characters - 1) != 0) {
        findings.add(kTextEnd, offset, "the last text has no end");
    }
    std::size_t count = 0;
    for (std::size_t index = 0; index < characters; ++index) count += characterAt(bytes, index) == 0 ? 1 : 0;
    if (count % 2 != 0) findings.add(kLocalePairs, offset, "there are " + std::to_string(count) + " texts");
    judgeCharacters(subject, offset, "a text", bytes);
}

bool areCharacters(std::span<const char> bytes) {
    const auto isWrong = [](unsigned int character) { return !isCharacter(character); };
    return findCharacter(bytes, isWrong) == charactersIn(bytes);
}

}  // namespace lumivard::platform::data::Check
