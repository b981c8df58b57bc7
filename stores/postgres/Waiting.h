#pragma once

#include "stores/postgres/Connection.h"

namespace lumivard::platform::stores::pq {

/// Waits until a socket can be read from (`POLLIN`) or written to (`POLLOUT`). Throws `ConnectionLost` when the time is
/// over before.
void waitFor(int socket, short events, tTime until);

}  // namespace lumivard::platform::stores::pq
