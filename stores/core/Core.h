#pragma once

#include <atomic>
#include <cstdint>
#include <exception>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <unordered_map>
#include <vector>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"
#include "lumivard/platform/core/storage/datastore/IRecordAccess.h"
#include "lumivard/platform/stores/tMode.h"
#include "stores/core/Failure.h"
#include "stores/core/PrivateBytes.h"
#include "stores/core/RecordTable.h"
#include "stores/engine/Engine.h"
#include "stores/engine/EngineError.h"

namespace lumivard::platform::stores {

/// A store: the rules of `IDataStore` over records in memory, which an engine below keeps for longer.
///
/// It hands out offsets, brings records in when they are first asked for, knows which have changed, and hands the
/// changes down as one batch. Records that an engine lends are copied only when something is written to them, and
/// given back when bookkeeping has come back to what is stored: so to walk over a store copies what is open. Without
/// an engine there is nothing below, and the records last as long as the object. It knows neither files nor
/// transactions.
///
/// Where the engine is shared with other writers, a guard is a transaction: who takes it sees all that others have done
/// until then, and what was written under it is stored when it ends. What is written without a guard gathers until
/// `flush`, or the next guard, takes it along; if somebody else has got at the same records in between, or has made new
/// ones where this process has, all of it is given up. What was given up, there or where a guard could not store it at
/// its end, is told by the next `flush` or `lock`; until then changes are refused with it, since those may come from
/// destructors, which tell nobody. Under a guard, `flush` ends one transaction and begins another: others may have
/// changed the store behind it.
///
/// Two kinds of change are kept apart. Content (`create`, `append`, `update` with `changed`, `erase`, `version`) is
/// what a flush is for. Bookkeeping (`update` without `changed`) never makes a flush work and is refused by nothing,
/// since it comes from destructors: it travels with content, or is written when the store closes. In a shared store
/// what `write` notes so stays in this process, and is void when that is gone; an `update` cannot tell it from content,
/// and is stored with that.
///
/// Errors: `StoreError` with this store's name and the attempt, or `std::bad_alloc`; what throws has changed nothing.
/// Threads: the guard excludes; the operations are for one thread at a time.
class Core final : public core::storage::datastore::IDataStore, public core::storage::datastore::IRecordAccess {
public:
    /// `engine` may be null. `name` is what messages call the store. With `tMode::kRead` changes of content throw. Of a
    /// shared store so many bytes of records are kept for being read again. Throws where the engine's header cannot be
    /// read.
    Core(std::string name, std::unique_ptr<Engine> engine, tMode mode, std::size_t cache = SIZE_MAX);

    /// Hands down what has changed, bookkeeping included where the stored bytes differ, as far as that still succeeds.
    ~Core() override;

    /// Nothing is handed down any more: a flush and a change of content throw, and closing does nothing.
    void discard();

    ILock* lock() override;
    void flush() override;
    void version(unsigned int number) override;
    unsigned int version() const override;
    unsigned long long extent() override;
    unsigned int create(const void* data, unsigned int size) override;
    void append(unsigned int offset, const void* data, unsigned int size) override;
    void update(unsigned int offset, const void* data, unsigned int size, bool changed) override;
    unsigned int size(unsigned int offset) override;
    void read(unsigned int offset, void* buffer, unsigned int size) override;
    void erase(unsigned int offset) override;
    core::storage::datastore::IRecordAccess* access() override { return this; }

    tView view(unsigned int offset) override;
    tView write(unsigned int offset, unsigned int position, const void* data, unsigned int size, bool changed) override;
    void enter() override { _takeGuard(false); }
    void leave() noexcept override { _giveGuard(); }
    unsigned long long changes() const override { return _contentChanges; }
    void expect(const void* offsets, unsigned int count) override;
    std::unique_ptr<IAttachment>& attachment() override { return _attachment; }

private:
    class Guard;

    // What an operation is about to do, in words for the message of its failure.
    struct Attempt {
        const char* verb;
        unsigned int offset = BADOFF;  // the record, if it is about one
        std::string text() const;
    };

