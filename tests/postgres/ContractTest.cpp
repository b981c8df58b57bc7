// A store in a database keeps what every store promises.
#include <memory>
#include <string>

#include "lumivard/platform/store_contract/StoreContract.h"
#include "tests/postgres/Server.h"

namespace lumivard::platform::store_contract {
namespace {

using stores::Server;

class DatabaseSubject final : public ISubject {
public:
    core::storage::datastore::IDataStore& store() override { return *_store; }
    bool reopen() override {
        _store.reset();
        _store = Server::open(_name);
        return true;
    }
    bool keepsBookkeeping() const override { return false; }

private:
    std::string _name = Server::newStore();
    std::unique_ptr<stores::Core> _store = Server::open(_name);
};

std::vector<Row> rows() {
    if (!Server::isThere()) return {};
    return {Row{"Database", [] { return std::make_unique<DatabaseSubject>(); }}};
}

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(StoreContract);
INSTANTIATE_TEST_SUITE_P(Stores, StoreContract, testing::ValuesIn(rows()), nameOf);

}  // namespace
}  // namespace lumivard::platform::store_contract
