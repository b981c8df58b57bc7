#include "stores/postgres/Lookup.h"

#include <netdb.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <memory>
#include <new>

namespace lumivard::platform::stores::pq {
namespace {

/// One name that the system looks up on a thread of its own. Where it has not done so in time, and cannot be stopped,
/// it needs its question until it has: that is left to it then.
struct tQuestion {
    explicit tQuestion(const std::string& asked) : name(asked) {
        hints.ai_socktype = SOCK_STREAM;
        cell.ar_name = name.c_str();
        cell.ar_request = &hints;
    }
    ~tQuestion() {
        if (cell.ar_result) ::freeaddrinfo(cell.ar_result);
    }
    tQuestion(const tQuestion&) = delete;
    tQuestion& operator=(const tQuestion&) = delete;

    std::string name;
    addrinfo hints{};
    gaicb cell{};
};

using tQuestions = std::vector<std::unique_ptr<tQuestion>>;

bool isOpen(const std::unique_ptr<tQuestion>& question) {
    return question && ::gai_error(&question->cell) == EAI_INPROGRESS;
}

void wait(const tQuestions& questions, tTime until) {
    std::vector<const gaicb*> cells;
    for (const auto& question : questions) cells.push_back(isOpen(question) ? &question->cell : nullptr);
    const auto left = std::max(until - std::chrono::steady_clock::now(), std::chrono::steady_clock::duration(0));
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(left);
    const timespec time{seconds.count(), static_cast<long>(std::chrono::nanoseconds(left - seconds).count())};
    ::gai_suspend(cells.data(), static_cast<int>(cells.size()), &time);
}

std::vector<std::string> addressesOf(const addrinfo* result) {
    std::vector<std::string> addresses;
    for (; result; result = result->ai_next) {
        std::array<char, NI_MAXHOST> text{};
        if (::getnameinfo(result->ai_addr, result->ai_addrlen, text.data(), text.size(), nullptr, 0, NI_NUMERICHOST) ==
            0) {
            addresses.emplace_back(text.data());
        }
    }
    return addresses;
}

}  // namespace

std::vector<std::vector<std::string>> lookUp(const std::vector<std::string>& names, tTime until) {
    tQuestions questions;
    std::vector<gaicb*> cells;
    std::vector<std::vector<std::string>> found(names.size());
    for (const std::string& name : names) {
        questions.push_back(name.empty() ? nullptr : std::make_unique<tQuestion>(name));
        if (!questions.back()) continue;
        // An address needs nobody to be asked.
        addrinfo& hints = questions.back()->hints;
        hints.ai_flags = AI_NUMERICHOST;
        addrinfo* result = nullptr;
        if (::getaddrinfo(name.c_str(), nullptr, &hints, &result) == 0) {
            found[questions.size() - 1] = addressesOf(result);
            ::freeaddrinfo(result);
            questions.back().reset();
            continue;
        }
        hints.ai_flags = AI_ADDRCONFIG;
        cells.push_back(&questions.back()->cell);
    }
    if (cells.empty()) return found;
    if (::getaddrinfo_a(GAI_NOWAIT, cells.data(), static_cast<int>(cells.size()), nullptr) != 0) throw std::bad_alloc();
    while (std::any_of(questions.begin(), questions.end(), isOpen) && std::chrono::steady_clock::now() < until) {
        wait(questions, until);
    }
    std::string reason;
    bool any = false;
    for (std::size_t i = 0; i < questions.size(); ++i) {
        any = any || names[i].empty() || !found[i].empty();
        if (!questions[i]) continue;
        gaicb& cell = questions[i]->cell;
        if (isOpen(questions[i]) && ::gai_cancel(&cell) != EAI_CANCELED && isOpen(questions[i])) {
            static_cast<void>(questions[i].release());
            reason = "the host \"" + names[i] + "\" was not found in time";
            continue;
        }
        const int error = ::gai_error(&cell);
        if (error == 0) found[i] = addressesOf(cell.ar_result);
        if (error != 0) reason = "the host \"" + names[i] + "\" is not found: " + ::gai_strerror(error);
        any = any || !found[i].empty();
    }
    if (!any) throw ConnectionLost(reason);
    return found;
}

}  // namespace lumivard::platform::stores::pq
