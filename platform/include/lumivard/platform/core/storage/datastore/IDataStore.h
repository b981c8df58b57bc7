#pragma once

#include "lumivard/platform/core/Export.h"

/// Stores of records, in which all data lives.
namespace lumivard::platform::core::storage::datastore {

class IRecordAccess;

/// A flat store of variable-length byte records, each named by a 32-bit offset: the place in which all data lives.
///
/// A store gives no meaning to the bytes of a record and keeps no pointer to memory of its caller. Whoever opens a
/// store owns it and keeps it alive for as long as any object that was built on it.
///
/// Failures: a store that cannot do what it is asked throws an exception derived from `std::exception`; no operation
/// returns a status. An operation that throws has changed nothing.
///
/// Threads: exclusion is expressed by `lock()`. The operations themselves may be called from any thread, one at a time.
class LVP_EXPORT IDataStore {
public:
    /// Holds a store's guard from its making to its destruction.
    class LVP_EXPORT ILock {
    public:
        virtual ~ILock() = default;
    };

    /// The offset that names no record. `create` never returns it. It is compared, never computed with.
    static constexpr unsigned int BADOFF = 0xFFFFFFFFu;

    virtual ~IDataStore() = default;

    /// Takes the store's guard and returns it; the caller deletes it. Re-entrant: a thread that holds the guard gets it
    /// again at once. Null from a store that needs no locking.
    virtual ILock* lock() = 0;

    /// Makes everything that was written so far durable, where the store has a durable form.
    virtual void flush() = 0;

    /// Sets the store's version number, which stands beside the records.
    virtual void version(unsigned int number) = 0;

    /// The store's version number; 0 in a new store.
    virtual unsigned int version() const = 0;

    /// Zero exactly as long as no record was ever created in the store. What a value other than zero counts is the
    /// store's own affair.
    virtual unsigned long long extent() = 0;

    /// Makes a record of `size` bytes copied from `data` and returns its offset. The first record of a new store gets
    /// offset 0.
    virtual unsigned int create(const void* data, unsigned int size) = 0;

    /// Adds `size` bytes from `data` at the end of a record, whose offset stays.
    virtual void append(unsigned int offset, const void* data, unsigned int size) = 0;

    /// Replaces the whole contents of a record by `size` bytes from `data`; the record may grow or shrink, and its
    /// offset stays. `changed` is false when only a count of live objects differs: bookkeeping of the running process,
    /// which is not worth a durable write of its own.
    virtual void update(unsigned int offset, const void* data, unsigned int size, bool changed) = 0;

    /// The length of a record in bytes; 0 for an offset that names no record.
    virtual unsigned int size(unsigned int offset) = 0;

    /// Copies a record's bytes from its start into `buffer`: at most `size` of them, all of them for 0xFFFFFFFF. Does
    /// nothing for an offset that names no record, `BADOFF` included, and for an empty record whatever `buffer` is.
    virtual void read(unsigned int offset, void* buffer, unsigned int size) = 0;

    /// Removes a record. Its offset is dead from then on.
    virtual void erase(unsigned int offset) = 0;

    /// What else this store can do (see `IRecordAccess`), owned by the store and alive as long as it; null from a store
    /// that offers only the operations above, which is enough for everything to work. This interface never grows
    /// again; what stores are to be able to do besides is asked for in this way.
    virtual IRecordAccess* access() { return nullptr; }
};

}  // namespace lumivard::platform::core::storage::datastore
