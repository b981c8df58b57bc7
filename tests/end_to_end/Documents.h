#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "lumivard/platform/core.h"
#include "lumivard/platform/data.h"
#include "lumivard/platform/stores.h"

// Documents into stores and back, as a client does it.
namespace lumivard::platform::test_support {

using core::storage::datastore::IDataStore;
using data::SharedPtr;
using data::WideString;
using data::metadata::ISchemaLocator;

/// Keeps the faults of a document.
class Faults : public data::format::xml::IXMLFrontEnd::IErrorReporter {
public:
    void report(const WideString& message) override { messages.push_back(message.string()); }
    void malformed(const WideString& message) override { messages.push_back(message.string()); }
    std::vector<std::string> messages;
};

/// Reads a document, which has no faults, into a store.
inline void read(IDataStore* store, const std::string& document, ISchemaLocator* locator = nullptr) {
    Faults faults;
    core::io::MemoryReader reader(document);
    data::format::xml::IXMLFrontEnd::parse(store, &reader, locator, nullptr, &faults);
    EXPECT_EQ(faults.messages, std::vector<std::string>{});
}

/// A store as a document.
inline std::string written(IDataStore* store, ISchemaLocator* locator = nullptr) {
    core::io::MemoryWriter writer;
    data::format::xml::IXMLFrontEnd::serialize(store, &writer, locator, 0);
    return writer.bytes();
}

}  // namespace lumivard::platform::test_support
