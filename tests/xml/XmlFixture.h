#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "design/Container.h"
#include "design/Primitive.h"
#include "design/Table.h"
#include "lumivard/platform/core.h"
#include "lumivard/platform/data.h"
#include "metadata/Root.h"
#include "schema/Finder.h"
#include "tests/support/StoreFixture.h"
#include "tests/support/StoredRecords.h"

namespace lumivard::platform::test_support {

using core::memory::SharedPtr;
using core::storage::datastore::IDataStore;
using core::string::WideString;
using data::format::xml::IXMLFrontEnd;
using data::metadata::ISchemaLocator;
namespace Design = data::Design;
namespace Structural = data::Structural;
namespace metadata = data::metadata;
namespace units = data::units;

/// One line that a reporter heard, and the place that it was told right before; 0 for none.
struct Report {
    std::string message;
    unsigned long line = 0;
    unsigned long column = 0;
    bool operator==(const Report&) const = default;
};

inline void PrintTo(const Report& report, std::ostream* out) {
    *out << report.line << ':' << report.column << ": " << report.message;
}

/// Keeps what it hears.
class Reporter final : public IXMLFrontEnd::IErrorReporter {
public:
    void report(const WideString& message) override {
        reports.push_back({message.string(), _line, _column});
        _line = _column = 0;
    }
    void located(unsigned long line, unsigned long column) override {
        _line = line;
        _column = column;
    }
    void malformed(const WideString& message) override { broken.push_back(message.string()); }

    std::vector<std::string> messages() const {
        std::vector<std::string> messages;
        for (const Report& report : reports) messages.push_back(report.message);
        return messages;
    }

    std::vector<Report> reports;
    std::vector<std::string> broken;

private:
    unsigned long _line = 0;
    unsigned long _column = 0;
};

using tMessages = std::vector<std::string>;
inline const tMessages kNone;

/// Reads a well-formed document into a store and gives what was reported.
inline tMessages readInto(IDataStore* store, const std::string& document, ISchemaLocator* locator = nullptr) {
    Reporter reporter;
    core::io::MemoryReader reader(document);
    IXMLFrontEnd::parse(store, &reader, locator, nullptr, &reporter);
    EXPECT_EQ(reporter.broken, kNone) << document;
    return reporter.messages();
}

/// The document of an item, without the XML declaration.
inline std::string writtenFrom(IDataStore* store, unsigned int offset = 0, ISchemaLocator* locator = nullptr) {
    constexpr std::string_view kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    core::io::MemoryWriter writer;
    IXMLFrontEnd::serialize(store, &writer, locator, offset);
    EXPECT_EQ(writer.bytes().substr(0, kDeclaration.size()), kDeclaration);
    return writer.bytes().substr(kDeclaration.size());
}

/// All elements of a primitive as they are stored; of a text, one for each character and each zero.
template <class T>
std::vector<T> valuesOf(IDataStore* store, unsigned int offset) {
    Design::Primitive primitive(store, offset);
    EXPECT_EQ(sizeof(T), Design::Primitive::stride(primitive.valuetype()));
    std::vector<T> values(primitive.dimension());
    primitive.get(reinterpret_cast<char*>(values.data()), 0, primitive.dimension());
    return values;
}

/// The stored characters of a text, its zeros as "|".
inline std::wstring textOf(IDataStore* store, unsigned int offset) {
    std::wstring text;
    for (const wchar_t character : valuesOf<wchar_t>(store, offset)) text += character ? character : L'|';
    return text;
}

/// Documents and two empty stores of each kind.
class XmlTest : public StoreTest {
protected:
    tMessages read(const std::string& document, ISchemaLocator* locator = nullptr) {
        return readInto(store(), document, locator);
    }
    std::string written(unsigned int offset = 0, ISchemaLocator* locator = nullptr) {
        return writtenFrom(store(), offset, locator);
    }

    /// What is written out again of a document that is read without a fault.
    std::string rewritten(const std::string& document) {
        EXPECT_EQ(read(document), kNone) << document;
        return written();
    }

    /// The offset of an item by its path from the record at offset 0; `BADOFF` when there is none.
    unsigned int at(const wchar_t* path) { return data::Schema::Finder(store(), 0, path).offset; }

    template <class T>
    std::vector<T> values(unsigned int offset = 0) {
        return valuesOf<T>(store(), offset);
    }
    std::wstring text(unsigned int offset = 0) { return textOf(store(), offset); }
};

/// An unknown number of records: `BADOFF` names none of them.
inline constexpr unsigned int kNoItem = IDataStore::BADOFF;

}  // namespace lumivard::platform::test_support
