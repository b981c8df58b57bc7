#include "tests/model/TreeRun.h"

#include <iterator>

#include "lumivard/platform/core/string/WideString.h"

namespace lumivard::platform::model {

namespace {

using Op = TreeOperation;

constexpr std::size_t kRememberedSteps = 30;
constexpr std::size_t kFewItems = 250;
constexpr std::size_t kManyItems = 700;
constexpr const wchar_t* kTops[] = {L"A", L"B"};

constexpr Op::tCode kOfAll[] = {Op::kLook, Op::kParent, Op::kRename, Op::kRename, Op::kDescribe, Op::kDescribe};
constexpr Op::tCode kOfContainers[] = {
    Op::kDestroy, Op::kDestroy,       Op::kDestroy,       Op::kFind,    Op::kMakePrimitive, Op::kMakeTable,
    Op::kWalk,    Op::kMakeContainer, Op::kMakeContainer, Op::kHas,     Op::kAgain,         Op::kConforms,
    Op::kCopy,    Op::kClone,         Op::kClonePath,     Op::kCloneTo, Op::kTarget,        Op::kFollow};
constexpr Op::tCode kOfTables[] = {Op::kOn,   Op::kOff,           Op::kDestroy,   Op::kDestroy,
                                   Op::kFind, Op::kMakePrimitive, Op::kMakeTable, Op::kWalk,
                                   Op::kAt,   Op::kMakeByGroup,   Op::kDefaults};
constexpr Op::tCode kOfPrimitives[] = {Op::kOn,  Op::kOff, Op::kSet,    Op::kSet,         Op::kReset,
                                       Op::kGet, Op::kUri, Op::kSchema, Op::kValueLocale, Op::kWrite};

std::string utf8(const std::wstring& text) {
    return data::WideString(text.c_str()).string();
}

/// The first lines that two texts do not share.
std::wstring firstDifference(const std::wstring& found, const std::wstring& expected) {
    const auto at = std::mismatch(found.begin(), found.end(), expected.begin(), expected.end()).first - found.begin();
    const auto newline = at == 0 ? std::wstring::npos : found.rfind(L'\n', static_cast<std::size_t>(at) - 1);
    const std::size_t start = newline == std::wstring::npos ? 0 : newline + 1;
    return L"it gave\n" + found.substr(start, 400) + L"\nand not\n" + expected.substr(start, 400);
}

}  // namespace

TreeRun::TreeRun(Tree& real, std::uint64_t seed, const PlainTree::tRules& rules)
    : _random(seed), _plain(rules), _realClient(real), _plainClient(_plain) {
    for (const unsigned int store : {0U, 1U}) {
        for (const wchar_t* top : kTops) {
            real.toplevel(store, top);
            _plain.toplevel(store, top);
        }
    }
}

bool TreeRun::go(std::uint64_t count) {
    for (std::uint64_t i = 0; i < count && _difference.empty() && _plain.alive() < kManyItems; ++i) {
        const TreeOperation operation = any();
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

TreeOperation TreeRun::any() {
    TreeOperation operation;
    operation.store = below(4) == 0 ? 1 : 0;
    operation.path = _plain.anyPath(operation.store, _random);
    if (below(2) == 0) operation.slot = below(Op::kSlots);
    operation.source = below(Op::kSlots);
    while (!_plainClient.keeps(operation.source) && below(8) != 0) operation.source = below(Op::kSlots);
    if (below(2) == 0) operation.into = below(Op::kSlots);
    operation.name = anyName();
    operation.text = below(3) == 0 ? _plain.anyPath(operation.store, _random) : anyRoute();
    operation.number = below(3) == 0 ? below(64) : below(6);
    operation.count = below(8);
    if (below(4) == 0) operation.schema = static_cast<int>(below(std::size(kSchemaNames)));
    if (operation.slot != Op::kNone && !_plainClient.keeps(operation.slot)) {
        operation.into = operation.slot;
        operation.slot = Op::kNone;
        operation.code = Op::kKeep;
        return operation;
    }
    operation.code = anyCode(_plainClient.target(operation), operation.slot != Op::kNone);
    if (operation.code == Op::kClonePath && operation.slot != Op::kNone) operation.path = anyRoute();
    if (operation.code == Op::kDescribe && below(8) != 0) operation.name = below(2) ? L"de" : L"en-us";
    return operation;
}

TreeOperation::tCode TreeRun::anyCode(int kind, bool kept) {
    if (below(400) == 0) return Op::kDropAll;
    if (kind < 0) return Op::kKeep;
    if (kept && below(20) == 0) return Op::kDrop;
    if (below(4) == 0) return kOfAll[below(std::size(kOfAll))];
    if (kind == TreeObject::kPrimitive) return kOfPrimitives[below(std::size(kOfPrimitives))];
    if (kind == TreeObject::kTable) return kOfTables[below(std::size(kOfTables))];
    const Op::tCode code = kOfContainers[below(std::size(kOfContainers))];
    const bool copies = code >= Op::kCopy && code <= Op::kCloneTo;
    return copies && _plain.alive() > kFewItems ? Op::kDestroy : code;
}

std::wstring TreeRun::anyName() {
    const unsigned int rare = below(100);
    if (rare == 0) return L"";
    if (rare == 1) return L"a.b";
    if (rare == 2) return L"a name that is longer than the others, \x00e4\x4e2d\x1f600";
    return std::wstring(1, static_cast<wchar_t>(L'a' + below(6)));
}

std::wstring TreeRun::anyRoute() {
    std::wstring route = below(5) == 0 ? kTops[below(2)] : anyName();
    while (below(2) == 0) route += L"." + anyName();
    return route;
}

bool TreeRun::differs(const std::wstring& found, const std::wstring& expected) {
    _difference = "after " + std::to_string(_done) + " operations, of which these were the last:\n";
    for (const TreeOperation& operation : _last) _difference += utf8(described(operation)) + "\n";
    _difference += utf8(firstDifference(found, expected));
    return false;
}

}  // namespace lumivard::platform::model
