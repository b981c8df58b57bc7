#include "lumivard/platform/core/memory/PointerCounter.h"

namespace lumivard::platform::core::memory {

DefaultPointerCounterImp::~DefaultPointerCounterImp() = default;

void DefaultPointerCounterImp::addRef() {
    _references.fetch_add(1, std::memory_order_relaxed);
}

void DefaultPointerCounterImp::release() {
    // Only the result of the decrement tells who was last: when it is not this thread, the counter may be gone already.
    if (_references.fetch_sub(1, std::memory_order_acq_rel) == 1) _doDestroy();
}

long long DefaultPointerCounterImp::count() const {
    return _references.load(std::memory_order_acquire);
}

bool DefaultPointerCounterImp::addUse() {
    long long uses = _uses.load(std::memory_order_relaxed);
    do {
        if (uses == kGone) return false;
    } while (!_uses.compare_exchange_weak(uses, uses + 1, std::memory_order_acq_rel, std::memory_order_relaxed));
    return true;
}

void DefaultPointerCounterImp::releaseUse() {
    // Who has the only use and the only reference is alone: nobody else can come by one.
    if (_references.load(std::memory_order_acquire) == 1 && _uses.load(std::memory_order_acquire) == 1) {
        _uses.store(kGone, std::memory_order_relaxed);
        _doDispose();
        _doDestroy();
        return;
    }
    // The last use goes straight from 1 to gone: a 0 in between could be seen, and ended, by a second thread.
    long long uses = _uses.load(std::memory_order_relaxed);
    while (!_uses.compare_exchange_weak(uses, uses == 1 ? kGone : uses - 1, std::memory_order_acq_rel,
                                        std::memory_order_relaxed)) {
    }
    if (uses != 1) return;
    _doDispose();
    release();
}

long long DefaultPointerCounterImp::countUse() const {
    const long long uses = _uses.load(std::memory_order_acquire);
    return uses == kGone ? 0 : uses;
}

void DefaultPointerCounterImp::_doDestroy() {
    delete this;
}

void DefaultPointerCounterImp::_doDispose() {
    if (_disposer) _disposer->dispose();
}

}  // namespace lumivard::platform::core::memory
