#pragma once

#include <array>
#include <string>
#include <vector>

#include "tests/fault/calls/DiskFault.h"
#include "tests/fault/calls/Trial.h"

namespace lumivard::platform::test_support::fault {

/// Tries two operations one after the other, each with a flush behind it and with objects of its own, and the closing
/// of the store, on a file whose disk fails at one of the calls on the way, and notes each promise that is broken. From
/// the first flush that fails
///
/// - the objects that are open answer as before, and no guard is held;
/// - what would change something throws what that flush threw, and changes nothing in memory either;
/// - the file holds the flush before or that one. It opens, and the checker finds nothing in it but what a repair takes
///   away.
class DiskTrial {
public:
    /// `ground` is one of files, `place` the one that both operations change.
    DiskTrial(const tOperation& first, const tOperation& second, const Ground& ground, tPlace place,
              const tDiskWay& way);

    /// Lets the disk fail at every `stride`-th call, beginning with number `first`, and gives what was found; empty
    /// when all is well.
    std::vector<std::string> run(long long first, long long stride);

    /// How often it failed so far.
    long long failures() const { return _failures; }

private:
    /// What an operation does when nothing fails.
    struct tStep {
        std::vector<tNamed> before;  ///< what the stores show before it,
        std::vector<tNamed> after;   ///< and after it, when they are flushed
        std::vector<tNamed> answers;
        std::wstring answer;
    };

    void rehearse();
    bool failAt(long long passing);
    std::size_t live(Stage& stage);
    void judgeOutcome(const tStep& step, const tOutcome& outcome, tOperation::tManner manner);
    void judgeRefusal(Stage& stage, std::size_t refused);
    void judgeFile(Stage& stage, std::size_t flushed);
    tOutcome act(std::size_t which, World& world) const;
    std::string flush(Stage& stage) const;
    void compare(const std::string& what, const std::vector<tNamed>& wanted, const std::vector<tNamed>& found);
    void note(const std::string& finding);

    const std::array<const tOperation*, 2> _operations;
    const Ground& _ground;
    const tPlace _place;
    const tDiskWay& _way;
    DiskFault _fault;
    std::array<tStep, 2> _steps;
    std::vector<tNamed> _end;  ///< what the stores show when all is closed
    std::string _error;        ///< what the first flush threw that failed
    long long _passing = 0;
    long long _failures = 0;
    std::vector<std::string> _findings;
};

}  // namespace lumivard::platform::test_support::fault
