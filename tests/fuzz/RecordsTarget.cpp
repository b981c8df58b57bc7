#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/fuzz/HostileRecords.h"
#include "tests/fuzz/RecordsClient.h"
#include "tests/fuzz/RoundTrip.h"
#include "tests/fuzz/Targets.h"

namespace lumivard::platform::fuzz {

namespace {

std::vector<std::string> recordsOf(IDataStore& store) {
    std::vector<std::string> records;
    for (unsigned int offset = 0; offset < store.extent(); ++offset) {
        std::string& bytes = records.emplace_back(store.size(offset), '\0');
        store.read(offset, bytes.data(), 0xFFFFFFFFu);
    }
    return records;
}

/// Runs something that may run out of memory, or meet a store that refuses: the only kinds of exception that the
/// library lets out.
template <class Action>
void allowed(Action action) {
    try {
        action();
    } catch (const std::bad_alloc&) {
    } catch (const std::runtime_error&) {
    }
}

/// Documents of any records are well-formed, or have no element.
void checkDocument(IDataStore& store, ISchemaLocator& locator) {
    constexpr const char* kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    const std::string document = written(&store, &locator);
    if (document == kDeclaration) return;
    const std::unique_ptr<IDataStore> again = stores::memory();
    Listener listener;
    core::io::MemoryReader reader(document);
    IXMLFrontEnd::parse(again.get(), &reader, &locator, nullptr, &listener);
    require(listener.broken.empty(), "what was written is well-formed: " + listener.broken + "\n" + document);
}

}  // namespace

int fuzzRecords(const std::uint8_t* data, std::size_t size) {
    const auto store = stores::memory();
    const auto other = stores::memory();
    HostileRecords records(data, size);
    records.fill(*store);
    const auto locator = ISchemaLocator::make(store.get());

    const std::vector<std::string> before = recordsOf(*store);
    allowed([&] { RecordsClient(*store, *other, *ISchemaLocator::make(store.get())).look(); });
    require(recordsOf(*store) == before, "who only looks leaves the records as they were");
    allowed([&] { checkDocument(*store, *locator); });
    allowed([&] { RecordsClient(*store, *other, *locator).resolve(); });
    allowed([&] { RecordsClient(*store, *other, *locator).copy(); });
    allowed([&] { RecordsClient(*store, *other, *locator).change(); });
    allowed([&] { checkDocument(*store, *locator); });
    allowed([&] { RecordsClient(*store, *other, *locator).destroy(); });
    allowed([&] { RecordsClient(*store, *other, *locator).look(); });
    return 0;
}

}  // namespace lumivard::platform::fuzz
