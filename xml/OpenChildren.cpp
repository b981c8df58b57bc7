#include "xml/OpenChildren.h"

#include <cstring>
#include <utility>

#include "metadata/Indexes.h"
#include "record/Entity.h"
#include "record/Ledger.h"
#include "record/Offsets.h"

namespace lumivard::platform::data {

using core::storage::datastore::IDataStore;
using Metadata::Set;

namespace {

/// Makes a list with one entry.
unsigned int createList(IDataStore* store, unsigned int entry) {
    using Record::Offsets;
    char record[Offsets::kEntries + Offsets::kEntry] = {};
    record[0] = static_cast<char>(Record::kOffsets);
    std::memcpy(record + Offsets::kEntries, &entry, sizeof(entry));
    const unsigned int list = store->create(record, sizeof(record));
    Record::Ledger::account(store);
    return list;
}

}  // namespace

bool OpenChildren::claim(const wchar_t* name) {
    if (_direct && _names.add(name)) return true;
    return settle().find(name) == Set::BADOFF;
}

void OpenChildren::add(unsigned int offset) {
    if (_direct)
        append(offset);
    else
        _set->add(offset);
}

void OpenChildren::adopt(unsigned int offset) {
    if (_direct) {
        Record::Entity(_set->store(), offset, Record::kInPlace).writeParent(_set->offset(), Record::tTouches::kItself);
    }
    add(offset);
}

Set& OpenChildren::settle() {
    if (std::exchange(_direct, false) && !std::exchange(_names, {}).empty()) _set->update();
    return *_set;
}

// The order in which records are made is the same as when the set does it. Nobody else is asked for anything before the
// set is settled, so a list that was found stays.
void OpenChildren::append(unsigned int offset) {
    IDataStore* store = _set->store();
    if (_list == Set::BADOFF) _list = presentList();
    if (_list != Set::BADOFF) {
        auto* const indexes = Metadata::Indexes::known(store);
        store->append(_list, &offset, sizeof(offset));
        if (!indexes) return;
        indexes->drop(_list);
        Record::Ledger::account(store);
        return;
    }
    const unsigned int list = createList(store, offset);
    Record::Entity(store, _set->offset(), Record::kInPlace).writeChildren(list);
    _list = list;
}

unsigned int OpenChildren::presentList() const {
    const unsigned int list = Record::Entity(_set->store(), _set->offset(), Record::kInPlace).children();
    return Record::peek(_set->store(), list) == Record::kOffsets ? list : Set::BADOFF;
}

}  // namespace lumivard::platform::data
