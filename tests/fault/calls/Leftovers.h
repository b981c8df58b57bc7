#pragma once

#include <string>

#include "tests/fault/calls/Ground.h"

namespace lumivard::platform::test_support::fault {

/// What is wrong with what a failed operation has left in a store, in words; empty when all is well: the checker finds
/// notes and stale counts at the most, and one repair that erases what nothing reaches leaves nothing to be found and
/// nothing to be done. The repair is tried on a copy. `ground` is of the store's kind.
///
/// Many failures leave the same records: those that were found well before are not looked at again.
std::string wrongLeftovers(IDataStore& store, const Ground& ground);

}  // namespace lumivard::platform::test_support::fault
