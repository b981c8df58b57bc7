#include "tests/model/TreeRun.h"

namespace lumivard::platform::model {

namespace {

constexpr std::size_t kRememberedSteps = 30;
constexpr std::size_t kManyItems = 700;

}  // namespace

TreeRun::TreeRun(Tree& real, std::uint64_t seed, const PlainTree::tRules& rules)
    : _plain(rules), _realClient(real), _plainClient(_plain), _any(seed, _plain, _plainClient) {
    for (const unsigned int store : {0U, 1U}) {
        for (const wchar_t* top : kTops) {
            real.toplevel(store, top);
            _plain.toplevel(store, top);
        }
    }
}

bool TreeRun::go(std::uint64_t count) {
    for (std::uint64_t i = 0; i < count && _difference.empty() && _plain.alive() < kManyItems; ++i) {
        const TreeOperation operation = _any.next();
        ++_done;
        _last.push_back(operation);
        if (_last.size() > kRememberedSteps) _last.pop_front();
        const std::wstring found = _realClient.perform(operation);
        const std::wstring expected = _plainClient.perform(operation);
        if (found != expected) return differs(found, expected);
    }
    return _difference.empty();
}

bool TreeRun::compare() {
    if (!_difference.empty()) return false;
    for (const unsigned int store : {0U, 1U}) {
        for (const wchar_t* top : kTops) {
            const std::wstring found = _realClient.everything(store, top);
            const std::wstring expected = _plainClient.everything(store, top);
            if (found != expected) return differs(found, expected);
        }
    }
    return true;
}

bool TreeRun::differs(const std::wstring& found, const std::wstring& expected) {
    _difference = "after " + std::to_string(_done) + " operations, of which these were the last:\n";
    for (const TreeOperation& operation : _last) _difference += described(operation) + "\n";
    _difference += firstDifference(found, expected);
    return false;
}

}  // namespace lumivard::platform::model
