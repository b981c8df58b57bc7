#pragma once

#include <array>
#include <mutex>

#include "lumivard/platform/core/storage/datastore/IRecordAccess.h"
#include "lumivard/platform/store_contract/ForwardingStore.h"
#include "lumivard/platform/store_contract/InjectedFailure.h"

namespace lumivard::platform::store_contract {

/// A store that works like the one below it until it is told to fail: then a call of the kinds told throws instead of
/// being handed down, so that the store below is as it was.
///
/// It never fails half-way, and never of its own accord. To see what a piece of code does when any of its calls fails,
/// let each of them fail in turn, until one run comes to its end:
///
///     for (long long k = 0;; ++k) {
///         FailingStore store(under);
///         store.failAfter(k, FailingStore::kAllCalls, FailingStore::tTimes::kOnce);
///         try { work(store); } catch (const InjectedFailure&) {}
///         store.goOn();
///         // what must hold whatever has failed
///         if (store.failed() == 0) break;
///     }
///
/// Threads: what the store below allows; counting and telling are safe from any thread.
class FailingStore final : public ForwardingStore {
public:
    /// Kinds of calls; a set of them is their sum by `|`.
    using tCalls = unsigned int;
    static constexpr tCalls kLock = 1u << 0;         ///< `lock`, and `enter` of `access()`
    static constexpr tCalls kFlush = 1u << 1;        ///< `flush`
    static constexpr tCalls kSetVersion = 1u << 2;   ///< `version` with a number
    static constexpr tCalls kVersion = 1u << 3;      ///< `version` without
    static constexpr tCalls kExtent = 1u << 4;       ///< `extent`
    static constexpr tCalls kCreate = 1u << 5;       ///< `create`
    static constexpr tCalls kAppend = 1u << 6;       ///< `append`
    static constexpr tCalls kUpdate = 1u << 7;       ///< `update` with `changed`
    static constexpr tCalls kBookkeeping = 1u << 8;  ///< `update` without, and `write` of `access()` without
    static constexpr tCalls kSize = 1u << 9;         ///< `size`
    static constexpr tCalls kRead = 1u << 10;        ///< `read`
    static constexpr tCalls kErase = 1u << 11;       ///< `erase`
    static constexpr tCalls kView = 1u << 12;        ///< `view` of `access()`
    static constexpr tCalls kWrite = 1u << 13;       ///< `write` of `access()` with `changed`

    static constexpr tCalls kAllCalls = (1u << 14) - 1;                                              ///< every kind
    static constexpr tCalls kChanges = kSetVersion | kCreate | kAppend | kUpdate | kErase | kWrite;  ///< of content
    static constexpr tCalls kAllChanges = kChanges | kBookkeeping;                                   ///< and of counts
    static constexpr tCalls kReads = kSize | kRead | kView;                                          ///< of records

    /// Whether one call fails and those after it pass, or all of them fail from there until `goOn`.
    enum class tTimes { kOnce, kForEver };

    /// What is thrown: an `InjectedFailure`, or a `std::bad_alloc`.
    enum class tThrown { kFailure, kBadAlloc };

    /// What `access()` gives: null, so that all calls are those of `IDataStore`, or what the store below offers,
    /// through calls that are counted here. `leave` and `changes` never fail and are not counted; the attachment is the
    /// one of the store below, which lets it go.
    enum class tAccess { kHidden, kOffered };

    /// Forwards to `under`, which stays its owner's and must outlive this object, and fails nothing yet.
    explicit FailingStore(core::storage::datastore::IDataStore& under, tAccess access = tAccess::kHidden);

    /// Lets `passing` more calls of the kinds in `which` pass and fails the one after them. What was told before no
    /// longer counts, and `failed()` and `count()` begin anew.
    void failAfter(long long passing, tCalls which = kChanges, tTimes times = tTimes::kForEver,
                   tThrown thrown = tThrown::kFailure);

    /// Fails no more.
    void goOn();

    /// How many calls of the kinds in `which` came since `failAfter` was last called, or since the beginning, those
    /// that failed among them.
    long long count(tCalls which = kAllCalls) const;

    /// How many of them were made to fail.
    long long failed() const;

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
    core::storage::datastore::IRecordAccess* access() override;

private:
    static constexpr unsigned int kKinds = 14;

    class Access final : public core::storage::datastore::IRecordAccess {
    public:
        explicit Access(FailingStore& store) : _store(store) {}
        tView view(unsigned int offset) override;
        tView write(unsigned int offset, unsigned int position, const void* data, unsigned int size,
                    bool changed) override;
        void enter() override;
        void leave() noexcept override;
        unsigned long long changes() const override;
        std::unique_ptr<IAttachment>& attachment() override;
        void expect(const void* offsets, unsigned int count) override { _under().expect(offsets, count); }

    private:
        IRecordAccess& _under() const { return *_store.under().access(); }

        FailingStore& _store;
    };

    void _pass(tCalls kind) const;
    bool _fails(tCalls kind) const;

    const tAccess _offers;
    Access _access{*this};

    mutable std::mutex _mutex;  // for all below
    mutable std::array<long long, kKinds> _counts{};
    mutable long long _failed = 0;
    mutable long long _left = 0;  // calls that still pass
    mutable tCalls _which = 0;    // none: nothing fails
    tTimes _times = tTimes::kForEver;
    tThrown _thrown = tThrown::kFailure;
};

}  // namespace lumivard::platform::store_contract
