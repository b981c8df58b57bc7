#pragma once

#include <memory>
#include <vector>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"
#include "record/Base.h"

/// What is done to a record and everything below it. The walks keep their own stacks, so that their need of the
/// thread's stack does not grow with the depth of the tree, and visit no record twice, so that a damaged store, in
/// which a record is found below itself, ends them.
namespace lumivard::platform::data::Design::Subtree {

using core::storage::datastore::IDataStore;

/// Whether no object stands over any of the records or any record below them, which is read from their counts.
bool unreferenced(IDataStore* store, const std::vector<unsigned int>& records);

/// Records that are to be erased together.
struct tDead {
    std::vector<unsigned int> records;  ///< what owns comes before what it owns
    bool closed = false;                ///< one record was asked for, and what is below it names no owner but these
};

/// The records, everything below them, and all lists and localized names that they own.
tDead everything(IDataStore* store, const std::vector<unsigned int>& records);

/// Erases what `everything` gave, as far as it is there, from its end on. `touches`: what the erasing of any one of the
/// records does.
void erase(IDataStore* store, const tDead& dead, Record::tTouches touches);

/// What a record owns: localized names, a list of children and a list of defaults; `BADOFF` for what it has not.
struct tOwned {
    unsigned int locale = IDataStore::BADOFF;
    unsigned int children = IDataStore::BADOFF;
    unsigned int defaults = IDataStore::BADOFF;
};

/// Copies one record of an entity, with everything below it, into a store, which may be the same, and returns the
/// offset of the copy. What the record itself owns is told by `owned`: an open item copies what it owned when it was
/// opened, and what it was given since. The copy counts no object; its `parent` still is the source's number.
unsigned int clone(IDataStore* store, unsigned int record, const tOwned& owned, IDataStore* target);

/// The same for a record that nobody needs to open: what it owns is what it says in the store.
unsigned int clone(IDataStore* store, unsigned int record, IDataStore* target);

/// Copies several records of one store one after the other. What is below two of them is copied once, and no copy is
/// copied: in a damaged store, in which the copies come to stand below the sources, each would double what the next one
/// finds.
class Copies {
public:
    Copies(IDataStore* store, IDataStore* target);
    ~Copies();

    /// As `clone`.
    unsigned int add(unsigned int record);

private:
    IDataStore* _store;
    std::unique_ptr<class Cloning> _cloning;
};

/// Sets flag bits in a record and in everything below it, children before their owners; none but the three kinds.
void on(IDataStore* store, unsigned int record, unsigned char bits);

/// Copies the records of a list, with everything below them, below `parent` in `target`, and returns the offset of the
/// new list. A listed record that is no primitive, table or container is not copied: its number stands in the new list.
unsigned int duplicate(IDataStore* store, unsigned int list, IDataStore* target, unsigned int parent);

}  // namespace lumivard::platform::data::Design::Subtree
