#include "design/Subtree.h"

#include <algorithm>
#include <optional>
#include <unordered_set>

#include "metadata/Set.h"
#include "record/Container.h"
#include "record/Ledger.h"
#include "record/Locale.h"
#include "record/Offsets.h"
#include "record/Primitive.h"
#include "record/Table.h"

namespace lumivard::platform::data::Design::Subtree {

namespace {

constexpr unsigned int BADOFF = IDataStore::BADOFF;

/// A record with all that it may own: opened as a table, whatever it is, since a table owns one list more than others.
using tRecord = Record::Table;

/// Visits records and everything below them, parents before children: `visit(record)` gets each as a `tRecord` and
/// returns whether to go on. Each list is read once: in a damaged store thousands of records may name one.
template <class Visit>
bool walk(IDataStore* store, const std::vector<unsigned int>& records, Visit visit) {
    std::vector<unsigned int> waiting(records.rbegin(), records.rend());
    std::unordered_set<unsigned int> seen;
    std::unordered_set<unsigned int> lists;
    while (!waiting.empty()) {
        const unsigned int offset = waiting.back();
        waiting.pop_back();
        if (!seen.insert(offset).second) continue;
        const tRecord record(store, offset, Record::kInPlace);
        if (!visit(record)) return false;
        if (!lists.insert(record.children()).second) continue;
        const std::vector<unsigned int> children = Metadata::Set::children(store, record.children());
        waiting.insert(waiting.end(), children.rbegin(), children.rend());
    }
    return true;
}

/// What a record says that it owns.
tOwned ownedBy(const tRecord& record) {
    tOwned owned{.locale = record.locale(), .children = record.children()};
    if (record.type() == Record::kTable) owned.defaults = record.defaults();
    return owned;
}

/// Makes a working copy of a record the record of one that nobody has open and that owns nothing.
void strip(tRecord& record, unsigned int parent) {
    record.refs(0);
    record.parent(parent);
    record.locale(BADOFF);
    if (record.type() != Record::kPrimitive) record.children(BADOFF);
    if (record.type() == Record::kTable) record.defaults(BADOFF);
}

}  // namespace

/// The copying of subtrees. Each open level is a list whose entries are being copied.
class Cloning {
public:
    Cloning(IDataStore* store, IDataStore* target) : _store(store), _target(target) {}

    /// Copies what the levels hold, to the end.
    void run() {
        while (!_levels.empty()) {
            tLevel& level = _levels.back();
            if (level.next == level.entries.size()) {
                closeLevel();
            } else {
                copyEntry(level, level.entries[level.next++]);
            }
        }
    }

    /// Copies one record without what is below it, and opens a level for that.
    unsigned int copyRecord(tRecord& source, const tOwned& owned, unsigned int parent) {
        strip(source, parent);  // a copy that is left unfinished shares nothing with its source
        const unsigned int copied = source.clone(_target);
        // A damaged list may foretell the offset of a copy, which is no source.
        _seen.insert(source.offset());
        if (_target == _store) _seen.insert(copied);
        Record::Entity copy(_target, copied, Record::kInPlace);
        copy.locale(cloneOwned(owned.locale, Record::kLocale));
        const bool deep =
            source.type() != Record::kPrimitive && owned.children != BADOFF && _owned.insert(owned.children).second;
        if (deep) copy.children(openLevel(owned.children, copied));
        copy.update(true, Record::tTouches::kItself);
        // Records come in the order of their making: the children before the defaults.
        if (source.type() == Record::kTable) {
            if (deep) {
                _levels.back().defaults = owned.defaults;
            } else {
                cloneDefaults(copied, owned.defaults);
            }
        }
        return copied;
    }

    /// Makes a new list in the target for copies of the entries of another, and returns its offset.
    unsigned int openLevel(unsigned int list, unsigned int parent) {
        tLevel level;
        level.entries = Record::Offsets(_store, list, Record::kInPlace).get();
        level.list = Record::Offsets(_target).offset();
        level.parent = parent;
        _levels.push_back(std::move(level));
        return _levels.back().list;
    }

private:
    struct tLevel {
        std::vector<unsigned int> entries;     ///< the records to copy
        std::vector<unsigned int> copies;      ///< what the new list gets
        std::size_t next = 0;                  ///< the entry whose turn it is
        unsigned int list = BADOFF;            ///< the new list
        unsigned int parent = BADOFF;          ///< the owner of the copies
        std::optional<unsigned int> defaults;  ///< those of the owner's source, where that is a table
    };

    void copyEntry(tLevel& level, unsigned int offset) {
        if (!Record::isChild(Record::peek(_store, offset))) {
            level.copies.push_back(offset);
            return;
        }
        if (_seen.contains(offset)) return;
        const std::size_t here = _levels.size() - 1;
        tRecord source(_store, offset, Record::kInPlace);
        const unsigned int copied = copyRecord(source, ownedBy(source), level.parent);
        _levels[here].copies.push_back(copied);  // copyRecord may have moved the levels
    }

