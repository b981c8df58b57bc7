#pragma once

#include <signal.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

namespace lvp::tool {

/// Ends work that the user has interrupted. It is no `std::exception`: whoever takes those for failures of a store, as
/// the checker does, lets it pass.
struct Interrupted {
    std::string work;
};

/// Long work: says on standard error how far it is, where that is a terminal, and ends when the user asks for it, by an
/// interrupt (Ctrl-C), a request to terminate, or a terminal that goes away. A second one ends the process at once.
/// Work that is a part of other work has a watch of its own, which ends before the other's.
class Watch {
public:
    /// What is done, and what its progress is counted in: "import", "bytes". `total` 0 is unknown.
    Watch(std::string doing, std::string unit, std::uint64_t total = 0);
    ~Watch();
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

    /// So much is done, of the total. Throws `Interrupted` when the user has asked for an end. Costs next to nothing.
    void reached(std::uint64_t done);
    void advance(std::uint64_t more = 1) { reached(_done + more); }

    /// Hears the progress of the library, with its total.
    std::function<bool(unsigned long long done, unsigned long long total)> listener();

    /// Whether the user has asked for an end.
    static bool interrupted();

    std::uint64_t done() const { return _done; }
    void total(std::uint64_t total) { _total = total; }

private:
    void show();

    static constexpr std::size_t kSignals = 3;

    std::string _doing;
    std::string _unit;
    std::uint64_t _total;
    std::uint64_t _done = 0;
    unsigned int _calls = 0;
    bool _terminal;
    bool _shown = false;
    std::chrono::steady_clock::time_point _next;
    std::array<struct sigaction, kSignals> _before{};
};

}  // namespace lvp::tool
