#pragma once

#include <cstddef>
#include <iosfwd>
#include <vector>

#include "lumivard/platform/store_contract/ForwardingStore.h"

namespace lumivard::platform::store_contract {

/// A store that hands every call to another one, and keeps a log of them.
///
/// A call that throws is logged too, but for `lock`. Several threads may use it under the guard, if the store below has
/// one.
class LoggingStore final : public ForwardingStore {
public:
    /// Which call it was.
    enum class tCall {
        kLock,        ///< a guard was taken
        kUnlock,      ///< and given back
        kFlush,       ///< `flush`
        kSetVersion,  ///< `version` with a number
        kVersion,     ///< `version` without
        kExtent,      ///< `extent`
        kCreate,      ///< `create`
        kAppend,      ///< `append`
        kUpdate,      ///< `update`
        kSize,        ///< `size`
        kRead,        ///< `read`
        kErase        ///< `erase`
    };

    /// One call with its arguments; what the call does not have is as below.
    struct Entry {
        tCall call = tCall::kLock;     ///< which
        unsigned int offset = BADOFF;  ///< of `create`: the new one, BADOFF when it threw
        unsigned int size = 0;         ///< as asked for, not as found
        bool changed = false;          ///< of `update`

        /// Whether all four are equal.
        bool operator==(const Entry&) const = default;
    };

    using ForwardingStore::ForwardingStore;

    /// All calls since the beginning or `clearLog`, in their order.
    const std::vector<Entry>& log() const { return _log; }
    /// Empties the log; `guards` and `unguarded` go on counting.
    void clearLog() { _log.clear(); }
    /// How many calls of a kind are in the log.
    std::size_t count(tCall call) const;

    /// The updates with that flag, in their order.
    std::vector<Entry> updates(bool changed) const;

    /// How many guards are held at this moment, counting each time a thread took one.
    int guards() const { return _guards; }

    /// Calls on records or the store's state that came while no guard was held.
    std::size_t unguarded() const { return _unguarded; }

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

private:
    class Guard;
    void _note(Entry entry) const;

    mutable std::vector<Entry> _log;
    mutable std::size_t _unguarded = 0;
    int _guards = 0;
};

/// For the messages of failed tests: "update(12, 40, changed)".
std::ostream& operator<<(std::ostream& out, const LoggingStore::Entry& entry);

}  // namespace lumivard::platform::store_contract
