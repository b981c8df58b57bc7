#include "tests/postgres/load/Client.h"

#include <memory>

#include "lumivard/platform/stores.h"
#include "lumivard/platform/stores/Postgres.h"
#include "tests/postgres/load/Ledger.h"

namespace lumivard::platform::stores::load {
namespace {

using tLock = std::unique_ptr<IDataStore::ILock>;

/// A store that is opened again where it may not be changed any more.
class Client {
public:
    Client(std::string location, tMode mode) : _location(std::move(location)), _mode(mode) {}

    std::string obey(const std::string& order) {
        if (order == "open") return _open(), order;
        if (order == "read") {
            const tLock guard(_store->lock());
            return "read " + std::to_string(Ledger(*_store).look().tally);
        }
        if (order == "write") return "wrote " + std::to_string(_write());
        if (order == "take") return _guard.reset(_store->lock()), "taken";
        if (order == "change") {
            Ledger ledger(*_store);
            ledger.step(0, ledger.look());
            return "changed";
        }
        if (order == "give") {
            _guard.reset();
            _store->flush();  // what the end of the guard could not store is told here
            return "given";
        }
        return "error: there is no such order";
    }

private:
    void _open() { _store = postgres(_location, _mode); }

    std::uint64_t _write() {
        const tLock guard(_store->lock());
        Ledger ledger(*_store);
        const Ledger::tTotals totals = ledger.look();
        ledger.step(0, totals);
        _store->flush();
        return totals.tally + 1;
    }

    const std::string _location;
    const tMode _mode;
    std::unique_ptr<IDataStore> _store;
    tLock _guard;  // which ends before the store
};

}  // namespace

void serve(const std::string& location, tMode mode, std::istream& orders, std::ostream& answers) {
    Client client(location, mode);
    std::string order = "open";
    do {
        try {
            answers << client.obey(order) << std::endl;
        } catch (const StoreError& error) {
            answers << "error: " << error.what() << std::endl;
            if (order == "open") return;
        }
    } while (std::getline(orders, order));
}

}  // namespace lumivard::platform::stores::load
