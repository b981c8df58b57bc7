#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"
#include "lumivard/platform/store_contract/InjectedFailure.h"

namespace lumivard::platform::store_contract {

/// A whole small store in memory that can lose what was not flushed, as a machine does that loses its power.
///
/// It promises what `IDataStore` says and no more: records that were created after the last flush are gone after a
/// `crash`, their offsets are handed out again, and a record that was changed by bookkeeping alone (`update` without
/// `changed`) has the bytes again that it had at its last flush as content. `access()` is null.
///
/// Errors: `std::out_of_range` for a change of an offset that names no record, `std::length_error` where a record or
/// the store would become too long, `InjectedFailure` as told. Threads: `lock()` excludes; the operations are for one
/// thread at a time.
///
/// Cost: a flush takes as long as what has changed since the last one; a crash as long as the whole store.
class ForgetfulStore final : public core::storage::datastore::IDataStore {
public:
    /// Makes a new, empty store that has flushed nothing yet.
    ForgetfulStore() = default;

    /// The machine loses its power and comes up again: records, extent and version are those of the last flush that
    /// has happened. The object stays. No guard may be held, and nothing that was built on the store may be alive that
    /// would rely on what it has read before.
    void crash();

    /// Lets the process die inside its next flush: that throws `InjectedFailure`, and whether it has happened or not,
    /// which `seed` decides, is not told before `crash`. Until then the store is as one that failed: changes of content
    /// and flushes throw `InjectedFailure`, while reading and bookkeeping go on.
    void dieInFlush(unsigned int seed);

    /// How many flushes have happened: those that returned, and those inside which the process died just after.
    unsigned long long flushes() const { return _flushes; }

    ILock* lock() override;
    void flush() override;
    void version(unsigned int number) override;
    unsigned int version() const override { return _now.version; }
    unsigned long long extent() override { return _now.extent; }
    unsigned int create(const void* data, unsigned int size) override;
    void append(unsigned int offset, const void* data, unsigned int size) override;
    void update(unsigned int offset, const void* data, unsigned int size, bool changed) override;
    unsigned int size(unsigned int offset) override;
    void read(unsigned int offset, void* buffer, unsigned int size) override;
    void erase(unsigned int offset) override;

private:
    class Guard;

    struct State {
        std::map<unsigned int, std::string> records;
        unsigned long long extent = 0;  // how many offsets were handed out
        unsigned int version = 0;
    };

    void _refuseWhenDead() const;
    std::string& _existing(unsigned int offset);
    void _keep();

    State _now;
    State _flushed;
    std::set<unsigned int> _changed;  // offsets whose content differs, or may differ, from what was flushed
    unsigned long long _flushes = 0;
    std::optional<unsigned int> _deadlySeed;  // of the flush that is to fail
    bool _dead = false;
    std::recursive_mutex _guard;
};

}  // namespace lumivard::platform::store_contract
