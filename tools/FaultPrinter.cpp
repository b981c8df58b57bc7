#include "tools/FaultPrinter.h"

#include <iostream>

#include "tools/Text.h"

namespace lvp::tool {

FaultPrinter::FaultPrinter(const std::string& document) : _document(printable(document)) {}

void FaultPrinter::located(unsigned long line, unsigned long column) {
    _place = ':';
    _place += std::to_string(line);
    _place += ':';
    _place += std::to_string(column);
}

void FaultPrinter::malformed(const WideString& message) {
    _place.clear();
    print(message);
    _brokeOff = true;
}

void FaultPrinter::print(const WideString& message) {
    std::cerr << _document << _place << ": " << printable(message.string()) << '\n';
    ++_count;
}

}  // namespace lvp::tool
