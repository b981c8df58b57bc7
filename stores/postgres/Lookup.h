#pragma once

#include <string>
#include <vector>

#include "stores/postgres/Connection.h"

namespace lumivard::platform::stores::pq {

/// The addresses of hosts, looked up at the same time; an address in place of a name is its own, and an empty name has
/// none. What does not come until then is left out. Throws `ConnectionLost` where there is none at all.
std::vector<std::vector<std::string>> lookUp(const std::vector<std::string>& names, tTime until);

}  // namespace lumivard::platform::stores::pq
