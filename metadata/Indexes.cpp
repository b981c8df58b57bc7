#include "metadata/Indexes.h"

namespace lumivard::platform::data::Metadata {

Indexes* Indexes::of(IDataStore* store) {
    auto* access = store->access();
    if (!access) return nullptr;
    auto& place = access->attachment();
    if (!place) place = std::make_unique<Indexes>();
    return known(store);
}

Indexes* Indexes::known(IDataStore* store) noexcept {
    auto* indexes = static_cast<Indexes*>(Ledger::of(store));
    if (!indexes) return nullptr;
    const unsigned long long changes = store->access()->changes();
    if (indexes->_accounted != changes) indexes->_indexes.clear();
    indexes->_accounted = changes;
    return indexes;
}

Indexes::tShared Indexes::find(unsigned int list) const {
    const auto found = _indexes.find(list);
    return found == _indexes.end() ? nullptr : found->second;
}

}  // namespace lumivard::platform::data::Metadata
