#pragma once

#include <new>
#include <string>

#include "lumivard/platform/stores.h"
#include "tests/fault/calls/Allocations.h"
#include "tests/fault/calls/Fault.h"

namespace lumivard::platform::test_support::fault {

/// Whether an exception says that memory ran out: `std::bad_alloc`, or what a store says of it.
inline bool saysMemoryRanOut(const std::exception_ptr& thrown) {
    try {
        std::rethrow_exception(thrown);
    } catch (const std::bad_alloc&) {
        return true;
    } catch (const stores::StoreError& error) {
        return std::string(error.what()).find("memory") != std::string::npos;
    } catch (...) {
        return false;
    }
}

/// Memory that runs out, at a request of whoever asks for it.
class AllocationFault final : public Fault {
public:
    explicit AllocationFault(bool once) : _once(once) {}

    core::storage::datastore::IDataStore& over(core::storage::datastore::IDataStore& store) override { return store; }
    void arm(long long passing) override { allocations::failAfter(passing, !_once); }
    long long disarm() override { return allocations::goOn(); }
    bool once() const override { return _once; }
    bool isOurs(const std::exception_ptr& thrown) const override { return saysMemoryRanOut(thrown); }
    bool isTold(const std::wstring& text) const override { return text.find(L"broke off") != std::wstring::npos; }
    long long blocks() const override { return allocations::blocks(); }

private:
    const bool _once;
};

}  // namespace lumivard::platform::test_support::fault
