#pragma once

#include <map>
#include <string>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"

namespace lumivard::platform::test_support {

/// A store that keeps to the contract and to nothing else, so that code which relies on a habit of other stores fails.
///
/// Its offsets are 0, 16, 48, 96, ...: the distance grows by 16 each time, so that neither "the next one" nor "the
/// number of records" can be guessed. `lock()` is null, `access()` is null, and `extent()` counts bytes. It lives in
/// memory and throws `std::out_of_range` for an `update`, `append` or `erase` of an offset that names no record, and
/// `std::logic_error` for the `size` of none.
class OddStore final : public core::storage::datastore::IDataStore {
public:
    ILock* lock() override { return nullptr; }
    void flush() override {}
    void version(unsigned int number) override { _version = number; }
    unsigned int version() const override { return _version; }
    unsigned long long extent() override { return _next; }
    unsigned int create(const void* data, unsigned int size) override;
    void append(unsigned int offset, const void* data, unsigned int size) override;
    void update(unsigned int offset, const void* data, unsigned int size, bool changed) override;
    unsigned int size(unsigned int offset) override;
    void read(unsigned int offset, void* buffer, unsigned int size) override;
    void erase(unsigned int offset) override;

private:
    std::map<unsigned int, std::string> _records;
    unsigned int _next = 0;
    unsigned int _step = 16;
    unsigned int _version = 0;
};

}  // namespace lumivard::platform::test_support
