#pragma once

#include <memory>
#include <string>

#include "tools/schemas/Schemas.h"

namespace lvp::tool {

/// One of two things that are compared: a store, or a document that is read into one in memory.
class Source {
public:
    using IDataStore = Schemas::IDataStore;

    /// Opens it. Faults of a document are printed; one that breaks off is a failure of `kCannotOpen`, since what is
    /// missing of it would show as removed. "/dev/null" is a store that holds nothing, as version control has it.
    Source(const std::string& name, Schemas& schemas);

    IDataStore& store() const { return *_store; }
    const std::string& name() const { return _name; }

    /// How many faults the document had.
    unsigned long faults() const { return _faults; }

private:
    void readDocument(const Schemas& schemas);

    std::string _name;
    std::unique_ptr<IDataStore> _own;
    IDataStore* _store = nullptr;
    unsigned long _faults = 0;
};

}  // namespace lvp::tool
