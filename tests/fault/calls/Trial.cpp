#include "tests/fault/calls/Trial.h"

#include <chrono>
#include <cstdlib>
#include <iostream>

#include "tests/fault/calls/GuardAttempt.h"
#include "tests/fault/calls/Leftovers.h"
#include "tests/support/Sanitized.h"
#include "tests/support/StoredRecords.h"

namespace lumivard::platform::test_support::fault {

namespace {

constexpr std::size_t kMostFindings = 5;
constexpr std::chrono::seconds kPatience(20);
constexpr long long kFirst = kSanitized ? 3 : 10;  // places that are tried whatever the stride

/// Whether a record counts the objects over it: a root, a primitive, a table or a container.
bool isEntity(const std::string& record) {
    return !record.empty() && record[0] != 3 && record[0] != 5;
}

}  // namespace

tOutcome call(tOperation::tRun run, World& world) {
    try {
        return {run(world), nullptr};
    } catch (...) {
        return {{}, std::current_exception()};
    }
}

std::string messageOf(const std::exception_ptr& thrown) {
    try {
        std::rethrow_exception(thrown);
    } catch (const std::exception& exception) {
        return exception.what();
    } catch (...) {
        return "something of an unknown kind";
    }
}

Stage::Stage(const Ground& ground, tPlace failing, Fault* fault) {
    for (unsigned int place = 0; place < kPlaces; ++place) {
        _real[place] = ground.make(tPlace(place), place == failing);
        _plain[place] = _real[place].get();
    }
    _used = _plain;
    if (fault) _used[failing] = &fault->over(*_real[failing]);
    renew();
}

void Stage::close(tPlace place) {
    _real[place].reset();
    _plain[place] = nullptr;
}

void Stage::reopen(const Ground& ground, tPlace place) {
    _real[place] = ground.reopen(place);
    _plain[place] = _real[place].get();
}

Expected::Expected(const tOperation& operation, const Ground& ground) {
    {
        Stage stage(ground, kPlaces, nullptr);
        answersBefore = stage.world().answers();
        before = pictureOf(stage.plain()).items;
    }
    Stage stage(ground, kPlaces, nullptr);
    if (operation.prepare) operation.prepare(stage.world());
    const tOutcome outcome = call(operation.run, stage.world());
    if (outcome.thrown) findings.push_back("fails by itself: " + messageOf(outcome.thrown));
    answer = outcome.answer;
    answersAfter = stage.world().answers();
    stage.world().close();
    const Picture picture = pictureOf(stage.plain());
    after = picture.items;
    for (const std::wstring& complaint : picture.complaints) findings.push_back(narrow(complaint));
    const auto changed = difference(untouched(before, operation.touches), untouched(after, operation.touches));
    if (!changed.empty()) findings.push_back("changes what it should not touch: " + changed);
}

Trial::Trial(const tOperation& operation, const Ground& ground, const Expected& expected, tPlace failing, Fault& fault)
    : _operation(operation), _ground(ground), _expected(expected), _failing(failing), _fault(fault) {}

std::vector<std::string> Trial::run(long long stride) {
    for (const std::string& finding : _expected.findings) note(finding);
    if (_fault.blocks() != 0) failAt(0);  // what is made once in a process is there from here on
    for (_passing = 0; _findings.size() < kMostFindings; _passing += _passing < kFirst ? 1 : stride) {
        const long long blocks = _fault.blocks();
        const std::size_t findings = _findings.size();
        const bool failed = failAt(_passing);
        const long long more = _fault.blocks() - blocks;
        if (more != 0 && _findings.size() == findings) note(std::to_string(more) + " blocks of memory are left");
        if (!failed) break;
        ++_failures;
    }
    return std::move(_findings);
}

bool Trial::failAt(long long passing) {
    Stage stage(_ground, _failing, &_fault);
    if (_operation.prepare) _operation.prepare(stage.world());
    _fault.arm(passing);
    const tOutcome outcome = call(_operation.run, stage.world());
    _fired = _fault.disarm();
    if (_fired == 0 && outcome.thrown) note("throws what nobody threw: " + messageOf(outcome.thrown));
    if (_fired == 0) return false;
    judge(stage, outcome);
    return true;
}

void Trial::judge(Stage& stage, const tOutcome& outcome) {
    try {
        judgeOutcome(outcome);
        if (_fault.guards() != 0) return note("a guard is held");
        judgeStanding(stage, outcome);
        judgeLeftovers(stage);
        tryAgain(stage, outcome);
        stage.world().close();
        judgeLeftovers(stage);
        judgeCounts(stage, outcome);
        judgeEnd(stage, outcome);
        judgeGuard(stage);
        judgeStores(stage);
        documentOf(stage.plain()[_failing]);
    } catch (const std::exception& exception) {
        note(std::string("what follows a failure throws: ") + exception.what());
    }
}

void Trial::judgeOutcome(const tOutcome& outcome) {
    if (outcome.thrown && _operation.manner == tOperation::kSilent) note("throws: " + messageOf(outcome.thrown));
    if (outcome.thrown && !_fault.isOurs(outcome.thrown)) note("throws something else: " + messageOf(outcome.thrown));
    if (outcome.thrown || _operation.manner == tOperation::kSilent) return;
    if (_operation.manner == tOperation::kTold && _fault.isTold(outcome.answer)) return;
    if (outcome.answer != _expected.answer) note("hides the failure and answers " + narrow(outcome.answer));
}

/// Right after the failure, with the objects that were open.
void Trial::judgeStanding(Stage& stage, const tOutcome& outcome) {
    const auto now = look(stage.plain()).items;
    compare("loses what it does not touch", untouched(_expected.before, _operation.touches),
            untouched(now, _operation.touches));
    if (!outcome.thrown || _operation.prepare) return;
    compare("leaves objects that say something else", untouched(_expected.answersBefore, _operation.touches),
            untouched(stage.world().answers(), _operation.touches));
}

void Trial::tryAgain(Stage& stage, const tOutcome& outcome) {
    if (!outcome.thrown) return;
    if (_operation.manner != tOperation::kPasses) return;
    const tOutcome second = call(_operation.again ? _operation.again : _operation.run, stage.world());
    if (second.thrown) return note("fails at the second try: " + messageOf(second.thrown));
    if (!_operation.touches && second.answer != _expected.answer) {
        note("answers otherwise at the second try: " + narrow(second.answer));
    }
    compare("leaves objects that say something else after the second try", _expected.answersAfter,
            stage.world().answers());
}

/// When all is closed: the stores are as if nothing had failed.
void Trial::judgeEnd(Stage& stage, const tOutcome& outcome) {
    const auto now = look(stage.plain()).items;
    if (_operation.manner == tOperation::kTold && (outcome.thrown || outcome.answer != _expected.answer)) return;
    if (_operation.manner == tOperation::kSilent && difference(_expected.before, now).empty()) return;
    // What is counted as open once too often cannot be destroyed, and so not be made anew.
    if (_operation.again && !_fault.once()) return;
    compare("ends otherwise than without a failure", _expected.after, now);
}

/// The file that a store is kept in.
void Trial::judgeStores(Stage& stage) {
    if (_ground.kind() != tKind::kFile) return;
    const auto now = look(stage.plain()).items;
    stage.plain()[_failing]->flush();
    stage.close(_failing);
    stage.reopen(_ground, _failing);
    compare("is not in the file as it was in memory", now, look(stage.plain()).items);
}

void Trial::judgeLeftovers(Stage& stage) {
    for (IDataStore* store : stage.plain()) {
        const std::string wrong = wrongLeftovers(*store, _ground);
        if (!wrong.empty()) note(wrong);
    }
}

void Trial::judgeCounts(Stage& stage, const tOutcome& outcome) {
    const bool cameOut = outcome.thrown || (_operation.manner == tOperation::kTold && _fault.isTold(outcome.answer));
    const long long lost = _fault.once() && cameOut ? 0 : _fired;
    long long surplus = 0;
    for (IDataStore* store : stage.plain()) {
        for (const unsigned int offset : _ground.offsets(*store)) {
            if (!isEntity(stored::bytes(store, offset))) continue;
            const auto count = static_cast<int>(stored::refs(store, offset));
            surplus += count;
            if (count < 0) note("a record has a count below 0");
        }
    }
    if (surplus > lost) note("records are counted as open " + std::to_string(surplus) + " times too often");
}

void Trial::judgeGuard(Stage& stage) {
    if (_fault.guards() != 0) note("a guard is held");
    GuardAttempt attempt(*stage.plain()[_failing]);
    if (attempt.succeeds(kPatience)) return;
    std::cerr << _operation.name << ", failing after " << _passing << ": no other thread gets the guard" << std::endl;
    std::abort();  // neither that thread nor the store can come to its end
}

Picture Trial::look(const tStores& stores) {
    Picture picture = pictureOf(stores);
    for (const std::wstring& complaint : picture.complaints) note(narrow(complaint));
    return picture;
}

void Trial::compare(const std::string& what, const std::vector<tNamed>& wanted, const std::vector<tNamed>& found) {
    const std::string difference = fault::difference(wanted, found);
    if (!difference.empty()) note(what + ": " + difference);
}

void Trial::note(const std::string& finding) {
    _findings.push_back(std::string(_operation.name) + ", failing after " + std::to_string(_passing) + ": " + finding);
}

}  // namespace lumivard::platform::test_support::fault
