#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "bench/workloads/OursTree.h"
#include "bench/workloads/RecordWorkload.h"
#include "lumivard/platform/stores.h"

// W8: the bare stores. A new store hands out offsets from 0 upwards, one after the other, so that a record's number is
// its offset.

namespace lvp::bench {

namespace stores = lumivard::platform::stores;

namespace {

class Records {
public:
    void add(unsigned int number, const Record& record) {
        require(_store->create(&record, sizeof(record)) == number, "the store hands out other offsets");
    }
    void get(unsigned int number, Record& record) { _store->read(number, &record, sizeof(record)); }
    void put(unsigned int number, const Record& record) { _store->update(number, &record, sizeof(record), true); }
    void flush() { _store->flush(); }
    void close() {
        _guard.reset();
        _store.reset();
    }

protected:
    void begin(std::unique_ptr<data::IDataStore> store) {
        _store = std::move(store);
        _guard.reset(_store->lock());
    }

private:
    std::unique_ptr<data::IDataStore> _store;
    std::unique_ptr<data::IDataStore::ILock> _guard;
};

class FileRecords : public Records {
public:
    static constexpr bool kLasts = true;
    static std::vector<std::filesystem::path> files(const std::filesystem::path& file) {
        return {file, file.string() + "-lock"};
    }
    void create(const std::filesystem::path& file) { begin(stores::file(file, stores::tMode::kWrite)); }
};

class MemoryRecords : public Records {
public:
    static constexpr bool kLasts = false;
    static std::vector<std::filesystem::path> files(const std::filesystem::path&) { return {}; }
    void create(const std::filesystem::path&) { begin(stores::memory()); }
};

}  // namespace

void runRecordsInFile(const Case& run) {
    runRecords<FileRecords>(run);
}

void runRecordsInMemory(const Case& run) {
    runRecords<MemoryRecords>(run);
}

}  // namespace lvp::bench
