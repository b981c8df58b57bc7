#pragma once

#include <chrono>
#include <future>
#include <thread>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"

namespace lumivard::platform::test_support::fault {

/// Another thread that takes a store's guard, gives it back and ends. The object's end waits for that.
class GuardAttempt {
public:
    explicit GuardAttempt(core::storage::datastore::IDataStore& store)
        : _done(_taken.get_future()), _thread([this, &store] {
              delete store.lock();
              _taken.set_value();
          }) {}
    ~GuardAttempt() { _thread.join(); }
    GuardAttempt(const GuardAttempt&) = delete;
    GuardAttempt& operator=(const GuardAttempt&) = delete;

    /// Whether it got the guard, as far as that shows after some time.
    bool succeeds(std::chrono::milliseconds patience) { return _done.wait_for(patience) == std::future_status::ready; }

private:
    std::promise<void> _taken;
    std::future<void> _done;
    std::thread _thread;
};

}  // namespace lumivard::platform::test_support::fault
