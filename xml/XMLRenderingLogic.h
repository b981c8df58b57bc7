#pragma once

#include <cstddef>
#include <unordered_set>
#include <utility>
#include <vector>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"
#include "lumivard/platform/core/xml/XMLSerializer.h"
#include "record/tType.h"
#include "xml/PrimitiveWriter.h"
#include "xml/SiblingNames.h"

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
    ///
    /// Of a list that names a record twice, two records of one name, or one that can be no child, only so many entries
    /// are written as there are different children. That number is asked for when the first such entry is met: nearly
    /// all lists have none.
    struct tLevel {
        tLevel(unsigned int childList, std::vector<unsigned int> children)
            : list(childList), entries(std::move(children)) {
            names.reserve(entries.size());
        }

        unsigned int list;
        std::vector<unsigned int> entries;
        std::size_t next = 0;
        SiblingNames names;
        bool counted = false;
    };

    /// Writes an item with all below it.
    void translate(unsigned int offset);

    /// Writes the next child of the innermost open element, or begins it.
    void beginNext();

    /// The kind of a record that can be written; `kOffsets`, which is no item, for one that cannot, and for a child of
    /// `among` whose turn does not come. A primitive is then ready to be written.
    Record::tType look(unsigned int offset, tLevel* among);

    /// Leaves as many entries as there are different children. False when the one that was taken last is not left.
    bool count(tLevel& level);

    /// Writes a primitive, or begins a set and opens a level for it.
    void begin(unsigned int offset, Record::tType kind);
    void beginSet(Metadata::Set& set, Element& element);

    IDataStore* _store;
    core::xml::XMLSerializer& _serializer;
    PrimitiveWriter _primitives;
    std::vector<tLevel> _levels;
    std::unordered_set<unsigned int> _written;
};

}  // namespace lumivard::platform::data
