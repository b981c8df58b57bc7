#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include "lumivard/platform/store_contract/ForwardingStore.h"
#include "tests/check/RepairFault.h"
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
void checkDocument(IDataStore& store, ISchemaLocator& locator, unsigned int offset) {
    constexpr const char* kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    const std::string document = writtenAt(&store, &locator, offset);
    if (document == kDeclaration) return;
    const std::unique_ptr<IDataStore> again = stores::memory();
    Listener listener;
    core::io::MemoryReader reader(document);
    IXMLFrontEnd::parse(again.get(), &reader, &locator, nullptr, &listener);
    require(listener.broken.empty(), "what was written is well-formed: " + listener.broken + "\n" + document);
}

/// Those of each record, and of none.
void checkDocuments(IDataStore& store, ISchemaLocator& locator) {
    for (unsigned int offset = 0; offset <= store.extent(); ++offset) checkDocument(store, locator, offset);
    checkDocument(store, locator, IDataStore::BADOFF);
}

/// A repair of any records ends, and loses nothing.
void checkRepair(IDataStore& store) {
    constexpr std::size_t kAll = 100'000;
    const std::string fault = test_support::faultOfRepair(store, {.whole = true, .keep = kAll});
    require(fault.empty(), "a repair is done, and loses nothing: " + fault);
}

/// What there is to try on a store of any records, as the first byte has it.
void tryRecords(IDataStore& store, IDataStore& other, std::uint8_t which) {
    const auto locator = ISchemaLocator::make(&store);
    const auto client = [&](void (RecordsClient::*deed)()) {
        allowed([&] { (RecordsClient(store, other, *locator).*deed)(); });
    };
    const auto look = [&] {
        const std::vector<std::string> before = recordsOf(store);
        client(&RecordsClient::look);
        require(recordsOf(store) == before, "who only looks leaves the records as they were");
    };
    const auto write = [&] { allowed([&] { checkDocuments(store, *locator); }); };
    const auto writeAll = [&] { allowed([&] { checkDocument(store, *locator, 0); }); };

    // One deed is tried many times while all of them are tried once, and the fuzzer learns more from it.
    switch (which & 7) {
        case 0:
            look();
            break;
        case 1:
            write();
            break;
        case 2:
            client(&RecordsClient::resolve);
            break;
        case 3:
            client(&RecordsClient::copy);
            break;
        case 4:
            client(which & 8 ? &RecordsClient::read : &RecordsClient::change);
            break;
        case 5:
            client(&RecordsClient::destroy);
            break;
        case 6:
            checkRepair(store);
            break;
        default:
            look();
            write();
            client(&RecordsClient::resolve);
            client(&RecordsClient::copy);
            client(&RecordsClient::change);
            client(&RecordsClient::read);
            writeAll();
            client(&RecordsClient::destroy);
            client(&RecordsClient::look);
    }
}

}  // namespace

int fuzzRecords(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    // Through records that are read where they lie, and through copies of them, which both have to end with the same
    // records: nobody can tell the ways apart but by their speed.
    std::vector<std::string> outcomes[2];
    for (const bool copied : {false, true}) {
        const auto store = stores::memory();
        const auto other = stores::memory();
        store_contract::ForwardingStore plainStore(*store);
        store_contract::ForwardingStore plainOther(*other);
        HostileRecords(data + 1, size - 1).fill(*store);
        if (copied) {
            tryRecords(plainStore, plainOther, data[0]);
        } else {
            tryRecords(*store, *other, data[0]);
        }
        outcomes[copied] = recordsOf(*store);
        for (std::string& record : recordsOf(*other)) outcomes[copied].push_back(std::move(record));
    }
    require(outcomes[0] == outcomes[1], "records are the same whichever way the store offers");
    return 0;
}

}  // namespace lumivard::platform::fuzz
