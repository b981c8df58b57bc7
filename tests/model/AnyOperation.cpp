#include "tests/model/AnyOperation.h"

#include <iterator>

namespace lumivard::platform::model {

namespace {

using Op = TreeOperation;

constexpr std::size_t kFewItems = 250;

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

}  // namespace

TreeOperation AnyOperation::next() {
    TreeOperation operation;
    operation.store = _stores > 1 && below(4) == 0 ? 1 : 0;
    operation.path = _plain.anyPath(operation.store, _random);
    if (below(2) == 0) operation.slot = below(Op::kSlots);
    operation.source = below(Op::kSlots);
    while (!_client.keeps(operation.source) && below(8) != 0) operation.source = below(Op::kSlots);
    if (below(2) == 0) operation.into = below(Op::kSlots);
    operation.name = anyName();
    operation.text = below(3) == 0 ? _plain.anyPath(operation.store, _random) : anyRoute();
    operation.number = below(3) == 0 ? below(64) : below(6);
    operation.count = below(8);
    if (below(4) == 0) operation.schema = static_cast<int>(below(std::size(kSchemaNames)));
    if (operation.slot != Op::kNone && !_client.keeps(operation.slot)) {
        operation.into = operation.slot;
        operation.slot = Op::kNone;
        operation.code = Op::kKeep;
        return operation;
    }
    operation.code = anyCode(_client.target(operation), operation.slot != Op::kNone);
    if (operation.code == Op::kClonePath && operation.slot != Op::kNone) operation.path = anyRoute();
    const bool toAnother = operation.code == Op::kCloneTo || operation.code == Op::kFollow;
    if (toAnother && _stores == 1) operation.number &= ~1U;
    if (operation.code == Op::kDescribe && below(8) != 0) operation.name = below(2) ? L"de" : L"en-us";
    return operation;
}

TreeOperation::tCode AnyOperation::anyCode(int kind, bool kept) {
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

std::wstring AnyOperation::anyName() {
    const unsigned int rare = below(100);
    if (rare == 0) return L"";
    if (rare == 1) return L"a.b";
    if (rare == 2) return L"a name that is longer than the others, \x00e4\x4e2d\x1f600";
    return std::wstring(1, static_cast<wchar_t>(L'a' + below(6)));
}

std::wstring AnyOperation::anyRoute() {
    std::wstring route = below(5) == 0 ? kTops[below(2)] : anyName();
    while (below(2) == 0) route += L"." + anyName();
    return route;
}

}  // namespace lumivard::platform::model
