#include "lumivard/platform/store_contract/FailingStore.h"

#include <bit>
#include <new>
#include <string>

namespace lumivard::platform::store_contract {
namespace {

using core::storage::datastore::IDataStore;
using core::storage::datastore::IRecordAccess;

// What a message calls a kind of call, in the order of their bits.
constexpr const char* kNames[] = {"lock",   "flush",       "version (set)", "version", "extent", "create", "append",
                                  "update", "bookkeeping", "size",          "read",    "erase",  "view",   "write"};

unsigned int placeOf(FailingStore::tCalls kind) {
    return static_cast<unsigned int>(std::countr_zero(kind));
}

}  // namespace

FailingStore::FailingStore(IDataStore& under, tAccess access) : ForwardingStore(under), _offers(access) {}

void FailingStore::failAfter(long long passing, tCalls which, tTimes times, tThrown thrown) {
    const std::lock_guard held(_mutex);
    _counts.fill(0);
    _failed = 0;
    _left = passing;
    _which = which;
    _times = times;
    _thrown = thrown;
}

void FailingStore::goOn() {
    const std::lock_guard held(_mutex);
    _which = 0;
}

long long FailingStore::count(tCalls which) const {
    const std::lock_guard held(_mutex);
    long long sum = 0;
    for (unsigned int kind = 0; kind < kKinds; ++kind) {
        if ((which & (1u << kind)) != 0) sum += _counts[kind];
    }
    return sum;
}

long long FailingStore::failed() const {
    const std::lock_guard held(_mutex);
    return _failed;
}

// Counts a call and says whether it is one that fails.
bool FailingStore::_fails(tCalls kind) const {
    ++_counts[placeOf(kind)];
    if ((_which & kind) == 0) return false;
    if (_left > 0) {
        --_left;
        return false;
    }
    ++_failed;
    if (_times == tTimes::kOnce) _which = 0;
    return true;
}

void FailingStore::_pass(tCalls kind) const {
    const std::lock_guard held(_mutex);
    if (!_fails(kind)) return;
    if (_thrown == tThrown::kBadAlloc) throw std::bad_alloc();
    throw InjectedFailure(std::string("the store was told to fail: ") + kNames[placeOf(kind)]);
}

IDataStore::ILock* FailingStore::lock() {
    _pass(kLock);
    return ForwardingStore::lock();
}

void FailingStore::flush() {
    _pass(kFlush);
    ForwardingStore::flush();
}

void FailingStore::version(unsigned int number) {
    _pass(kSetVersion);
    ForwardingStore::version(number);
}

unsigned int FailingStore::version() const {
    _pass(kVersion);
    return ForwardingStore::version();
}

unsigned long long FailingStore::extent() {
    _pass(kExtent);
    return ForwardingStore::extent();
}

unsigned int FailingStore::create(const void* data, unsigned int size) {
    _pass(kCreate);
    return ForwardingStore::create(data, size);
}

void FailingStore::append(unsigned int offset, const void* data, unsigned int size) {
    _pass(kAppend);
    ForwardingStore::append(offset, data, size);
}

void FailingStore::update(unsigned int offset, const void* data, unsigned int size, bool changed) {
    _pass(changed ? kUpdate : kBookkeeping);
    ForwardingStore::update(offset, data, size, changed);
}

unsigned int FailingStore::size(unsigned int offset) {
    _pass(kSize);
    return ForwardingStore::size(offset);
}

void FailingStore::read(unsigned int offset, void* buffer, unsigned int size) {
    _pass(kRead);
    ForwardingStore::read(offset, buffer, size);
}

void FailingStore::erase(unsigned int offset) {
    _pass(kErase);
    ForwardingStore::erase(offset);
}

IRecordAccess* FailingStore::access() {
    return _offers == tAccess::kOffered && under().access() ? &_access : nullptr;
}

IRecordAccess::tView FailingStore::Access::view(unsigned int offset) {
    _store._pass(kView);
    return _under().view(offset);
}

IRecordAccess::tView FailingStore::Access::write(unsigned int offset, unsigned int position, const void* data,
                                                 unsigned int size, bool changed) {
    _store._pass(changed ? kWrite : kBookkeeping);
    return _under().write(offset, position, data, size, changed);
}

void FailingStore::Access::enter() {
    _store._pass(kLock);
    _under().enter();
}

void FailingStore::Access::leave() noexcept {
    _under().leave();
}

unsigned long long FailingStore::Access::changes() const {
    return _under().changes();
}

std::unique_ptr<IRecordAccess::IAttachment>& FailingStore::Access::attachment() {
    return _under().attachment();
}

}  // namespace lumivard::platform::store_contract
