#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "tests/fault/calls/World.h"

namespace lumivard::platform::test_support::fault {

/// What a client does with a library of materials: reads it with its schemas, walks over it, changes it, copies, checks
/// and writes it, flushes and closes it.
class Demo {
public:
    Demo(std::string schemas, std::string materials)
        : _schemaText(std::move(schemas)), _materialText(std::move(materials)) {}

    /// Opens the stores, that of the materials in a file, or in memory for an empty path, and does all of it but the
    /// closing. Throws what the library throws, and `std::bad_alloc` where a reporter was told that reading broke off.
    void run(const std::filesystem::path& file);

    /// The materials as a document; empty where their store was not opened. And the same of what is in the file.
    std::string document() const;
    static std::string documentIn(const std::filesystem::path& file);

    /// The first rule that the store of the materials breaks, as the checker finds it; empty for a sound one.
    std::string damage() const;

    /// Lists an item in the store of the materials that there is not, once that has a root.
    void enlistNothing();

    /// Whether a flush was tried and did not come back.
    bool failedToFlush() const { return _flushing; }

    void close() { _store.reset(); }

private:
    class Reporter;

    void read(IDataStore& store, const std::string& text, ISchemaLocator* locator);
    void walk();
    void change(ISchemaLocator& locator);

    const std::string _schemaText;
    const std::string _materialText;
    std::unique_ptr<IDataStore> _schemas;
    std::unique_ptr<IDataStore> _store;
    bool _flushing = false;
};

}  // namespace lumivard::platform::test_support::fault
