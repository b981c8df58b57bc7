#pragma once

#include <string>
#include <vector>

#include "stores/postgres/Connection.h"

namespace lumivard::platform::stores::pq {

/// Connects to all servers that a location names, at the same time, and gives those that have answered soon after the
/// first: a server that hangs keeps nobody from another one. `location` is as libpq takes it. Names of hosts are looked
/// up within the time, too. What libpq would choose by `target_session_attrs` is left to who called.
///
/// Throws `ConnectionLost` with the reason of each server where none has answered until then.
std::vector<Connection> connectToAll(const std::string& location, tTime until);

}  // namespace lumivard::platform::stores::pq
