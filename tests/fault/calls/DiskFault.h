#pragma once

#include <memory>
#include <optional>
#include <ostream>
#include <string>

#include "lumivard/platform/store_contract/LoggingStore.h"
#include "lumivard/platform/stores/StoreError.h"
#include "tests/fault/calls/Fault.h"
#include "tests/fault/disk/FaultyTap.h"

namespace lumivard::platform::test_support::fault {

/// A way in which a disk fails.
struct tDiskWay {
    const char* name;
    stores::disk::Answer answer;
    stores::disk::FaultyTap::tSpan span;
    stores::disk::FaultyTap::tKinds kinds;
};

inline void PrintTo(const tDiskWay& way, std::ostream* out) {
    *out << way.name;
}

/// A disk that fails at a call of the system. It has to be watched.
class DiskFault final : public Fault, public stores::disk::Tap {
public:
    explicit DiskFault(const tDiskWay& way) : _way(way) {}

    core::storage::datastore::IDataStore& over(core::storage::datastore::IDataStore& store) override {
        _logging = std::make_unique<store_contract::LoggingStore>(store);
        return *_logging;
    }
    void arm(long long passing) override {
        _tap.emplace(static_cast<std::uint64_t>(passing), _way.answer, _way.span, _way.kinds);
    }
    long long disarm() override {
        const auto hits = static_cast<long long>(_tap->hits());
        _tap.reset();
        return hits;
    }
    bool once() const override { return _way.span == stores::disk::FaultyTap::tSpan::kOnce; }
    bool isOurs(const std::exception_ptr& thrown) const override {
        try {
            std::rethrow_exception(thrown);
        } catch (const stores::StoreError&) {
            return true;
        } catch (...) {
            return false;
        }
    }
    bool isTold(const std::wstring& text) const override { return text.find(L"broke off") != std::wstring::npos; }
    int guards() const override { return _logging->guards(); }

    stores::disk::Answer ask(const stores::disk::Call& call) override {
        return _tap ? _tap->ask(call) : stores::disk::Answer();
    }

private:
    const tDiskWay& _way;
    std::optional<stores::disk::FaultyTap> _tap;
    std::unique_ptr<store_contract::LoggingStore> _logging;
};

}  // namespace lumivard::platform::test_support::fault
