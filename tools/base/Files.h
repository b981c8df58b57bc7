#pragma once

#include <memory>
#include <string>
#include <vector>

#include "lumivard/platform/core/io/IDataWriter.h"
#include "lumivard/platform/core/storage/datastore/IDataStore.h"
#include "lumivard/platform/stores/StoreError.h"

namespace lvp::tool {

using lumivard::platform::core::storage::datastore::IDataStore;

/// Opens a store; a failure is one of `kCannotOpen` with the store's own words. `openToChange` makes none where there
/// is none.
std::unique_ptr<IDataStore> openToRead(const std::string& store);
std::unique_ptr<IDataStore> openToWrite(const std::string& store);
std::unique_ptr<IDataStore> openToChange(const std::string& store);

/// Throws the failure of `kCannotOpen` for a store that could not be opened; of a document it says what to do with it.
[[noreturn]] void refuseStore(const std::string& store, const lumivard::platform::stores::StoreError& error);

/// Whether a file begins as XML does in any encoding: with "<" behind white space, a byte order mark, and the zeros of
/// wider characters. Stores begin with zeros and go on otherwise. So are pipes, and "-", which is standard input.
bool isDocument(const std::string& file);

/// Whether two names lead to one file that is there.
bool isSameFile(const std::string& a, const std::string& b);

/// Throws a failure of `kCannotOpen` unless the document can be read.
void requireReadable(const std::string& document);

/// Throws a failure of `kCannotOpen` for a store that holds nothing yet.
void requireSetUp(IDataStore& store, const std::string& name);

/// Throws a failure of `kCannotOpen` where an output, "the document" or the like, would replace what it is made from,
/// or a lock file of that.
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
