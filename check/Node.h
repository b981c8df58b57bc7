#pragma once

#include "lumivard/platform/core/storage/datastore/IDataStore.h"
#include "record/tType.h"

namespace lumivard::platform::data::Check {

/// What the checker remembers of one record.
struct tNode {
    static constexpr unsigned int BADOFF = core::storage::datastore::IDataStore::BADOFF;

    /// The number of no node.
    static constexpr unsigned int kNone = 0xFFFFFFFFu;

    unsigned int offset = BADOFF;
    unsigned int size = 0;

    // What the record says, as everybody reads it.
    unsigned int parent = BADOFF;
    unsigned int refs = 0;
    unsigned int locale = BADOFF;
    unsigned int children = BADOFF;
    unsigned int defaults = BADOFF;
    Record::tType kind = Record::kRoot;

    bool readable = true;  ///< the store gave it out
    bool whole = false;    ///< long enough for the fields that all entities share
    bool sound = false;    ///< all its sections are there
    bool reached = false;  ///< it hangs, by whatever references, below the top
    bool listed = false;   ///< the entry that names it in its owner's list was met

    // How a list is named by others.
    bool asChildren = false;
    bool shared = false;  ///< as the children of more than one
    bool asDefaults = false;

    /// The number of the node that has this one: of an item the one in whose list it has its place, of a list and of
    /// localized names the entity. The top has itself.
    unsigned int owner = kNone;

    bool isEntity() const { return readable && (kind == Record::kRoot || Record::isChild(kind)); }
    bool isSet() const { return isEntity() && kind != Record::kPrimitive; }

    /// Whether it is, or might be, where the store does not tell, a list, localized names, or what can be listed.
    bool mayBe(Record::tType wanted) const { return !readable || kind == wanted; }
    bool mayBeChild() const { return !readable || Record::isChild(kind); }
};

/// Whether an item in the list of an owner is where no cursor gets to.
inline bool isMisplaced(const tNode& item, const tNode& owner) {
    if (!item.readable) return false;
    return (owner.kind == Record::kTable && item.kind == Record::kContainer) ||
           (owner.kind == Record::kRoot && item.kind == Record::kPrimitive);
}

}  // namespace lumivard::platform::data::Check
