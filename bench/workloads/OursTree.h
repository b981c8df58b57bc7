#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "bench/workloads/Checksum.h"
#include "bench/workloads/Data.h"
#include "bench/workloads/TreeWorkloads.h"
#include "lumivard/platform/core.h"
#include "lumivard/platform/data.h"

namespace lvp::bench {

namespace data = lumivard::platform::data;

/// The tree in a store of ours, as a client would hold it: an engine for the workloads (see TreeWorkloads.h), without
/// the store, which a class that is derived from it opens.
///
/// The top is a group; an item is a table in it, since only in tables a primitive is made with a unit. The top is
/// opened once, to write; what is read is shown to a visitor. The store's guard is held as long as the store is open,
/// which makes that of each call cheap, and keeps a reader from asking before each call whether the file has changed.
class OursTree {
public:
    using tPath = std::wstring;
    using tName = std::wstring;

    /// A full path.
    static tPath pathOf(Place place);
    static tName nameOf(unsigned int number);

    void item(const std::string& name);
    void endItem() { _item.reset(); }
    void real(std::string_view name, std::string_view unit, double value);
    void vector(std::string_view name, std::string_view unit, tVector value);
    void text(std::string_view name, std::string_view unit, std::string_view value);
    void integers(std::string_view name, std::string_view unit, tIntegers value);
    void flag(std::string_view name, std::string_view unit, bool value);
    void child(const tName& name);

    void flush() { _store->flush(); }
    void close();
    void readTree(Checksum& sum);
    void read(const tPath& path, Checksum& sum);
    void overwrite(const tPath& path, double value);
    bool find(const tName& name);
    std::size_t walk();

    /// Lets the library make its index of the top's children, which it then keeps.
    void index();

    data::IDataStore& store() { return *_store; }

protected:
    /// Takes over a store, and opens or makes its top to write.
    void begin(std::unique_ptr<data::IDataStore> store, tAccess access);

private:
    void add(std::string_view name, data::metadata::tValue kind, std::string_view unit, const void* value,
             unsigned int elements);

    std::unique_ptr<data::IDataStore> _store;
    std::unique_ptr<data::IDataStore::ILock> _guard;
    data::SharedPtr<data::structure::IContainer> _top;
    data::SharedPtr<data::metadata::ITable> _item;
};

/// In a file.
class OursFile : public OursTree {
public:
    static constexpr const char* kEnding = "lvp";
    static constexpr bool kLasts = true;
    static std::vector<std::filesystem::path> files(const std::filesystem::path& file);

    void create(const std::filesystem::path& file) { open(file, tAccess::kWrite); }
    void open(const std::filesystem::path& file, tAccess access);
};

/// In a file, from which all is read through objects, one opened for each property and the top for each path.
class OursObjects : public OursFile {
public:
    void readTree(Checksum& sum);
    void read(const tPath& path, Checksum& sum);
};

/// In memory.
class OursMemory : public OursTree {
public:
    static constexpr const char* kEnding = "memory";
    static constexpr bool kLasts = false;
    static std::vector<std::filesystem::path> files(const std::filesystem::path&) { return {}; }

    void create(const std::filesystem::path& file);

    /// Begins with what a document holds.
    void parse(lumivard::platform::core::io::IDataReader& reader,
               data::format::xml::IXMLFrontEnd::IErrorReporter& reporter);
};

/// W6 and W7, and W8.
void writeDocument(const Case& run);
void readDocument(const Case& run);
void runRecordsInFile(const Case& run);
void runRecordsInMemory(const Case& run);

}  // namespace lvp::bench
