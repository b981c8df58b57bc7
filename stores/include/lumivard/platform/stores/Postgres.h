#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "lumivard/platform/core/Export.h"
#include "lumivard/platform/core/storage/datastore/IDataStore.h"
#include "lumivard/platform/stores/tMode.h"

/// Stores in a PostgreSQL database, which many processes on many machines change together: the target
/// `lvp_data::stores_postgres`. A program that links it can also give their locations to `open`.
///
/// A location is a URI as PostgreSQL's own clients take it, which begins with "postgresql://" and names the store as
/// one more parameter: `postgresql://user@host1:5432,host2,host3/database?store=materials`. All other parameters are
/// PostgreSQL's (`sslmode`, `application_name` and so on), but for `deadline`, `keep` and `cache`, which count in place
/// of the options of these names (in milliseconds, milliseconds and bytes). Characters that a URI does not take, and
/// "&" in the name of a store, are written as `%XX`. What is not said is asked of the environment variables and the
/// password file of PostgreSQL's client library, which reads them, as in every client.
namespace lumivard::platform::stores {

/// What is asked for when a store in a database is opened.
struct PostgresOptions {
    /// For how long the server may be silent before it is taken for lost, and for how long it is tried to find out what
    /// became of a commit, or to reach a server at all. It is also how long a guard is waited for.
    std::chrono::milliseconds deadline{5000};

    /// For how long a guard is kept for the next one of this process when it has been given back: who takes the guard
    /// again within that time asks the server for nothing. Another process waits so long at most, and no longer: who
    /// takes the guard over and over lets it go each time that this is over. What others store shows later by so much
    /// where the way to the server is cut meanwhile: let it be much shorter than the server's time-outs. 0 keeps
    /// nothing, which is better where others have much to do while this process takes the guard every few milliseconds.
    std::chrono::milliseconds keep{10};

    /// How much memory the records may take that are kept for being read again, in bytes. What is changed and not yet
    /// stored, and what is read under one guard, or without any until the next one, may take more.
    unsigned long long cache = 256ULL << 20;
};

/// A store that a database holds.
struct PostgresStore {
    std::string name;               ///< in UTF-8
    unsigned int version = 0;       ///< the number that `IDataStore::version` sets
    unsigned long long extent = 0;  ///< how many offsets were ever handed out
    unsigned long long epoch = 0;   ///< how often something was stored in it
};

/// Opens the store that `location` names, which has to be there (`postgresCreation`). It keeps to `IDataStore` as the
/// other stores do, and says more in these points:
///
/// Guards. The outermost guard of a thread is a transaction: who has it sees all that was stored before, by anybody,
/// and nobody else stores anything until it is given back. With `tMode::kRead` it stops nobody, and shows one state.
/// When it is given back, what was written under it is stored, all of it or nothing. A guard that many calls are made
/// under costs one transaction, and so does each call without one: take a guard around what belongs together. A guard
/// waits for that of another process up to the deadline, and throws after that.
///
/// Durability. What a `flush`, or a guard, has stored is what the server calls committed: with synchronous standbys it
/// outlasts the loss of the primary (docs/stores.md tells what to set up). `flush` under a guard ends one transaction
/// and begins another: others may have changed the store behind it, and where that other one cannot be had, changes and
/// what is not known yet throw until the guard is given back. A guard ends in a destructor: that it could not store is
/// told by the next `flush` or `lock`, and until then changes throw the same, so flush where it matters. What is
/// written without a guard gathers until `flush`, or the next guard, takes it along, and is given up as a whole, in an
/// exception, when somebody else has changed the same records in between, or made new ones where this process has, or
/// done anything where this process has set the version, or more than 10,000 times. Reads without a guard are up to
/// date when they first bring a record in, and later as much as the last guard was.
///
/// Failures. Where the connection is lost while something is being stored, it is found out on another one, before the
/// deadline, whether that was done: then the flush succeeds; where it was not, it is done now; and where somebody else
/// has got in between it is given up as a whole, in an exception that says so, and the store goes on. What cannot be
/// found out is an exception, too, and the store then shows what is stored, waiting for nobody's guard, and cannot be
/// changed until it is opened again; likewise where the server refuses to store something, for want of rights or of
/// space. A server that is behind what was seen of the store, or has another history, is refused: of several hosts the
/// one with the newest state is used, among those that take changes.
///
/// Memory. Records come when they are first asked for, with others that were made next to them, and stay within the
/// `cache` as long as nobody changes them.
///
/// What an object that is open notes in a record (an `update` with `changed` false, a `write` likewise) stays in the
/// process, so that nobody waits for the objects of a process that is gone; as `IDataStore::update` it is stored with
/// the next flush, since it cannot be told from contents there. So two processes do not see each other's open objects:
/// one may destroy what another one looks at, which then finds nothing.
///
/// A child made by fork() must open the store itself: its parent's refuses every call to it. Threads: as for the other
/// stores; a thread of the store's own gives kept guards back.
///
/// Throws `StoreError`, also where the location cannot be understood.
LVP_EXPORT std::unique_ptr<core::storage::datastore::IDataStore> postgres(const std::string& location, tMode mode,
                                                                          const PostgresOptions& options = {});

/// What makes a store in a database, as SQL, one statement each: its tables, where there are none, and the store. Who
/// has it run has to be allowed to make tables there, also where there are some. Nothing is done by asking for it.
/// Throws `StoreError` for a location that names no store, or cannot be understood.
LVP_EXPORT std::vector<std::string> postgresCreation(const std::string& location);

/// Likewise what deletes a store with all that is in it, once nobody has its guard.
LVP_EXPORT std::vector<std::string> postgresRemoval(const std::string& location);

/// Likewise what lets a role read, or read and write, all stores of a database that has tables for them.
LVP_EXPORT std::vector<std::string> postgresRights(const std::string& role, tMode mode);

/// Runs statements in the database that `location` names, as one transaction. A store's name need not be given. Throws
/// `StoreError` with the server's words, and nothing is done then, but where it says that this is not known: where the
/// connection is lost while it is committed. Of a creation, where there is such a store; of a removal, where somebody
/// has its guard for longer than the deadline. A statement may take five minutes.
LVP_EXPORT void runInPostgres(const std::string& location, const std::vector<std::string>& statements);

/// The stores of the database that `location` names, by name; none where there are no tables. Throws `StoreError`.
LVP_EXPORT std::vector<PostgresStore> postgresStores(const std::string& location);

}  // namespace lumivard::platform::stores
