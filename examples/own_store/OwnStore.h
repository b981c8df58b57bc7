#pragma once

#include <lumivard/platform/core/storage/datastore/IDataStore.h>

#include <map>
#include <mutex>
#include <string>

/// A store of one's own: records in memory, found in a map.
///
/// Nothing outlasts the object, so that `flush` has nothing to do. A change of an offset that names no record throws
/// `std::out_of_range`. Threads: `lock()` excludes; the operations are for one thread at a time.
class OwnStore final : public lumivard::platform::core::storage::datastore::IDataStore {
public:
    ILock* lock() override;
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
    class Guard;

    std::map<unsigned int, std::string> _records;
    unsigned int _next = 0;  // the offset that the next record gets
    unsigned int _version = 0;
    std::recursive_mutex _mutex;
};
