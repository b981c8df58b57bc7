#pragma once

#include "lumivard/platform/core/storage/datastore/IDataStore.h"
#include "lumivard/platform/core/storage/datastore/IRecordAccess.h"

namespace lumivard::platform::data::Record {

/// Hangs on a store that offers a place for it, and knows of how many of the store's changes it is known that they
/// cannot make anything wrong that is remembered of sets and their children. Whoever changes a record of the library's
/// and knows that accounts for it, once for each change that has happened; any other change is one too many, and what
/// is remembered has to go.
class Ledger : public core::storage::datastore::IRecordAccess::IAttachment {
public:
    using IDataStore = core::storage::datastore::IDataStore;

    /// Accounts for one change that a store has just made; nothing where there is no ledger.
    static void account(IDataStore* store) noexcept;

    /// The ledger of a store; null where there is none.
    static Ledger* of(IDataStore* store) noexcept;

protected:
    /// Of how many of the store's changes it is known.
    unsigned long long _accounted = 0;
};

}  // namespace lumivard::platform::data::Record
