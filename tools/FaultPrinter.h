#pragma once

#include <string>

#include "lumivard/platform/data/format/xml/IXMLFrontEnd.h"

namespace lvp::tool {

/// Prints the faults of a document to standard error as they come, each with its place, and counts them.
class FaultPrinter : public lumivard::platform::data::format::xml::IXMLFrontEnd::IErrorReporter {
public:
    using WideString = lumivard::platform::core::string::WideString;

    explicit FaultPrinter(const std::string& document);

    void located(unsigned long line, unsigned long column) override;
    void report(const WideString& message) override { print(message); }
    void malformed(const WideString& message) override;

    unsigned long count() const { return _count; }
    bool brokeOff() const { return _brokeOff; }

private:
    void print(const WideString& message);

    std::string _document;
    std::string _place;
    unsigned long _count = 0;
    bool _brokeOff = false;
};

}  // namespace lvp::tool