    void closeLevel() {
        const tLevel level = std::move(_levels.back());
        _levels.pop_back();
        if (!level.copies.empty())
            Record::Offsets(_target, level.list, Record::kInPlace).add(level.copies, Record::tTouches::kItself);
        if (level.defaults) cloneDefaults(level.parent, *level.defaults);
    }

    /// Gives the copy of a table its own list of defaults, or none where its source has none.
    void cloneDefaults(unsigned int copied, unsigned int defaults) {
        Record::Table copy(_target, copied, Record::kInPlace);
        // The list holds units and kinds, no offsets: its bytes are right as they are.
        copy.defaults(cloneOwned(defaults, Record::kOffsets));
        copy.update(true, Record::tTouches::kItself);
    }

    /// Copies the bytes of a record; `BADOFF` where there is none of that kind, and where it has another owner already.
    unsigned int cloneOwned(unsigned int offset, Record::tType kind) {
        return Record::peek(_store, offset) == kind && _owned.insert(offset).second
                   ? Record::Base(_store, offset, Record::kInPlace).clone(_target)
                   : BADOFF;
    }

    IDataStore* _store;
    IDataStore* _target;
    std::vector<tLevel> _levels;
    std::unordered_set<unsigned int> _seen;
    std::unordered_set<unsigned int> _owned;  // lists and localized names: damaged records may share one
};

bool unreferenced(IDataStore* store, const std::vector<unsigned int>& records) {
    return walk(store, records, [](const tRecord& record) { return record.refs() == 0; });
}

tDead everything(IDataStore* store, const std::vector<unsigned int>& records) {
    tDead dead;
    dead.closed = records.size() == 1;
    // A damaged record may name one of another kind, which is not its own.
    const auto bury = [&](unsigned int offset, Record::tType kind) {
        if (Record::peek(store, offset) == kind) dead.records.push_back(offset);
    };
    std::unordered_set<unsigned int> owners;
    walk(store, records, [&](const tRecord& record) {
        const tOwned owned = ownedBy(record);
        dead.closed = dead.closed && (dead.records.empty() || owners.contains(record.parent()));
        dead.records.push_back(record.offset());
        if (owned.children != BADOFF) owners.insert(record.offset());
        bury(owned.locale, Record::kLocale);
        bury(owned.children, Record::kOffsets);
        bury(owned.defaults, Record::kOffsets);
        return true;
    });
    return dead;
}

void erase(IDataStore* store, const tDead& dead, Record::tTouches touches) {
    // From the leaves up, so that what is left after a failure still hangs together. Two damaged records may own one.
    for (auto offset = dead.records.rbegin(); offset != dead.records.rend(); ++offset) {
        if (store->size(*offset) == 0) continue;
        store->erase(*offset);
        if (touches == Record::tTouches::kItself) Record::Ledger::account(store);
    }
}

unsigned int clone(IDataStore* store, unsigned int record, const tOwned& owned, IDataStore* target) {
    Cloning cloning(store, target);
    tRecord source(store, record, Record::kInPlace);
    const unsigned int copied = cloning.copyRecord(source, owned, source.parent());
    cloning.run();
    return copied;
}

unsigned int clone(IDataStore* store, unsigned int record, IDataStore* target) {
    return clone(store, record, ownedBy(tRecord(store, record, Record::kInPlace)), target);
}

Copies::Copies(IDataStore* store, IDataStore* target)
    : _store(store), _cloning(std::make_unique<Cloning>(store, target)) {}

Copies::~Copies() = default;

unsigned int Copies::add(unsigned int record) {
    tRecord source(_store, record, Record::kInPlace);
    const unsigned int copied = _cloning->copyRecord(source, ownedBy(source), source.parent());
    _cloning->run();
    return copied;
}

void on(IDataStore* store, unsigned int record, unsigned char bits) {
    struct tLevel {
        unsigned int offset;
        std::vector<unsigned int> entries;
        std::size_t next;
    };
    std::vector<tLevel> levels;
    std::unordered_set<unsigned int> seen;  // records and lists
    const auto enter = [&](unsigned int offset) {
        if (!Record::isChild(Record::peek(store, offset)) || !seen.insert(offset).second) return;
        const Record::Entity entity(store, offset, Record::kInPlace);
        if (!entity.whole()) return;
        const unsigned int list = entity.children();
        levels.push_back({offset, {}, 0});
        if (list != BADOFF && seen.insert(list).second)
            levels.back().entries = Record::Offsets(store, list, Record::kInPlace).get();
    };
    enter(record);
    while (!levels.empty()) {
        tLevel& level = levels.back();
        if (level.next < level.entries.size()) {
            enter(level.entries[level.next++]);
            continue;
        }
        Record::Entity entity(store, level.offset, Record::kInPlace);
        entity.writeFlags(static_cast<unsigned char>(entity.flags() | bits));
        levels.pop_back();
    }
}

unsigned int duplicate(IDataStore* store, unsigned int list, IDataStore* target, unsigned int parent) {
    if (list == BADOFF) return BADOFF;
    Cloning cloning(store, target);
    const unsigned int copied = cloning.openLevel(list, parent);
    cloning.run();
    return copied;
}

}  // namespace lumivard::platform::data::Design::Subtree
