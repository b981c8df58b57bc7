#include "tools/documents/Faults.h"

#include <iostream>

#include "tools/base/Text.h"

namespace lvp::tool {

void Faults::located(unsigned long line, unsigned long column) {
    _line = line;
    _column = column;
}

void Faults::report(const WideString& message) {
    hand(message);
}

void Faults::malformed(const WideString& message) {
    _brokeOff = true;
    _line = 0;
    _column = 0;
    hand(message);
}

void Faults::hand(const WideString& message) {
    ++_count;
    _hear({_line, _column, message.string()});
}

void printFault(const std::string& document, const Faults::tFault& fault) {
    std::cerr << printable(document);
    if (fault.line != 0) std::cerr << ':' << std::to_string(fault.line) << ':' << std::to_string(fault.column);
    std::cerr << ": " << printable(fault.message) << '\n';
}

}  // namespace lvp::tool
