#pragma once

#include <string>
#include <vector>

#include "stores/postgres/Connection.h"

namespace lumivard::platform::stores::pq {

/// How long others are waited for when one has answered.
inline constexpr std::chrono::milliseconds kGrace{300};

/// The addresses of hosts, looked up at the same time; an address in place of a name is its own, and an empty name has
/// none. What does not come until then, or soon after
/// another one, is left out. Throws `ConnectionLost` where there is none at all.
std::vector<std::vector<std::string>> lookUp(const std::vector<std::string>& names, tTime until);

}  // namespace lumivard::platform::stores::pq
