#include "tests/fault/calls/DiskTrial.h"

#include "tests/fault/calls/Leftovers.h"

namespace lumivard::platform::test_support::fault {

namespace {

constexpr std::size_t kMostFindings = 10;

}  // namespace

DiskTrial::DiskTrial(const tOperation& first, const tOperation& second, const Ground& ground, tPlace place,
                     const tDiskWay& way)
    : _operations{&first, &second}, _ground(ground), _place(place), _way(way), _fault(way) {
    rehearse();
}

std::vector<std::string> DiskTrial::run(long long first, long long stride) {
    for (_passing = first; _findings.size() < kMostFindings && failAt(_passing); _passing += stride) ++_failures;
    return std::move(_findings);
}

void DiskTrial::rehearse() {
    Stage stage(_ground, _place, &_fault);
    for (std::size_t i = 0; i < _steps.size(); ++i) {
        tStep& step = _steps[i];
        if (i != 0) stage.renew();
        step.before = pictureOf(stage.plain()).items;
        const tOutcome outcome = act(i, stage.world());
        if (outcome.thrown) note("fails by itself: " + messageOf(outcome.thrown));
        step.answer = outcome.answer;
        step.answers = stage.world().answers();
        step.after = pictureOf(stage.plain()).items;
        stage.world().close();
    }
    _end = pictureOf(stage.plain()).items;
}

bool DiskTrial::failAt(long long passing) {
    const stores::disk::Watch watch(_ground.folder(), _fault);
    Stage stage(_ground, _place, &_fault);
    _fault.arm(passing);
    _error.clear();
    std::size_t flushed = 0;
    try {
        flushed = live(stage);
        if (_fault.guards() != 0) note("a guard is held");
        stage.world().close();
        stage.close(_place);
    } catch (const std::exception& exception) {
        note(std::string("what follows a failure throws: ") + exception.what());
    }
    if (_fault.disarm() == 0) return false;
    judgeFile(stage, flushed);
    return true;
}

/// Gives how many flushes returned. At the end objects are open.
std::size_t DiskTrial::live(Stage& stage) {
    for (std::size_t i = 0; i < _steps.size(); ++i) {
        if (i != 0) stage.renew();
        const tOutcome outcome = act(i, stage.world());
        _error = flush(stage);
        judgeOutcome(_steps[i], outcome, _operations[i]->manner);
        compare("objects say something else behind a flush", _steps[i].answers, stage.world().answers());
        if (!_error.empty()) {
            if (i + 1 < _steps.size()) judgeRefusal(stage, i + 1);
            return i;
        }
        if (i + 1 < _steps.size()) stage.world().close();
    }
    return _steps.size();
}

/// Of an operation before which no flush has failed. One that flushes itself may throw what the flush behind it does.
void DiskTrial::judgeOutcome(const tStep& step, const tOutcome& outcome, tOperation::tManner manner) {
    if (outcome.thrown && messageOf(outcome.thrown) != _error) note("throws: " + messageOf(outcome.thrown));
    if (outcome.thrown) return;
    if (manner == tOperation::kTold && _fault.isTold(outcome.answer)) return;
    if (outcome.answer != step.answer) note("answers " + narrow(outcome.answer));
}

/// Calls an operation on a store that refuses all changes, of which the one before is the last that it has taken.
void DiskTrial::judgeRefusal(Stage& stage, std::size_t refused) {
    const tStep& step = _steps[refused];
    const tOperation::tManner manner = _operations[refused]->manner;
    stage.world().close();
    stage.renew();
    const tOutcome outcome = act(refused, stage.world());
    if (outcome.thrown && messageOf(outcome.thrown) != _error) {
        note("throws " + messageOf(outcome.thrown) + " in place of " + _error);
    }
    const bool told = manner == tOperation::kTold && _fault.isTold(outcome.answer);
    const bool silent = outcome.thrown || told || manner == tOperation::kSilent;
    if (!silent && step.before != step.after) note("hides the failure and answers " + narrow(outcome.answer));
    compare("changes a store that refuses changes", _steps[refused - 1].after, pictureOf(stage.plain()).items);
    if (flush(stage) != _error) note("another flush says something else");
}

void DiskTrial::judgeFile(Stage& stage, std::size_t flushed) {
    try {
        stage.reopen(_ground, _place);
        const Picture found = pictureOf(stage.plain());
        for (const std::wstring& complaint : found.complaints) note(narrow(complaint));
        const auto& last = flushed == 0 ? _steps.front().before : _steps[flushed - 1].after;
        const auto& next = flushed < _steps.size() ? _steps[flushed].after : _end;
        if (found.items != last) compare("the file holds neither of two flushes", next, found.items);
        const std::string wrong = wrongLeftovers(*stage.plain()[_place], _ground);
        if (!wrong.empty()) note(wrong);
    } catch (const std::exception& exception) {
        note(std::string("the file cannot be read: ") + exception.what());
    }
}

tOutcome DiskTrial::act(std::size_t which, World& world) const {
    const tOperation& operation = *_operations[which];
    try {
        if (operation.prepare) operation.prepare(world);
    } catch (...) {
        return {{}, std::current_exception()};
    }
    return call(operation.run, world);
}

/// What a flush throws; empty where it returns.
std::string DiskTrial::flush(Stage& stage) const {
    try {
        stage.plain()[_place]->flush();
        return {};
    } catch (const stores::StoreError& error) {
        return error.what();
    }
}

void DiskTrial::compare(const std::string& what, const std::vector<tNamed>& wanted, const std::vector<tNamed>& found) {
    const std::string difference = fault::difference(wanted, found);
    if (!difference.empty()) note(what + ": " + difference);
}

void DiskTrial::note(const std::string& finding) {
    _findings.push_back(std::string(_operations[0]->name) + " and " + _operations[1]->name + ", " + _way.name +
                        " after " + std::to_string(_passing) + ": " + finding);
}

}  // namespace lumivard::platform::test_support::fault
