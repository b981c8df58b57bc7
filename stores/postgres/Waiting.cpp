#include "stores/postgres/Waiting.h"

#include <poll.h>

#include <algorithm>
#include <cerrno>

#include "stores/core/Failure.h"

namespace lumivard::platform::stores::pq {

void waitFor(int socket, short events, tTime until) {
    pollfd waited{socket, events, 0};
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - std::chrono::steady_clock::now());
        const int ready = ::poll(&waited, 1, static_cast<int>(std::clamp<long long>(left.count(), 0, 60'000)));
        if (ready > 0) return;
        if (ready < 0 && errno != EINTR) throw ConnectionLost(systemReason(errno));
        if (left.count() <= 0) throw ConnectionLost("the server did not answer in time");
    }
}

}  // namespace lumivard::platform::stores::pq
