#include "lumivard/platform/store_contract/LoggingStore.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <ostream>

namespace lumivard::platform::store_contract {

/// Holds the guard of the store below; always an object, so that giving it back is seen.
class LoggingStore::Guard final : public ILock {
public:
    explicit Guard(LoggingStore& store) : _store(store), _under(store.ForwardingStore::lock()) {
        ++_store._guards;
        _store._log.push_back({.call = tCall::kLock});
    }
    ~Guard() override {
        --_store._guards;
        _store._log.push_back({.call = tCall::kUnlock});
    }

private:
    LoggingStore& _store;
    std::unique_ptr<ILock> _under;
};

std::size_t LoggingStore::count(tCall call) const {
    return static_cast<std::size_t>(
        std::count_if(_log.begin(), _log.end(), [call](const Entry& entry) { return entry.call == call; }));
}

std::vector<LoggingStore::Entry> LoggingStore::updates(bool changed) const {
    std::vector<Entry> found;
    std::copy_if(_log.begin(), _log.end(), std::back_inserter(found),
                 [changed](const Entry& entry) { return entry.call == tCall::kUpdate && entry.changed == changed; });
    return found;
}

void LoggingStore::_note(Entry entry) const {
    _log.push_back(entry);
    if (_guards == 0) ++_unguarded;
}

LoggingStore::ILock* LoggingStore::lock() {
    return new Guard(*this);
}

void LoggingStore::flush() {
    _note({.call = tCall::kFlush});
    ForwardingStore::flush();
}

void LoggingStore::version(unsigned int number) {
    _note({.call = tCall::kSetVersion});
    ForwardingStore::version(number);
}

unsigned int LoggingStore::version() const {
    _note({.call = tCall::kVersion});
    return ForwardingStore::version();
}

unsigned long long LoggingStore::extent() {
    _note({.call = tCall::kExtent});
    return ForwardingStore::extent();
}

unsigned int LoggingStore::create(const void* data, unsigned int size) {
    _note({.call = tCall::kCreate, .size = size});
    const std::size_t entry = _log.size() - 1;
    return _log[entry].offset = ForwardingStore::create(data, size);
}

void LoggingStore::append(unsigned int offset, const void* data, unsigned int size) {
    _note({.call = tCall::kAppend, .offset = offset, .size = size});
    ForwardingStore::append(offset, data, size);
}

void LoggingStore::update(unsigned int offset, const void* data, unsigned int size, bool changed) {
    _note({.call = tCall::kUpdate, .offset = offset, .size = size, .changed = changed});
    ForwardingStore::update(offset, data, size, changed);
}

unsigned int LoggingStore::size(unsigned int offset) {
    _note({.call = tCall::kSize, .offset = offset});
    return ForwardingStore::size(offset);
}

void LoggingStore::read(unsigned int offset, void* buffer, unsigned int size) {
    _note({.call = tCall::kRead, .offset = offset, .size = size});
    ForwardingStore::read(offset, buffer, size);
}

void LoggingStore::erase(unsigned int offset) {
    _note({.call = tCall::kErase, .offset = offset});
    ForwardingStore::erase(offset);
}

std::ostream& operator<<(std::ostream& out, const LoggingStore::Entry& entry) {
    static constexpr const char* kNames[] = {"lock",   "unlock", "flush",  "set version", "version", "extent",
                                             "create", "append", "update", "size",        "read",    "erase"};
    out << kNames[static_cast<int>(entry.call)] << '(' << entry.offset << ", " << entry.size;
    if (entry.call == LoggingStore::tCall::kUpdate) out << (entry.changed ? ", changed" : ", bookkeeping");
    return out << ')';
}

}  // namespace lumivard::platform::store_contract
