#pragma once

#include <functional>
#include <string>

#include "lumivard/platform/data/format/xml/IXMLFrontEnd.h"

namespace lvp::tool {

/// Hears the faults of a document and hands each on with its place, and counts them.
class Faults : public lumivard::platform::data::format::xml::IXMLFrontEnd::IErrorReporter {
public:
    using WideString = lumivard::platform::core::string::WideString;

    /// A fault; line and column from 1, both 0 where they are not known.
    struct tFault {
        unsigned long line;
        unsigned long column;
        std::string message;
    };
    using tHear = std::function<void(const tFault&)>;

    explicit Faults(tHear hear) : _hear(std::move(hear)) {}

    void located(unsigned long line, unsigned long column) override;
    void report(const WideString& message) override;
    void malformed(const WideString& message) override;

    /// One more fault, of the document as a whole.
    void add(const std::string& message) { hand({0, 0, message}); }

    unsigned long count() const { return _count; }
    bool brokeOff() const { return _brokeOff; }

private:
    void hand(const tFault& fault);

    tHear _hear;
    unsigned long _line = 0;
    unsigned long _column = 0;
    unsigned long _count = 0;
    bool _brokeOff = false;
};

/// Prints a fault of a document to standard error: document, line, column, and what is wrong.
void printFault(const std::string& document, const Faults::tFault& fault);

}  // namespace lvp::tool
