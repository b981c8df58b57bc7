#pragma once

#include <memory>

#include "lumivard/platform/store_contract/FailingStore.h"
#include "lumivard/platform/store_contract/LoggingStore.h"
#include "tests/fault/calls/Fault.h"

namespace lumivard::platform::test_support::fault {

/// A store that fails at a call of some kinds.
class CallFault final : public Fault {
public:
    using FailingStore = store_contract::FailingStore;

    CallFault(FailingStore::tCalls kinds, FailingStore::tTimes times, FailingStore::tAccess access)
        : _kinds(kinds), _times(times), _access(access) {}

    core::storage::datastore::IDataStore& over(core::storage::datastore::IDataStore& store) override {
        _logging = std::make_unique<store_contract::LoggingStore>(store);
        const bool offered = _access == FailingStore::tAccess::kOffered;
        _failing = std::make_unique<FailingStore>(offered ? store : *_logging, _access);
        return *_failing;
    }
    void arm(long long passing) override { _failing->failAfter(passing, _kinds, _times); }
    long long disarm() override {
        _failing->goOn();
        return _failing->failed();
    }
    bool once() const override { return _times == FailingStore::tTimes::kOnce; }
    bool isOurs(const std::exception_ptr& thrown) const override {
        try {
            std::rethrow_exception(thrown);
        } catch (const store_contract::InjectedFailure& failure) {
            return std::string(failure.what()).starts_with(kText);
        } catch (...) {
            return false;
        }
    }
    bool isTold(const std::wstring& text) const override {
        return text.find(std::wstring(kText, kText + sizeof(kText) - 1)) != std::wstring::npos;
    }
    int guards() const override { return _logging->guards(); }

private:
    static constexpr char kText[] = "the store was told to fail: ";

    const FailingStore::tCalls _kinds;
    const FailingStore::tTimes _times;
    const FailingStore::tAccess _access;
    std::unique_ptr<store_contract::LoggingStore> _logging;
    std::unique_ptr<FailingStore> _failing;
};

}  // namespace lumivard::platform::test_support::fault
