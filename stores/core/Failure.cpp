#include "stores/core/Failure.h"

#include <system_error>

namespace lumivard::platform::stores {
namespace {

constexpr std::size_t kLongestName = 200;  // bytes of a name that a message shows

bool isControl(unsigned char byte) {
    return byte < 0x20 || byte == 0x7F;
}

void addEscaped(std::string& text, unsigned char byte) {
    static constexpr char kDigits[] = "0123456789ABCDEF";
    text += "\\x";
    text += kDigits[byte >> 4];
    text += kDigits[byte & 0x0F];
}

// The name without what would steer a terminal. Of a long one the end is shown, which tells files of a folder apart.
std::string shown(const std::string& name) {
    std::string text;
    std::size_t at = 0;
    if (name.size() > kLongestName) {
        text = "...";
        at = name.size() - kLongestName;
        while (at < name.size() && (static_cast<unsigned char>(name[at]) & 0xC0) == 0x80)
            ++at;  // not inside a character
    }
    for (; at < name.size(); ++at) {
        const auto byte = static_cast<unsigned char>(name[at]);
        if (isControl(byte)) {
            addEscaped(text, byte);
        } else {
            text += name[at];
        }
    }
    return text;
}

}  // namespace

StoreError failure(const std::string& attempt, const std::string& name, const std::string& reason, const char* what) {
    return StoreError("Cannot " + attempt + ' ' + what + " \"" + shown(name) + "\": " + reason + ".");
}

std::string systemReason(int error) {
    return std::generic_category().message(error);
}

}  // namespace lumivard::platform::stores
