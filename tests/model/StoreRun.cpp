#include "tests/model/StoreRun.h"

#include <memory>

namespace lumivard::platform::model {

namespace {

constexpr std::size_t kRemembered = 25;
constexpr unsigned int kUnderOneGuard = 16;

}  // namespace

bool StoreRun::go(IDataStore& store, std::uint64_t count) {
    std::unique_ptr<IDataStore::ILock> guard;
    for (std::uint64_t i = 0; i < count && _difference.empty(); ++i) {
        if (i % kUnderOneGuard == 0) {
            guard.reset();
            guard.reset(store.lock());
        }
        const StoreOperation operation = _model.any(_random);
        note(operation);
        const StoreOutcome found = perform(store, operation);
        if (found.injected) continue;
        const StoreOutcome expected = _model.perform(operation);
        if (found != expected) return differs("it gave " + described(found) + ", and not " + described(expected));
    }
    return _difference.empty();
}

void StoreRun::goAlone(std::uint64_t count) {
    for (std::uint64_t i = 0; i < count; ++i) {
        const StoreOperation operation = _model.any(_random);
        note(operation);
        _model.perform(operation);
    }
}

bool StoreRun::compare(IDataStore& store) {
    if (!_difference.empty()) return false;
    const std::unique_ptr<IDataStore::ILock> guard(store.lock());
    const auto found = _model.now().difference(store);
    return !found || differs(*found);
}

void StoreRun::note(const StoreOperation& operation) {
    ++_done;
    _last.push_back(operation);
    if (_last.size() > kRemembered) _last.pop_front();
}

bool StoreRun::differs(const std::string& what) {
    _difference = "after " + std::to_string(_done) + " calls, of which these were the last:\n";
    for (const StoreOperation& operation : _last) _difference += described(operation) + "\n";
    _difference += what;
    return false;
}

}  // namespace lumivard::platform::model
