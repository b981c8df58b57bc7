#pragma once

#include <memory>
#include <unordered_map>

#include "metadata/NameIndex.h"
#include "record/Ledger.h"

namespace lumivard::platform::data::Metadata {

using core::storage::datastore::IDataStore;

/// What a store's large sets are known to hold now: one index for each list of children that was opened, kept with the
/// store, so that opening a set again reads none of its children.
///
/// A list gets here only when each of its entries is a child that names the set as its owner, no child stands there
/// twice, and no two have one name: so no child is in two of these indexes, and taking a child out of its own is
/// enough. Whoever changes such a list tells here what it did and accounts for it (`Record::Ledger`); after any other
/// change, by somebody else or in a way that nobody has thought of, all indexes go.
///
/// An index is shared with the objects that were opened on it, and does not change under them: see `follow`. One thread
/// at a time, inside the store's guard.
class Indexes final : public Record::Ledger {
public:
    using tShared = std::shared_ptr<NameIndex>;

    /// From so many entries on a list is worth keeping an index; a smaller one is read each time it is opened.
    static constexpr unsigned int kLarge = 64;

    /// Those of a store, as far as they still hold; null from a store that has no place for them. Throws
    /// `std::bad_alloc`.
    static Indexes* of(IDataStore* store);

    /// The same, but null also where none were ever kept.
    static Indexes* known(IDataStore* store) noexcept;

    /// The index of a list; null where there is none.
    tShared find(unsigned int list) const;

    /// Keeps an index of a list that is as its set would be when it was opened now.
    void keep(unsigned int list, tShared index) { _indexes.insert_or_assign(list, std::move(index)); }

    void drop(unsigned int list) noexcept { _indexes.erase(list); }

    /// Lets an index follow a change of its list: `change(index)` is called with one that no open object but its own
    /// knows, and returns whether it could follow. Where it could not, or memory runs out, the index goes. Nothing for
    /// a list without an index, and for one whose index is `own`, which has followed already.
    template <class Change>
    void follow(unsigned int list, const tShared& own, Change change) noexcept;

private:
    std::unordered_map<unsigned int, tShared> _indexes;
};

template <class Change>
void Indexes::follow(unsigned int list, const tShared& own, Change change) noexcept {
    const auto found = _indexes.find(list);
    if (found == _indexes.end() || found->second == own) return;
    try {
        if (found->second.use_count() > 1) found->second = std::make_shared<NameIndex>(*found->second);
        if (change(*found->second)) return;
    } catch (...) {
        // What is not remembered is read again.
    }
    _indexes.erase(found);
}

}  // namespace lumivard::platform::data::Metadata
