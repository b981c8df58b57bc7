#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "lumivard/platform/core/Export.h"
#include "lumivard/platform/core/storage/datastore/IDataStore.h"
#include "lumivard/platform/stores/FileOptions.h"
#include "lumivard/platform/stores/FileReport.h"
#include "lumivard/platform/stores/tMode.h"

/// The stores that come with the platform.
///
/// All of them keep to `IDataStore`, and say more than it does in these points:
///
/// - A read or a `size` of an offset that names no record gives nothing; `update`, `append` and `erase` of one throw.
/// - `access()` is never null. What a view shows may be handed to any operation. The attachment is let go when the
///   store begins to close, and may still use it.
/// - Offsets are handed out from 0 upwards, one after the other, and an erased one never comes back. When all
///   4,294,967,295 of them are gone `create` throws.
/// - `extent()` is how many offsets were ever handed out.
/// - `lock()` excludes other threads that take it, readers and writers alike; the thread that has it may take it again.
///   The guard has to be deleted on the thread that took it.
/// - Every failure is a `StoreError`, or `std::bad_alloc` where memory ran out.
/// - A record is found, read, changed or appended to at a cost that does not depend on how many there are.
/// - Closing a store is deleting it. No guard on it may be left, and no exception comes out.
namespace lumivard::platform::stores {
using core::storage::datastore::IDataStore;

/// Opens a new, empty store that lives in memory and is gone with the returned object; `flush` has nothing to do.
LVP_EXPORT std::unique_ptr<IDataStore> memory();

/// Opens the store in the file `path`, which with `tMode::kWrite` is created if nothing is there.
///
/// Durability. `flush` writes everything that has changed since the last flush in one transaction: when it returns, the
/// changes outlast the death of the process and of the machine. A process that dies leaves exactly the last flush, or
/// the one under way where it died inside `flush`. Deleting the store does the same as `flush`, but cannot tell of a
/// failure: flush first where it matters. A flush without changes does nothing. An `update` with `changed` false alone
/// is no change: it is kept in memory and written along with the store's closing, if the bytes differ then.
///
/// Failure. When a flush has failed, the file holds the flush before. What is in memory can still be read, but every
/// further flush and change of content throws the same error, until the store is opened anew: the system may have lost
/// a part of what it was given. Updates with `changed` false go on in memory, since they come from destructors.
///
/// Reading. A store opened with `tMode::kRead` shows the last flush of the writer, as it was when a thread took the
/// guard without having it already: all that is read under one guard belongs together. Changes of content throw. An
/// `update` with `changed` false is kept in memory until the view moves on to the writer's next flush, and is passed
/// over where the writer has erased the record. While a view stands still, space that the writer frees is not used
/// again.
///
/// Memory. Records are loaded when they are first asked for and stay until the store is closed. One takes some 20 bytes
/// beside its own, and up to as many again as it has where it was appended to. What erased records leave is used again,
/// but not given back before the store is closed.
///
/// Damage. Every record carries a checksum, and one that is not as it was written is refused when it is asked for.
/// Before the file is mapped into memory, its description of itself and its header are measured by plain reads, and
/// with `FileOptions::verify` every page is: without that, a file whose pages were changed by something else than this
/// library may end the process. A file that another program cuts short while it is open does so too.
///
/// Length. A record has 4,294,967,291 bytes at most.
///
/// Refused, each with a sentence: a missing file (`kRead`) or folder, a file that is no store or is empty, one written
/// by a newer version or on a machine with another byte order or width of `wchar_t`; a second handle on one file in a
/// process; a second process that wants to write (at once, without waiting; a dead process is in nobody's way); a file
/// with several names (hard links); a file that was put in the place of another that somebody still has open; a file
/// that others have open with another lock file, as after a rename, or with none, as where nothing can be written; and
/// file systems on a network, on which neither locks nor mapped files can be relied upon, unless `FileOptions::network`
/// insists (those in user space are not told from local ones).
///
/// Beside the file stands another one with "-lock" added to its name, in which readers and the writer meet. A new one
/// has the rights of the store's file. It may be deleted when nobody has the store open. A reader needs to be able to
/// write it. A child made by fork() must open the store itself: through a handle of its parent it can change nothing.
/// As long as it lives and has not called exec() it shares its parent's right to write, so that others find the file
/// open for writing.
///
/// The file grows as needed; space of erased records is used again, and `compact` gives back what is left.
///
/// A file that an earlier version wrote is read and written in the format that it has; `compact` makes one of the
/// newest.
LVP_EXPORT std::unique_ptr<IDataStore> file(const std::filesystem::path& path, tMode mode);

/// The same with options.
LVP_EXPORT std::unique_ptr<IDataStore> file(const std::filesystem::path& path, tMode mode, const FileOptions& options);

/// Gives up what has changed in a store since its last flush: closing it then writes nothing, and a flush or a change
/// of content throws before that. Reading goes on, and shows what was given up. For work that was broken off and is to
/// leave no trace. False, with nothing done, for a store that is not one of these.
LVP_EXPORT bool discard(IDataStore& store);

/// Examines the file of a store, below its records: all of its pages, and with `values` the checksum of every record.
///
/// It measures by plain reads before anything else is done with the file, so that it bears any file: it ends in time
/// and memory in proportion to the file's length. A writer may be at work meanwhile; what is examined is its last
/// flush. Throws `StoreError` where the file is refused as in `file`, or is not one of the database's at all; what else
/// is wrong with its contents is in the report. `FileOptions::verify` has no effect here. A lock file is made beside
/// it, as in opening for reading.
LVP_EXPORT FileReport verify(const std::filesystem::path& path, bool values, const FileOptions& options = {});

/// Makes the file of a store as small as its contents allow, and brings it to the newest format.
///
/// It is measured in whole first, copied beside its place, made durable, and put in its place by a rename: a process or
/// machine that dies on the way leaves the old file or the new one, and perhaps a file ".lvp-store-*.new" beside it.
/// Offsets, records and the version stay as they are. The new file has the old one's rights, and its owner where the
/// process may give files away. Needs as much space again. Nobody may have the store open for writing, nor, when the
/// copy takes its place, for reading. Throws `StoreError`; the old file is left in its place then.
LVP_EXPORT void compact(const std::filesystem::path& path, const FileOptions& options = {});

/// Opens what `location` names: "memory:" is `memory()`, whatever the mode; "postgresql://..." is a store in a database
/// (`postgres`, in Postgres.h) in a program that is linked with `lvp_data::stores_postgres`, and is refused in others;
/// what begins as has been said to `provide` is what that opens; everything else is the path of a file, as for `file`.
LVP_EXPORT std::unique_ptr<IDataStore> open(const std::string& location, tMode mode);

/// The same with options, which count for a file.
LVP_EXPORT std::unique_ptr<IDataStore> open(const std::string& location, tMode mode, const FileOptions& options);

/// Opens the store that a location names, for `open`.
using tOpener = std::function<std::unique_ptr<IDataStore>(const std::string& location, tMode mode)>;

/// Lets `open` take locations that begin with `prefix`, such as "mine://": it hands them to `opener`, whose exceptions
/// pass through. In place of one that was given before for the same prefix; an empty one takes it away. Of several that
/// fit the longest prefix counts, and "memory:" none. Any thread, at any time; `opener` is called on the threads that
/// open.
LVP_EXPORT void provide(const std::string& prefix, tOpener opener);

}  // namespace lumivard::platform::stores
