#include "record/Ledger.h"

namespace lumivard::platform::data::Record {

Ledger* Ledger::of(IDataStore* store) noexcept {
    auto* access = store->access();
    return access ? static_cast<Ledger*>(access->attachment().get()) : nullptr;
}

void Ledger::account(IDataStore* store) noexcept {
    if (Ledger* ledger = of(store)) ++ledger->_accounted;
}

}  // namespace lumivard::platform::data::Record
