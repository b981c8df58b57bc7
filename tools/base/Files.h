#pragma once

#include <memory>
#include <string>
#include <vector>

#include "lumivard/platform/core/io/IDataWriter.h"
#include "lumivard/platform/core/storage/datastore/IDataStore.h"
#include "lumivard/platform/stores/StoreError.h"

namespace lvp::tool {

using lumivard::platform::core::storage::datastore::IDataStore;

/// A store that is open, and its guard, which is held as long: what is read of it is one state, and in a database that
/// is one transaction.
class HeldStore {
public:
    explicit HeldStore(std::unique_ptr<IDataStore> store) : _store(std::move(store)), _guard(_store->lock()) {}
    HeldStore(HeldStore&&) = default;
    HeldStore& operator=(HeldStore&&) = delete;  // the guard goes before its store

    IDataStore& operator*() const { return *_store; }
    IDataStore* operator->() const { return _store.get(); }

    /// Gives the guard back, after which others may change the store.
    void letGo() { _guard.reset(); }

private:
    std::unique_ptr<IDataStore> _store;
    std::unique_ptr<IDataStore::ILock> _guard;
};

/// Opens a store: a file, or one in a database by its location. A failure is one of `kCannotOpen` with the store's own
/// words. `openToWrite` makes a file where there is none; a store in a database is never made so.
HeldStore openToRead(const std::string& store);
HeldStore openToWrite(const std::string& store);
HeldStore openToChange(const std::string& store);

/// Whether there is a file of that name, so that it has not to be made. Of a store in a database that is taken for
/// granted: opening it tells.
bool isThere(const std::string& store);

/// Throws the failure of `kCannotOpen` for a store that could not be opened; of a document it says what to do with it.
[[noreturn]] void refuseStore(const std::string& store, const lumivard::platform::stores::StoreError& error);

/// Whether a file begins as XML does in any encoding: with "<" behind white space, a byte order mark, and the zeros of
/// wider characters. Stores begin with zeros and go on otherwise. So are pipes, and "-", which is standard input.
bool isDocument(const std::string& file);

/// Whether two names lead to one file that is there, or two locations to one store.
bool isSameStore(const std::string& a, const std::string& b);

/// Throws a failure of `kCannotOpen` unless the document can be read.
void requireReadable(const std::string& document);

/// Throws a failure of `kCannotOpen` for a store that holds nothing yet.
void requireSetUp(IDataStore& store, const std::string& name);

/// Throws a failure of `kCannotOpen` where an output, "the document" or the like, would replace what it is made from,
/// or a lock file of that, or is no file.
void refuseOutput(const char* what, const std::string& output, const std::string& store,
                  const std::vector<std::string>& others);

/// Opens what is written: a file, which appears whole when it is closed, or standard output where no name is given. A
/// failure is one of `kCannotOpen`.
std::unique_ptr<lumivard::platform::core::io::IDataWriter> openOutput(const char* what, const std::string& output);

/// Ends the writing to `std::cout`; a failure is one of `kCannotFinish`.
void flushOutput();

/// Whether standard output is a terminal, where text must not take hold of it.
bool isTerminalOutput();

/// Writes to standard output.
class StandardOutput : public lumivard::platform::core::io::IDataWriter {
public:
    bool open() override { return true; }
    void close() override;
    void write(const void* data, unsigned long size) override;
};

}  // namespace lvp::tool
