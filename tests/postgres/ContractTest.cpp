// A store in a database keeps what every store promises.
#include <memory>
#include <string>

#include "lumivard/platform/store_contract/StoreContract.h"
#include "lumivard/platform/stores.h"
#include "lumivard/platform/stores/Postgres.h"
#include "tests/postgres/Server.h"

namespace lumivard::platform::store_contract {
namespace {

using stores::Server;

class DatabaseSubject final : public ISubject {
public:
    /// The store is opened as programs open it, with these parameters.
    explicit DatabaseSubject(std::string parameters) : _parameters(std::move(parameters)), _store(open()) {}

    core::storage::datastore::IDataStore& store() override { return *_store; }
    bool reopen() override {
        _store.reset();
        _store = open();
        return true;
    }
    bool keepsBookkeeping() const override { return false; }

private:
    std::unique_ptr<core::storage::datastore::IDataStore> open() const {
        return stores::open(Server::url(_name) + _parameters, stores::tMode::kWrite);
    }

    std::string _parameters;
    std::string _name = Server::newStore();
    std::unique_ptr<core::storage::datastore::IDataStore> _store;
};

std::vector<Row> rows() {
    if (!Server::isThere()) return {};
    const auto row = [](const char* name, const char* parameters) {
        return Row{name, [parameters] { return std::make_unique<DatabaseSubject>(parameters); }};
    };
    return {row("Database", ""), row("DatabaseThatKeepsNoGuard", "&keep=0"),
            row("DatabaseThatKeepsNoRecords", "&cache=0")};
}

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(StoreContract);
INSTANTIATE_TEST_SUITE_P(Stores, StoreContract, testing::ValuesIn(rows()), nameOf);

}  // namespace
}  // namespace lumivard::platform::store_contract
