#pragma once

#include <span>
#include <vector>

#include "record/Base.h"

namespace lumivard::platform::data::Record {

/// A list of offsets: the children of a set in the order in which they came, or the pairs of a table's defaults.
///
///     0       1           4
///     +-------+-----------+-----------+-----------+
///     | type  |     0     |  entry 0  |  entry 1  |  ...
///     +-------+-----------+-----------+-----------+
///       u8                     u32         u32
///
/// It is no entity: it has no parent and no count. A record of another kind reads as an empty list.
class Offsets : public Base {
public:
    static constexpr unsigned int kEntries = 4;
    static constexpr unsigned int kEntry = 4;

    /// The form of the record: what follows the fixed part are the entries, which no field counts.
    static constexpr tRange kZeros[] = {{1, kEntries}};
    static constexpr tSections kSections{kEntries, {}, kZeros};

    /// Makes a new empty list and writes it to the store.
    explicit Offsets(IDataStore* store);
    Offsets(IDataStore* store, unsigned int offset) : Base(store, offset) {}
    Offsets(IDataStore* store, unsigned int offset, tInPlace place) : Base(store, offset, place) {}

    /// The number of entries.
    unsigned int items() const;

    /// An entry; `BADOFF` past the end.
    unsigned int get(unsigned int index) const { return index < items() ? word(kEntries + index * kEntry) : BADOFF; }

    /// Tells the store that the records of the entries will be looked at.
    void expect() const;

    /// Whether each entry is larger than the one before it, so that none stands there twice. Offsets are handed out
    /// rising, and a list has them in the order of their making, as a rule.
    bool rising() const;

    /// All entries, in order, of which the records will be looked at.
    std::vector<unsigned int> get() const;
    void get(std::vector<unsigned int>& entries) const;

    // What follows takes what the change touches, beyond which it does nothing else: a list that is nobody's children,
    // or whose children the caller sees to, touches itself.

    /// Writes an entry and the record. Past the end the list grows, with zeros in the gap. False, with nothing done,
    /// when the list would outgrow 32 bits or the record is of another kind.
    bool set(unsigned int index, unsigned int value) { return set(index, {&value, 1}); }

    /// Writes entries that follow one another, the first of them at `index`, and the record once. False as above.
    bool set(unsigned int index, std::span<const unsigned int> values, tTouches touches = tTouches::kChildren);

    /// Adds an entry at the end and writes the record. False as in `set`.
    bool add(unsigned int value, tTouches touches = tTouches::kChildren) { return set(items(), {&value, 1}, touches); }

    /// Adds entries at the end and writes the record once. False as in `set`.
    bool add(const std::vector<unsigned int>& values, tTouches touches = tTouches::kChildren) {
        return set(items(), values, touches);
    }

    /// Removes the first entry that equals `value` and writes the record; false, and nothing written, when there is
    /// none.
    bool removeVal(unsigned int value, tTouches touches = tTouches::kChildren);

    /// One entry of the list at `offset`, without loading the list where the store can do that; `BADOFF` past the end.
    static unsigned int at(IDataStore* store, unsigned int offset, unsigned int index);
};

}  // namespace lumivard::platform::data::Record
