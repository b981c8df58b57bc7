#include "tests/postgres/Participant.h"

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <optional>
#include <utility>

namespace lumivard::platform::model {

namespace {

using Op = TreeOperation;
using tLock = std::unique_ptr<IDataStore::ILock>;

constexpr std::size_t kMostItems = 500;
constexpr std::size_t kRememberedSteps = 40;

}  // namespace

Participant::Participant(tOpen open, tPlan plan)
    : _open(std::move(open)),
      _plan(std::move(plan)),
      _any(_plan.seed, _model.tree(), _model.client(_plan.process), 1),
      _deed{_plan.process},
      _unexposed(1 + _any.below(40)) {}

void Participant::run() {
    try {
        open();
        begin();
        while (!isOver()) round();
        end();
        close();
    } catch (const std::exception& error) {
        differs(std::string("it gave up: ") + error.what());
    }
}

void Participant::open() {
    _store = _open();
    _tree = RealTree::kept(*_store);
    _client = std::make_unique<TreeClient>(*_tree);
    if (_log) {
        _log->goOn(*_store);
    } else {
        _log = std::make_unique<OperationLog>(*_store);
    }
}

void Participant::close() {
    _client.reset();
    _tree.reset();
    _store.reset();
}

void Participant::begin() {
    const tLock guard(_store->lock());
    hear();
    _model.begin(_plan.process);
    _deed.isNew = true;
    note();
}

// One guard, or several that are begun by flushes under the first one.
void Participant::round() {
    const bool closes = _any.below(40) == 0;
    {
        const tLock guard(_store->lock());
        hear();
        if (isOver()) return;
        if (_any.below(12) == 0) return compare();
        // Who is to be killed goes on meanwhile: some have much left to do under the guard, and others little.
        const bool exposed = _plan.expose && --_unexposed == 0;
        if (exposed) _plan.expose();
        operate(exposed && _any.below(2) == 0 ? 100 : 1 + _any.below(6));
        if (_any.below(6) == 0) {
            note();
            _store->flush();
            hear();
            operate(1 + _any.below(4));
        }
        if (closes) perform({.code = Op::kDropAll});
        note();
    }
    if (!closes) return;
    close();
    open();
}

void Participant::end() {
    const tLock guard(_store->lock());
    hear();
    perform({.code = Op::kDropAll});
    note();
    compare();
}

void Participant::hear() {
    for (const tDeed& deed : _log->news()) {
        _model.repeat(deed);
        for (const TreeOperation& operation : deed.operations) {
            _last.push_back("process " + std::to_string(deed.process) + ": " + described(operation));
        }
    }
}

void Participant::operate(unsigned int count) {
    for (; count > 0; --count) perform(any());
}

void Participant::perform(const TreeOperation& operation) {
    _last.push_back("process " + std::to_string(_plan.process) + ": " + described(operation));
    _deed.operations.push_back(operation);
    const bool gone = _model.client(_plan.process).isGone(operation);
    std::wstring found;
    try {
        found = _client->perform(operation);
    } catch (const std::exception& error) {
        if (!gone) differs(std::string("it threw ") + error.what());
    }
    const std::optional<std::wstring> expected = _model.perform(_plan.process, operation);
    if (expected && found != *expected) differs(firstDifference(found, *expected));
}

TreeOperation Participant::any() {
    TreeClient& client = _model.client(_plan.process);
    TreeOperation operation = _any.next();
    if (_model.tree().alive() > kMostItems) makeSmaller(operation);
    if (client.isGone(operation)) {
        operation.into = Op::kNone;
        // What such an object would give to a copy is its own affair.
        if (operation.code == Op::kCopy || operation.code == Op::kClone) operation.code = Op::kLook;
        if (operation.slot != Op::kNone && _any.below(3) == 0) operation.code = Op::kDrop;
    }
    return operation;
}

void Participant::makeSmaller(TreeOperation& operation) {
    if (_any.below(30) == 0) {
        operation.code = Op::kDropAll;
    } else if (operation.slot == Op::kNone && operation.path.size() > 1) {
        const std::size_t dot = operation.path.rfind(L'.');
        if (dot == std::wstring::npos) return;
        operation.code = Op::kDestroy;
        operation.name = operation.path.substr(dot + 1);
        operation.path.resize(dot);
    }
}

void Participant::note() {
    _log->note(_deed);
    _deed.isNew = false;
    _deed.operations.clear();
}

void Participant::compare() {
    const std::string difference = differenceBetween(*_client, _model.client(_plan.process));
    if (!difference.empty()) differs(difference);
}

void Participant::differs(const std::string& how) {
    std::string told = "process " + std::to_string(_plan.process) + ", at operation " +
                       std::to_string(_log ? _log->operations() : 0) + " of the log, of which these were the last:\n";
    const std::size_t count = std::min(_last.size(), kRememberedSteps);
    for (auto step = _last.end() - static_cast<std::ptrdiff_t>(count); step != _last.end(); ++step) {
        told += *step + "\n";
    }
    _plan.fail(told + how);
    std::abort();
}

}  // namespace lumivard::platform::model
