#include <optional>

#include "lumivard/platform/store_contract/FailingStore.h"
#include "lumivard/platform/store_contract/ForgetfulStore.h"
#include "lumivard/platform/store_contract/LoggingStore.h"
#include "lumivard/platform/store_contract/StoreContract.h"
#include "lumivard/platform/stores.h"
#include "stores/core/Core.h"
#include "stores/lmdb/LmdbEngine.h"
#include "tests/support/OddStore.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivard::platform::store_contract {
namespace {

using core::storage::datastore::IDataStore;

class MemorySubject final : public ISubject {
public:
    IDataStore& store() override { return *_store; }

private:
    std::unique_ptr<IDataStore> _store = stores::memory();
};

/// Where the odd store is stricter with its callers than it may be, on purpose, it is mild here.
class OddSubject final : public ISubject {
public:
    IDataStore& store() override { return _mild; }

private:
    class Mild final : public ForwardingStore {
    public:
        using ForwardingStore::ForwardingStore;
        unsigned int size(unsigned int offset) override { return offset == BADOFF ? 0 : ForwardingStore::size(offset); }
    };

    test_support::OddStore _odd;
    Mild _mild{_odd};
};

/// To come up again after a flush is all that closing and opening could ask of it.
class ForgetfulSubject final : public ISubject {
public:
    IDataStore& store() override { return _store; }
    bool reopen() override {
        _store.crash();
        return true;
    }

private:
    ForgetfulStore _store;
};

/// Passes like the store below it as long as it is not told to fail.
class FailingSubject final : public ISubject {
public:
    IDataStore& store() override { return _store; }

private:
    std::unique_ptr<IDataStore> _under = stores::memory();
    FailingStore _store{*_under, FailingStore::tAccess::kOffered};
};

/// Passes like the store below it: what is logged is also done.
class LoggingSubject final : public ISubject {
public:
    IDataStore& store() override { return _store; }

private:
    std::unique_ptr<IDataStore> _under = stores::memory();
    LoggingStore _store{*_under};
};

/// A store in a file, opened by a function of the file's path.
class FileSubject final : public ISubject {
public:
    using Open = std::unique_ptr<IDataStore> (*)(const std::filesystem::path&);

    explicit FileSubject(Open open) : _open(open), _store(open(_path())) {}
    IDataStore& store() override { return *_store; }
    bool reopen() override {
        _store.reset();
        _store = _open(_path());
        return true;
    }

private:
    std::filesystem::path _path() const { return _folder / "store.lvp"; }

    TemporaryFolder _folder;
    Open _open;
    std::unique_ptr<IDataStore> _store;
};

std::unique_ptr<IDataStore> openFile(const std::filesystem::path& path) {
    return stores::file(path, stores::tMode::kWrite);
}

// With a map that has to grow all the time.
std::unique_ptr<IDataStore> openTightFile(const std::filesystem::path& path) {
    auto engine = std::make_unique<stores::LmdbEngine>(
        path, stores::tMode::kWrite, stores::LmdbEngine::Settings{.mapSize = 32768, .fileSystem = {}});
    return std::make_unique<stores::Core>(path.string(), std::move(engine), stores::tMode::kWrite);
}

INSTANTIATE_TEST_SUITE_P(Stores, StoreContract,
                         testing::Values(Row{"Memory", [] { return std::make_unique<MemorySubject>(); }},
                                         Row{"File", [] { return std::make_unique<FileSubject>(openFile); }},
                                         Row{"TightFile", [] { return std::make_unique<FileSubject>(openTightFile); }},
                                         Row{"Forgetful", [] { return std::make_unique<ForgetfulSubject>(); }},
                                         Row{"Failing", [] { return std::make_unique<FailingSubject>(); }},
                                         Row{"Logging", [] { return std::make_unique<LoggingSubject>(); }},
                                         Row{"Odd", [] { return std::make_unique<OddSubject>(); }}),
                         nameOf);

}  // namespace
}  // namespace lumivard::platform::store_contract
