#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"
#include "lumivard/platform/core/xml/XMLSerializer.h"
#include "lumivard/platform/data/metadata/tValue.h"

namespace lumivard::platform::data {

namespace Record {
class Primitive;
}
namespace metadata {
class ISchemaLocator;
class IStructLayout;
}  // namespace metadata

using core::storage::datastore::IDataStore;

/// Writes primitives as elements, straight from their records: most of a tree are primitives, and an in-memory object
/// for each of them would count itself in its record twice.
///
/// What an element needs is copied before any of it is written, into memory that the next one uses again: a writer or a
/// locator that changes the store does no harm. Nothing is owned; `locator` is for structs and may be null. One thread.
/// Exceptions of the store, the locator and the writer pass through.
class PrimitiveWriter {
public:
    PrimitiveWriter(IDataStore* store, core::xml::XMLSerializer& serializer, metadata::ISchemaLocator* locator)
        : _store(store), _serializer(serializer), _locator(locator) {}

    /// Copies what the next `write` writes. The record is long enough for its kind.
    void load(const Record::Primitive& record);

    /// The name of what was copied, good until the next copy.
    const std::wstring& name() const { return _name; }

    /// Writes the element with all that is in it; nothing for a value kind that does not exist.
    void write();

private:
    void loadValue(std::span<const char> bytes);
    void writeAttributes();
    /// False when there are none.
    bool writeNames();
    void writeValue(bool named);
    void writeTexts(bool named);
    void writeBytes();
    void writeNumbers();
    void writeStructs();
    void writeBlocks(metadata::IStructLayout& layout);

    /// Writes a piece of the value, in a sub-element of its own where it has to be told from the names.
    template <class Write>
    void inVal(bool wrapped, Write write);

    /// Gathers numbers, one after the other with a blank between them, and writes them.
    class Numbers;

    IDataStore* _store;
    core::xml::XMLSerializer& _serializer;
    metadata::ISchemaLocator* _locator;

    // Of the primitive that is written.
    unsigned int _offset = IDataStore::BADOFF;
    bool _localized = false;  ///< it may have localized names
    bool _external = false;
    metadata::tValue _kind{};
    unsigned int _unit = 0;
    std::wstring _name;
    std::wstring _locale;
    std::wstring _base;
    std::wstring _uri;
    std::wstring _texts;        ///< the value of a text kind, with its zeros
    std::vector<char> _values;  ///< that of any other kind
};

}  // namespace lumivard::platform::data
