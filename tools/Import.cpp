#include <iostream>

#include "lumivard/platform/core/io/FileReader.h"
#include "lumivard/platform/core/string/WideString.h"
#include "lumivard/platform/data/format/xml/IXMLFrontEnd.h"
#include "tools/Commands.h"
#include "tools/Files.h"
#include "tools/Text.h"

namespace lvp::tool {

using lumivard::platform::core::io::FileReader;
using lumivard::platform::core::string::WideString;
using lumivard::platform::data::format::xml::IXMLFrontEnd;

namespace {

/// Prints the faults of a document as they come, each with its place, and counts them.
class FaultPrinter : public IXMLFrontEnd::IErrorReporter {
public:
    explicit FaultPrinter(const std::string& document) : _document(printable(document)) {}

    void located(unsigned long line, unsigned long column) override {
        _place = ':';
        _place += std::to_string(line);
        _place += ':';
        _place += std::to_string(column);
    }
    void report(const WideString& message) override { print(message); }
    void malformed(const WideString& message) override {
        _place.clear();
        print(message);
        _brokeOff = true;
    }

    unsigned long count() const { return _count; }
    bool brokeOff() const { return _brokeOff; }

private:
    void print(const WideString& message) {
        std::cerr << _document << _place << ": " << printable(message.string()) << '\n';
        ++_count;
    }

    std::string _document;
    std::string _place;
    unsigned long _count = 0;
    bool _brokeOff = false;
};

}  // namespace

tExitStatus importDocument(const std::string& document, const std::string& storeName) {
    requireReadable(document);
    const auto store = openToWrite(storeName);
    if (store->extent() != 0) {
        throw Failure(kCannotOpen, "the store " + storeName + " already holds data: give a new file to import into");
    }
    FileReader reader(document);
    FaultPrinter faults(document);
    IXMLFrontEnd::parse(store.get(), &reader, nullptr, nullptr, &faults);
    if (faults.brokeOff()) std::cerr << "lvp-data: the store holds what came before the document broke off\n";
    return faults.count() == 0 ? kDone : kFaults;
}

}  // namespace lvp::tool
