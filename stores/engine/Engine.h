#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace lumivard::platform::stores {

/// Where a store's records are kept when they are not in memory: what the core asks of a file or a database.
///
/// It knows nothing of caching, of which records have changed, or of the rules of `IDataStore`: it gives a stored
/// record, takes a batch of changes as one whole, and tells what others have committed. It always answers from one
/// consistent state, its snapshot, which moves only in `commit` and `guardTaken`.
///
/// Errors: `EngineError` with the reason alone. Threads: one call at a time, on any thread; `guardTaken` and the
/// `guardReleased` after it come on the same one.
class Engine {
public:
    /// What is kept of a store beside its records.
    struct Header {
        unsigned long long extent = 0;  ///< how many offsets were handed out: the next offset
        unsigned int version = 0;       ///< the number that IDataStore::version sets
    };

    /// A record that differs from what is stored.
    struct Change {
        bool erased = false;               ///< the record is gone; it may never have been stored
        std::span<const std::byte> bytes;  ///< its whole contents otherwise

        /// Where they differ from what is stored, at most: from one byte to before another one. What lies outside, and
        /// is stored, is the same.
        unsigned long long from = 0;
        unsigned long long to = UINT64_MAX;
    };

    /// A record as it is stored.
    struct Record {
        unsigned int offset;
        std::span<const std::byte> bytes;
        bool gone = false;  ///< there is no such record in the snapshot
    };

    /// What becomes durable together. The changes are looked up as they are written: there may be very many.
    struct Batch {
        Header header;
        std::span<const unsigned int> offsets;              ///< of the records that differ, rising, each once
        std::function<Change(unsigned int offset)> change;  ///< of one of them; throws nothing
    };

    /// What others have committed since the snapshot before.
    struct News {
        Header header;
        bool everything = false;            ///< any record may have changed
        std::vector<unsigned int> offsets;  ///< else: these have changed, come or gone
        std::vector<Record> records{};      ///< some of them as they are now; the bytes stand until the next call
    };

    /// Records of up to so many bytes are handed down whole.
    static constexpr unsigned int kShort = 8192;

    virtual ~Engine() = default;

    /// The most bytes that a record may have.
    virtual unsigned int longestRecord() const noexcept { return UINT32_MAX; }

    /// The header as stored in the snapshot.
    virtual Header header() = 0;

    /// The contents of a record in the snapshot, or nothing when it holds no such record. The bytes belong to the
    /// engine and stand until its next call, or as long as `lends` says.
    virtual std::optional<std::span<const std::byte>> load(unsigned int offset) = 0;

    /// Hands over records of the snapshot: those that are asked for, as far as there are such, and others that may be
    /// asked for soon. Each set of bytes stands until `take` returns. Of several that are asked for, some may be left
    /// out that are better loaded alone.
    virtual void bring(std::span<const unsigned int> offsets, const std::function<void(const Record&)>& take) {
        for (const unsigned int offset : offsets) {
            if (const auto bytes = load(offset)) take({offset, *bytes});
        }
    }

    /// Whether the bytes that `load` gives stand, as they are, until the next `commit` or the next `guardTaken` that
    /// has news; either may also fail.
    virtual bool lends() const noexcept { return false; }

    /// Whether others change the store too, from other processes and machines. Then a guard is a transaction: it begins
    /// with `guardTaken`, and ends with `commit`, behind which another `guardTaken` may begin the next one under the
    /// same guard, or with `guardReleased`. `load`, `bring` and `commit` come within one alone, and no batch holds what
    /// a process has noted for itself.
    virtual bool isShared() const noexcept { return false; }

    /// Makes a batch durable, as a whole, and moves the snapshot there. When it throws, none of it was made durable, or
    /// that is not known, and the error says so. After a failure `load` still answers from the snapshot before, and
    /// nothing else will be committed; but for an `EngineConflict`.
    virtual void commit(const Batch& batch) = 0;

    /// A thread that did not have the store's guard has taken it. The engine may move its snapshot, and then says what
    /// that makes stale. Unless the store is shared it names no record with a change that has not been committed. When
    /// it throws, the guard is not taken.
    virtual std::optional<News> guardTaken() { return std::nullopt; }

    /// The thread has the guard no longer. Called from a destructor: lets nothing out.
    virtual void guardReleased() noexcept {}
};

}  // namespace lumivard::platform::stores
