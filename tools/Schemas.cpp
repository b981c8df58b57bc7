#include "tools/Schemas.h"

#include <fstream>

#include "lumivard/platform/core/io/FileReader.h"
#include "lumivard/platform/core/string/StringAlgorithm.h"
#include "lumivard/platform/stores.h"
#include "tools/ExitStatus.h"
#include "tools/FaultPrinter.h"
#include "tools/Files.h"
#include "tools/Text.h"

namespace lvp::tool {

using lumivard::platform::core::string::StringAlgorithm;
using lumivard::platform::data::format::xml::IXMLFrontEnd;

namespace {

/// Whether a file begins as XML does: with "<" after a byte order mark and white space. Stores begin with a zero.
bool isDocument(const std::string& file) {
    std::ifstream in(file, std::ios::binary);
    for (char byte; in.get(byte);) {
        if (byte == '<') return true;
        const bool mark = byte == '\xEF' || byte == '\xBB' || byte == '\xBF' || byte == '\xFE' || byte == '\xFF';
        if (!mark && byte != ' ' && byte != '\t' && byte != '\n' && byte != '\r') return false;
    }
    return false;
}

}  // namespace

Schemas::Schemas(const std::vector<std::string>& sources) : _sources(sources) {
    for (const std::string& source : sources) {
        if (isDocument(source)) {
            readDocument(source);
            continue;
        }
        _stores.push_back(openToRead(source));
        requireSetUp(*_stores.back(), source);
        _locator->push(_stores.back().get());
    }
}

void Schemas::readDocument(const std::string& document) {
    requireReadable(document);
    _stores.push_back(lumivard::platform::stores::memory());
    // A locator of its own: what one finds in a document that is half read, it keeps.
    const auto above = ISchemaLocator::make(nullptr);
    for (const auto& store : _stores) above->push(store.get());
    lumivard::platform::core::io::FileReader reader(document);
    FaultPrinter faults(document);
    IXMLFrontEnd::parse(_stores.back().get(), &reader, above.get(), nullptr, &faults);
    if (faults.count() != 0) _faulty = true;
    _locator->push(_stores.back().get());
}

std::vector<tNamedSchema> Schemas::resolve(const std::string& uris) const {
    std::vector<tNamedSchema> found;
    for (std::size_t begin = 0; begin <= uris.size();) {
        const std::size_t end = std::min(uris.find(';', begin), uris.size());
        tNamedSchema named{uris.substr(begin, end - begin), {}};
        begin = end + 1;
        named.schema = _locator->resolve(StringAlgorithm::UTF8Decode(named.uri.c_str()).c_str());
        if (!named.schema) {
            std::string sources;
            for (const std::string& source : _sources) sources += (sources.empty() ? "" : ", ") + source;
            throw Failure(kCannotOpen, "no schema " + printable(named.uri) + " in " + printable(sources));
        }
        found.push_back(std::move(named));
    }
    return found;
}

}  // namespace lvp::tool
