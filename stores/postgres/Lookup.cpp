#include "stores/postgres/Lookup.h"

#include <netdb.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace lumivard::platform::stores::pq {
namespace {

using tAddresses = std::vector<std::string>;

/// A name that is looked up on a thread of its own, which nobody can stop: where it takes too long it is left to that.
struct tQuestion {
    explicit tQuestion(std::string asked) : name(std::move(asked)) {}

    const std::string name;
    std::mutex mutex;
    std::condition_variable done;
    bool isDone = false;
    int error = 0;
    tAddresses addresses;
};

int ask(const std::string& name, int flags, tAddresses& addresses) {
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = flags;
    addrinfo* all = nullptr;
    const int error = ::getaddrinfo(name.c_str(), nullptr, &hints, &all);
    if (error != 0) return error;
    const std::unique_ptr<addrinfo, void (*)(addrinfo*)> owned(all, ::freeaddrinfo);
    for (const addrinfo* each = all; each; each = each->ai_next) {
        std::array<char, NI_MAXHOST> text{};
        if (::getnameinfo(each->ai_addr, each->ai_addrlen, text.data(), text.size(), nullptr, 0, NI_NUMERICHOST) == 0) {
            addresses.emplace_back(text.data());
        }
    }
    return 0;
}

void answer(tQuestion& question) noexcept {
    int error = EAI_MEMORY;
    tAddresses addresses;
    try {
        error = ask(question.name, AI_ADDRCONFIG, addresses);
    } catch (const std::bad_alloc&) {
        addresses.clear();
    }
    const std::lock_guard lock(question.mutex);
    question.error = error;
    question.addresses = std::move(addresses);
    question.isDone = true;
    question.done.notify_all();
}

}  // namespace

std::vector<std::vector<std::string>> lookUp(const std::vector<std::string>& names, tTime until) {
    std::vector<tAddresses> found(names.size());
    std::vector<std::shared_ptr<tQuestion>> questions(names.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
        // An address needs nobody to be asked.
        if (names[i].empty() || ask(names[i], AI_NUMERICHOST, found[i]) == 0) continue;
        questions[i] = std::make_shared<tQuestion>(names[i]);
        try {
            std::thread([question = questions[i]] { answer(*question); }).detach();
        } catch (const std::system_error& error) {
            throw ConnectionLost(error.code().message());
        }
    }
    std::string reason;
    const auto isKnown = [&] {
        for (std::size_t i = 0; i < names.size(); ++i) {
            if (names[i].empty() || !found[i].empty()) return true;
        }
        return false;
    };
    bool any = isKnown();
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (!questions[i]) continue;
        tQuestion& question = *questions[i];
        std::unique_lock lock(question.mutex);
        // Who can be reached is not kept waiting for those whose names are not found.
        const tTime end = any ? std::min(until, std::chrono::steady_clock::now() + kGrace) : until;
        if (!question.done.wait_until(lock, end, [&] { return question.isDone; })) {
            reason = "the host \"" + names[i] + "\" was not found in time";
        } else if (question.error != 0) {
            reason = "the host \"" + names[i] + "\" is not found: " + ::gai_strerror(question.error);
        } else {
            found[i] = question.addresses;
            any = any || !found[i].empty();
        }
    }
    if (!any) throw ConnectionLost(reason);
    return found;
}

}  // namespace lumivard::platform::stores::pq
