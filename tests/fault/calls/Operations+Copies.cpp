#include "tests/fault/calls/Operation.h"

namespace lumivard::platform::test_support::fault {

namespace {

constexpr const wchar_t* kCopied =
    L"main:goal.first;main:goal.second;main:goal.third;main:goal.number;main:goal.text;main:goal.pose;main:goal.away;"
    L"main:goal.table;main:goal.made;main:goal.behind";

}  // namespace

std::vector<tOperation> copyOperations() {
    return {
        {"IContainer::copy(SharedPtr<IContainer> source)", "Copy", kCopied,
         [](World& w) { return said(w.goal->copy(w.group)); }},
        {"IContainer::copy(SharedPtr<IContainer> source)", "CopyFromAnotherStore", L"main:goal.own",
         [](World& w) { return said(w.goal->copy(w.there)); }},
        {"IContainer::clone(SharedPtr<IContainer> source)", "CloneAContainer", L"main:goal.group",
         [](World& w) { return said(w.goal->clone(w.group)); }},
        {"IContainer::clone(SharedPtr<IContainer> source)", "CloneInPlace", L"main:top.group.group",
         [](World& w) { return said(w.group->clone(w.group)); }},
        {"IContainer::clone(SharedPtr<metadata::IProperty> source)", "CloneATable", L"main:goal.table",
         [](World& w) { return said(w.goal->clone(w.table)); }},
        {"IContainer::clone(SharedPtr<metadata::IProperty> source)", "CloneAPrimitive", L"main:goal.number",
         [](World& w) { return said(w.goal->clone(w.number)); }},
        {"IContainer::clone(WideString source, WideString destination, bool fromRoot)", "CloneToAPath",
         L"main:goal.inner.copy",
         [](World& w) { return said(w.goal->clone(L"top.group.table", L"inner.copy", true)); }},
        {"IContainer::clone(WideString source, WideString destination, bool fromRoot)", "CloneToAName",
         L"main:top.copy", [](World& w) { return said(w.top->clone(L"group.first", L"copy", false)); }},
        {"IContainer::clone(IDataStore* store, WideString destination)", "CloneToAStore", L"other:there.copy",
         [](World& w) { return said(w.group->clone(w.stores[kOther], L"there.copy")); }},
    };
}

}  // namespace lumivard::platform::test_support::fault
