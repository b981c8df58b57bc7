#pragma once

#include <vector>

#include "lumivard/platform/core/Export.h"
#include "lumivard/platform/core/storage/datastore/IDataStore.h"
#include "lumivard/platform/data/check/Options.h"
#include "lumivard/platform/data/check/Repair.h"
#include "lumivard/platform/data/check/Report.h"

/// The checker of stores: tells whether the records of a store hang together as the library leaves them, and plans how
/// to mend what can be mended without guessing.
///
/// Threads: any; each operation holds the store's guard for its whole length. Of a store whose `lock` gives null the
/// caller sees to it that nobody else uses it meanwhile.
///
/// Counts of live objects can be judged only where nobody has an object open on the store, in this process or, for a
/// file, in another: otherwise open objects may show as stale counts.
///
/// Failures: what the store throws when it is asked for one record becomes a finding, "record.unreadable". What it
/// throws otherwise, and `std::bad_alloc`, pass through.
///
/// Cost: time in proportion to the number of records and their bytes, each being read about three times, and to
/// `extent()`, since the store is asked for the size at each offset below it, whether a record lies there or not
/// (`examine` tells up to where); `plan` examines at least once, and once more after each round of mending. Memory:
/// about 100 bytes for each record, the findings that are kept, and one record at a time; for `plan`, the old and new
/// bytes of what changes, too. A store that keeps what it has read, as that of a file does, has all records in memory
/// at the end. The stack that is needed does not grow with the depth of the tree.
namespace lumivard::platform::data::check {

using core::storage::datastore::IDataStore;

/// All rules, in the order of their codes.
LVP_EXPORT const std::vector<Rule>& rules();

/// Looks at all records of a store and changes nothing.
///
/// Records are looked for at all offsets below `extent()` if that is at most 2^26, or with `Options::whole`, and
/// besides wherever a reference leads to. What is not reached from the record at offset 0 is examined by itself, but
/// not as a tree: rules "graph" and "set" are about what is reached.
LVP_EXPORT Report examine(IDataStore& store, const Options& options = {});

/// Finds out what has to be done to a store to mend what `examine` says can be mended, and changes nothing.
///
/// What could be reached before, by the names and cursors of the public interfaces, can be reached afterwards; if it
/// had several places it keeps one, and of several items of one name in one place all but the first get a new name.
/// A record that gets a new name loses what lay behind its last section ("record.rest"), which nobody reads. Lengths
/// and kinds are never guessed. A plan for a store that was repaired has no steps, except that with `Options::reclaim`
/// it erases then what a repair of damage has left.
///
/// A plan is begun anew where a record could be read at one time and not at another. Throws `std::runtime_error` where
/// that happens again and again, and where mending shows one fault after another without an end in sight, as in a store
/// that is changed meanwhile.
LVP_EXPORT Repair plan(IDataStore& store, const Options& options = {});

/// Does what was planned, and flushes the store once. False, with nothing changed, when a record is not as it was when
/// the plan was made. Where the store throws, what was changed until then is put back as far as the store lets it, and
/// the exception passes through; a record that nothing reached may be gone. No object may be open on the store.
LVP_EXPORT bool apply(IDataStore& store, const Repair& repair);

}  // namespace lumivard::platform::data::check
