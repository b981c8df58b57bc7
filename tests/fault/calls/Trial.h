#pragma once

#include <array>
#include <exception>
#include <memory>
#include <string>
#include <vector>

#include "tests/fault/calls/Fault.h"
#include "tests/fault/calls/Operation.h"
#include "tests/fault/calls/Picture.h"

namespace lumivard::platform::test_support::fault {

/// How an operation ends when nothing fails.
struct Expected {
    Expected(const tOperation& operation, const Ground& ground);

    std::wstring answer;
    std::vector<tNamed> before;         ///< what the stores show without the operation,
    std::vector<tNamed> after;          ///< and with it, when all objects are closed,
    std::vector<tNamed> answersBefore;  ///< and likewise what the objects say
    std::vector<tNamed> answersAfter;
    std::vector<std::string> findings;  ///< what is wrong already
};

/// The four stores of one try, and a client's objects on them.
class Stage {
public:
    /// `fault` is laid over the store at `failing`; with null nothing fails.
    Stage(const Ground& ground, tPlace failing, Fault* fault);

    World& world() { return *_world; }

    /// The stores themselves, with nothing in between.
    const tStores& plain() const { return _plain; }

    /// Opens all objects anew, when those before are closed.
    void renew() { _world = std::make_unique<World>(_used); }

    /// Closes a store, when all objects are closed, and opens its file.
    void close(tPlace place);
    void reopen(const Ground& ground, tPlace place);

private:
    std::array<std::unique_ptr<IDataStore>, kPlaces> _real;
    tStores _plain{};
    tStores _used{};
    std::unique_ptr<World> _world;
};

/// How an operation came to its end: with an answer, or with an exception.
struct tOutcome {
    std::wstring answer;
    std::exception_ptr thrown;
};

tOutcome call(tOperation::tRun run, World& world);

/// What an exception says.
std::string messageOf(const std::exception_ptr& thrown);

/// Tries one operation on stores that fail, and notes each promise that is broken. After a failure
///
/// - what came out is what the store threw, or else the operation has done all that it should;
/// - no guard is held: another thread gets it;
/// - the checker finds no damage in the stores, only what a repair takes away (see `wrongLeftovers`);
/// - everything that the operation does not touch is as it was, can be walked, and answers;
/// - the objects that were open answer, and a second try through them ends as if nothing had failed;
/// - when all objects are closed, no record is counted as open, but for one count too high for each failure that did
///   not come out: then it may have been the giving back of a count that failed;
/// - a file holds what was in memory;
/// - there are as many blocks of memory as before.
class Trial {
public:
    /// Tries on stores of a ground, of which the one at `failing` fails. `expected` is for that operation and ground.
    Trial(const tOperation& operation, const Ground& ground, const Expected& expected, tPlace failing, Fault& fault);

    /// Lets the operation fail at the first places where it can, and behind these at every `stride`-th, and gives what
    /// was found; empty when all is well.
    std::vector<std::string> run(long long stride);

    /// How often it failed so far.
    long long failures() const { return _failures; }

private:
    bool failAt(long long passing);
    void judge(Stage& stage, const tOutcome& outcome);
    void judgeOutcome(const tOutcome& outcome);
    void judgeStanding(Stage& stage, const tOutcome& outcome);
    void tryAgain(Stage& stage, const tOutcome& outcome);
    void judgeEnd(Stage& stage, const tOutcome& outcome);
    void judgeStores(Stage& stage);
    void judgeLeftovers(Stage& stage);
    void judgeCounts(Stage& stage, const tOutcome& outcome);
    void judgeGuard(Stage& stage);
    Picture look(const tStores& stores);
    void compare(const std::string& what, const std::vector<tNamed>& wanted, const std::vector<tNamed>& found);
    void note(const std::string& finding);

    const tOperation& _operation;
    const Ground& _ground;
    const Expected& _expected;
    const tPlace _failing;
    Fault& _fault;
    long long _passing = 0;
    long long _fired = 0;
    long long _failures = 0;
    std::vector<std::string> _findings;
};

}  // namespace lumivard::platform::test_support::fault
