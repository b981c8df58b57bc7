#include "tools/documents/Faults.h"

#include <charconv>
#include <iostream>
#include <string_view>

#include "tools/base/Text.h"

namespace lvp::tool {

namespace {

/// Takes a text and the number behind it from the front of a message; false where they are not there.
bool take(std::string_view& message, std::string_view text, unsigned long& number) {
    if (message.substr(0, text.size()) != text) return false;
    const char* const end = message.data() + message.size();
    const auto read = std::from_chars(message.data() + text.size(), end, number);
    if (read.ec != std::errc()) return false;
    message = std::string_view(read.ptr, static_cast<std::size_t>(end - read.ptr));
    return true;
}

/// The reader tells the place of what is not well-formed in the message: "line 2, column 5: mismatched tag".
Faults::tFault placed(const std::string& message) {
    constexpr std::string_view kBetween = ": ";
    Faults::tFault fault{};
    std::string_view rest = message;
    if (take(rest, "line ", fault.line) && take(rest, ", column ", fault.column) && rest.substr(0, 2) == kBetween) {
        fault.message = rest.substr(kBetween.size());
        return fault;
    }
    return {0, 0, message.empty() ? "the reading broke off" : message};
}

}  // namespace

void Faults::located(unsigned long line, unsigned long column) {
    _line = line;
    _column = column;
}

void Faults::report(const WideString& message) {
    hand({_line, _column, message.string()});
}

void Faults::malformed(const WideString& message) {
    _brokeOff = true;
    hand(placed(message.string()));
}

void Faults::hand(const tFault& fault) {
    ++_count;
    _hear(fault);
}

void printFault(const std::string& document, const Faults::tFault& fault) {
    std::cerr << printable(document);
    if (fault.line != 0) std::cerr << ':' << std::to_string(fault.line) << ':' << std::to_string(fault.column);
    std::cerr << ": " << printable(fault.message) << '\n';
}

}  // namespace lvp::tool