    // Asks the engine, and puts its reason into a sentence when it fails.
    template <class Question>
    auto _ask(const Attempt& attempt, Question question) const;

    void _takeGuard(bool tells);
    void _giveGuard() noexcept;
    bool _holdsGuard() const noexcept;
    void _hearNews();
    void _receive(const Engine::News& news);
    bool _conflictsWith(const Engine::News& news);
    void _forgetChanges() noexcept;
    void _endTransaction() noexcept;
    void _flushShared();
    void _tellLoss();

    RecordSlot* _find(unsigned int offset);
    RecordSlot& _existing(const Attempt& attempt);
    RecordSlot* _bringIn(unsigned int offset, RecordSlot* known);
    RecordSlot* _bringInAlone(unsigned int offset);
    RecordSlot* _bringInShared(unsigned int offset);
    void _putIn(const Engine::Record& record);
    void _renew(const Engine::News& news) noexcept;
    void _shrink() noexcept;

    // Every change goes in three steps: what can fail before (the first three), the change itself, the note of it.
    void _refuseChange(const Attempt& attempt);
    void _refuseLength(const Attempt& attempt, unsigned long long size) const;
    void _makeRoom(std::vector<unsigned int>& list) const;
    void _touch(unsigned int offset, const RecordSlot& slot, unsigned long long from, unsigned long long to);
    void _touchDifference(unsigned int offset, const RecordSlot& slot, const void* data, unsigned int size);
    void _noteContent(unsigned int offset, RecordSlot& slot) noexcept;
    void _noteToStore(unsigned int offset, RecordSlot& slot) noexcept;
    void _noteBookkeeping(unsigned int offset, RecordSlot& slot) noexcept;
    void _giveBack(RecordSlot& slot) noexcept;

    bool _hasChanges() const;
    Engine::Change _change(unsigned int offset) noexcept;
    void _leaveOutPrivate();
    void _addBookkeeping();
    void _commit();
    void _settle() noexcept;
    void _close();

    const std::string _name;
    const tMode _mode;
    const bool _shared;                  // whether others write to the store too
    const bool _lends;                   // whether the engine lends records
    const bool _keeps;                   // whether anything is ever handed down, so that changes are noted
    unsigned int _longest = UINT32_MAX;  // bytes that a record may have
    std::mutex _guard;
    std::atomic<std::thread::id> _owner{};  // the thread that has the guard; written by that one alone
    unsigned int _depth = 0;                // how often it took it

    RecordTable _records;
    unsigned long long _extent = 0;
    unsigned int _version = 0;
    bool _versionChanged = false;
    std::vector<unsigned int> _changed;  // offsets whose slot is marked so; no offset twice
    std::vector<unsigned int> _counted;  // likewise
    std::exception_ptr _failure;         // what the flush threw that failed

    // Of a shared store.
    struct tRange {
        unsigned long long from;
        unsigned long long to;
    };
    std::size_t _cache;                                      // how many bytes are kept
    std::size_t _cached = 0;                                 // that have been brought in, at most
    std::unordered_map<unsigned int, tRange> _touched;       // of long records that have changed: where
    unsigned long long _storedExtent = 0;                    // without what was created since
    PrivateBytes _private;                                   // what was noted without changing content
    std::unordered_map<unsigned int, std::string> _patched;  // of a batch: records without that
    std::exception_ptr _loss;                                // what was given up, until somebody is told
    std::exception_ptr _guardLoss;                           // why the guard that is held is one no more

    unsigned long long _contentChanges = 0;
    std::unique_ptr<IAttachment> _attachment;

    std::unique_ptr<Engine> _engine;
};

template <class Question>
auto Core::_ask(const Attempt& attempt, Question question) const {
    try {
        return question();
    } catch (const EngineError& error) {
        throw failure(attempt.text(), _name, error.what());
    }
}

}  // namespace lumivard::platform::stores
