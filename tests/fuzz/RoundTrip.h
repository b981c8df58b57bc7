#pragma once

#include <memory>
#include <string>
#include <vector>

#include "lumivard/platform/core.h"
#include "lumivard/platform/data.h"
#include "lumivard/platform/stores.h"
#include "tests/fuzz/Targets.h"

/// What a document has to be when it was read: written, read and written again it is the same, byte for byte.
namespace lumivard::platform::fuzz {

using core::storage::datastore::IDataStore;
using core::string::WideString;
using data::format::xml::IXMLFrontEnd;
using data::metadata::ISchemaLocator;

/// Keeps what it hears, and looks whether that is told as the reader's header says.
class Listener final : public IXMLFrontEnd::IErrorReporter {
public:
    void located(unsigned long line, unsigned long column) override {
        require(line != 0 && column != 0, "a fault has a place");
        _located = true;
    }
    void report(const WideString& message) override {
        const std::string text = message.string();
        require(_located, "the place of a fault comes before its words");
        require(text.find(" : ") != std::string::npos, "a fault names its element: " + text);
        require(broken.empty(), "nothing is told of a document that broke off: " + text);
        _located = false;
        faults.push_back(text);
    }
    void malformed(const WideString& message) override {
        const std::string text = message.string();
        require(broken.empty(), "a document breaks off once: " + text);
        require(!text.empty(), "a document breaks off for a reason");
        broken = text;
    }

    std::vector<std::string> faults;
    std::string broken;

private:
    bool _located = false;
};

/// The document of what lies at an offset.
inline std::string writtenAt(IDataStore* store, ISchemaLocator* locator, unsigned int offset) {
    core::io::MemoryWriter writer;
    IXMLFrontEnd::serialize(store, &writer, locator, offset);
    return writer.bytes();
}

/// The document of a whole store.
inline std::string written(IDataStore* store, ISchemaLocator* locator) {
    return writtenAt(store, locator, 0);
}

/// What a reader says of a struct whose type the writer did not know.
inline constexpr const char* kUntyped = "struct : missing mandatory 'type' attribute for <struct>";

/// Throws a `Find` where what `write` makes of a store does not read without a fault, or is something else when it is
/// written again. A store in which nothing was made has no document.
///
/// The differences that the format itself has between reading and writing (`optional`, `dim`, second names of units,
/// digits of reals beyond the seventh, a `string` without text) are gone after the first writing, for this begins with
/// what was written. A struct whose type no schema tells is written without one and refused at the second reading: of
/// a document with such a struct the second writing is the one to last. What remains are texts and structs that a
/// schema of the locator gives: it has to have none.
template <class Write>
void checkRoundTrip(IDataStore* store, ISchemaLocator* locator, Write write) {
    if (store->extent() == 0) return;
    const std::string first = write(store, locator);
    const std::unique_ptr<IDataStore> again = stores::memory();
    Listener listener;
    core::io::MemoryReader reader(first);
    IXMLFrontEnd::parse(again.get(), &reader, locator, nullptr, &listener);
    require(listener.broken.empty(), "what was written is well-formed: " + listener.broken + "\n" + first);
    const std::size_t untyped = std::erase(listener.faults, kUntyped);
    require(listener.faults.empty(), "what was written has no fault: " +
                                         (listener.faults.empty() ? "" : listener.faults.front()) + "\n" + first);
    if (untyped != 0) return checkRoundTrip(again.get(), locator, write);
    const std::string second = write(again.get(), locator);
    require(first == second, "what was written is written again:\n" + first + "\n" + second);
}

}  // namespace lumivard::platform::fuzz
