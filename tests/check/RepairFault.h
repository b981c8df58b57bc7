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

}  // namespace lumivard::platform::test_support
