#pragma once

#include <map>
#include <set>
#include <string>

#include "lumivard/platform/data/check/Check.h"
#include "tests/check/Walks.h"

/// What a repair owes, whatever was wrong before.
namespace lumivard::platform::test_support {

/// Repairs a store, and looks whether what is left is what the plan foretold, whether a second repair has nothing to
/// do, and whether all is reached that was reached before. What is wrong with it, in words; empty for nothing.
///
/// `options.keep` has to be large enough for all findings.
std::string faultOfRepair(core::storage::datastore::IDataStore& store, const data::check::Options& options);

/// What was reached before and is not reached any more, or not as it was; empty for nothing. A new name is one made of
/// the old one.
std::string lost(const std::map<unsigned int, walks::tItem>& before, const std::map<unsigned int, walks::tItem>& after);

/// What cursors got to before and do not get to any more; empty for nothing.
std::string outOfReach(const std::set<unsigned int>& before, const std::set<unsigned int>& after);

/// All that a repair must not lose: what can be reached, and what cursors get to.
struct tReach {
    explicit tReach(core::storage::datastore::IDataStore& store)
        : all(walks::reachable(store)), near(walks::byCursors(store)) {}

    std::map<unsigned int, walks::tItem> all;
    std::set<unsigned int> near;
};

/// Either of the two above, of a store as it is now.
std::string missing(const tReach& before, core::storage::datastore::IDataStore& store);

}  // namespace lumivard::platform::test_support
