#pragma once

#include <cstddef>
#include <unordered_set>
#include <vector>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"
#include "lumivard/platform/core/xml/XMLSerializer.h"

namespace lumivard::platform::data {

namespace Metadata {
class Set;
}
namespace metadata {
class ISchemaLocator;
}

class Element;

using core::storage::datastore::IDataStore;

/// Writes a record, with all that lies below it, as a document: depth first, without recursion. All the work is done
/// while it is made.
///
/// It leaves out, with what is below it, whatever is hidden, is no item, is shorter than its kind asks, or is of a type
/// or value kind that does not exist. In a damaged store, in which one set is found in several places, it is written in
/// the first of them: so the writing ends, and the document does not outgrow the store.
///
/// Nothing is owned; `locator` may be null. One thread. Exceptions of the store and of the writer pass through.
class XMLRenderingLogic {
public:
    XMLRenderingLogic(IDataStore* store, core::xml::XMLSerializer& serializer, metadata::ISchemaLocator* locator,
                      unsigned int offset);

private:
    /// The children of an open element, and the one whose turn it is.
    struct tLevel {
        std::vector<unsigned int> entries;
        std::size_t next;
    };

    /// Writes an item with all below it.
    void translate(unsigned int offset);

    /// Writes a primitive, or begins a set and opens a level for it.
    void begin(unsigned int offset);
    void beginSet(Metadata::Set& set, Element& element);
    void writePrimitive(unsigned int offset);

    IDataStore* _store;
    core::xml::XMLSerializer& _serializer;
    metadata::ISchemaLocator* _locator;
    std::vector<tLevel> _levels;
    std::unordered_set<unsigned int> _written;
};

}  // namespace lumivard::platform::data
