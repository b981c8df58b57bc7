#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <string>

#include "lumivard/platform/stores.h"
#include "tests/support/OddStore.h"

namespace lumivard::platform::test_support {

/// One way of making a new, empty store, with the name that the tests on it bear.
struct StoreKind {
    const char* name;
    std::unique_ptr<core::storage::datastore::IDataStore> (*make)();
};

inline void PrintTo(const StoreKind& kind, std::ostream* out) {
    *out << kind.name;
}

/// The stores on which behaviour is tested: the one in memory that we ship, and one with offsets far apart, no guard
/// and no further abilities.
inline const StoreKind kStoreKinds[] = {
    {"memory", [] { return stores::memory(); }},
    {"odd", []() -> std::unique_ptr<core::storage::datastore::IDataStore> { return std::make_unique<OddStore>(); }},
};

/// A test that is run once on each kind of store. Name the fixture in `LVP_ON_EACH_STORE` behind its tests.
class StoreTest : public testing::TestWithParam<StoreKind> {
protected:
    /// The store under test: new, empty, and alive for the whole test.
    core::storage::datastore::IDataStore* store() { return _store.get(); }

    /// A second store of the same kind, as empty.
    core::storage::datastore::IDataStore* other() { return _other.get(); }

private:
    std::unique_ptr<core::storage::datastore::IDataStore> _store = GetParam().make();
    std::unique_ptr<core::storage::datastore::IDataStore> _other = GetParam().make();
};

}  // namespace lumivard::platform::test_support

/// Runs the tests of a fixture on each kind of store.
#define LVP_ON_EACH_STORE(fixture)                                                                          \
    INSTANTIATE_TEST_SUITE_P(On, fixture, testing::ValuesIn(lumivard::platform::test_support::kStoreKinds), \
                             [](const auto& kind) { return std::string(kind.param.name); })
