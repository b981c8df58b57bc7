#pragma once

#include <memory>
#include <string>
#include <vector>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"
#include "lumivard/platform/data/metadata/ISchema.h"
#include "lumivard/platform/data/metadata/ISchemaLocator.h"
#include "tools/base/Files.h"

namespace lvp::tool {

using lumivard::platform::data::SharedPtr;
using lumivard::platform::data::metadata::ISchema;
using lumivard::platform::data::metadata::ISchemaLocator;

/// One schema that a list of URIs names.
struct tNamedSchema {
    std::string uri;
    SharedPtr<ISchema> schema;
};

/// The stores and documents of schemas that a command was given, and a locator over them.
class Schemas {
public:
    using IDataStore = lumivard::platform::core::storage::datastore::IDataStore;

    /// Opens them all: a file that begins like XML is read as a document, whose schemas may use each other, each those
    /// above it, and those of the sources before; any other is opened as a store. Faults of documents are printed; one
    /// that breaks off is a failure of `kCannotOpen`.
    explicit Schemas(const std::vector<std::string>& sources);

    /// A store to read, which may be one of those: a process opens a store once. It belongs to this object. Throws a
    /// failure of `kCannotOpen` where it is not there or empty.
    IDataStore& storeToRead(const std::string& store);

    /// The locator; null when no source was given.
    ISchemaLocator* locator() const { return _sources.empty() ? nullptr : _locator.get(); }

    /// The same, which finds nothing where no source was given.
    ISchemaLocator* all() const { return _locator.get(); }

    /// Whether a document had faults.
    bool faulty() const { return _faulty; }

    /// The schemas of a list of URIs, joined by ";", one by one. Throws a failure of `kCannotOpen` for one that is not
    /// found, which tells names that are near.
    std::vector<tNamedSchema> resolve(const std::string& uris) const;

private:
    void readDocument(const std::string& document);
    void search(IDataStore& store);
    [[noreturn]] void refuse(const std::string& uri) const;

    struct tStore {
        std::string name;  ///< empty for a document
        HeldStore store;
    };

    std::vector<std::string> _sources;
    std::vector<tStore> _stores;
    std::vector<IDataStore*> _searched;                                  ///< those of them that hold schemas
    SharedPtr<ISchemaLocator> _locator = ISchemaLocator::make(nullptr);  // goes before the stores
    bool _faulty = false;
};

}  // namespace lvp::tool
