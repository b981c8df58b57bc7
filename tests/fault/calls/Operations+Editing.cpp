#include "tests/fault/calls/Operation.h"

// What changes containers: making, destroying, renaming, texts, targets.

namespace lumivard::platform::test_support::fault {

namespace {

std::wstring createWithSchema(World& w) {
    return said(w.goal->create(IContainer::kGroup, L"new", w.schema.get()));
}

std::wstring createTableWithSchema(World& w) {
    return said(w.goal->create(L"new", w.schema.get()));
}

/// What was made by half has to go before it can be made again.
template <tOperation::tRun kRun>
std::wstring anew(World& w) {
    w.goal->destroy(L"new");
    return kRun(w);
}

}  // namespace

std::vector<tOperation> editingOperations() {
    return {
        {"IContainer::create(tType type, WideString name, metadata::ISchema* schema)", "CreateAContainer",
         L"main:goal.new", [](World& w) { return said(w.goal->create(IContainer::kLink, L"new", kNoSchema)); }},
        {"IContainer::create(tType type, WideString name, metadata::ISchema* schema)", "CreateTheFirstChild",
         L"main:goal.inner.new",
         [](World& w) { return said(w.goal->container(L"inner")->create(IContainer::kNode, L"new", kNoSchema)); }},
        {"IContainer::create(tType type, WideString name, metadata::ISchema* schema)", "CreateWithASchema",
         L"main:goal.new", &createWithSchema, nullptr, &anew<&createWithSchema>},
        {"IContainer::create(WideString name, metadata::tValue value)", "CreateAPrimitive", L"main:goal.new",
         [](World& w) { return said(w.goal->create(L"new", metadata::kDouble)); }},
        {"IContainer::create(WideString name, metadata::ISchema* schema)", "CreateATable", L"main:goal.new",
         [](World& w) { return said(w.goal->create(L"new", kNoSchema)); }},
        {"IContainer::create(WideString name, metadata::ISchema* schema)", "CreateATableWithASchema", L"main:goal.new",
         &createTableWithSchema, nullptr, &anew<&createTableWithSchema>},
        {"IContainer::destroy(WideString name)", "Destroy", L"main:top.group.second",
         [](World& w) { return said(w.group->destroy(L"second")); }},
        {"IContainer::destroy(WideString name)", "DestroyRefuses", nullptr,
         [](World& w) { return said(w.top->destroy(L"group")); }},
        {"IContainer::rename(WideString name)", "RenameAContainer", L"main:top.group.first;main:top.group.renamed",
         [](World& w) { return said(w.first->rename(L"renamed")); }},
        {"IContainer::describe(WideString locale, WideString text)", "DescribeAContainer", L"main:top.group.first=",
         [](World& w) {
             w.first->describe(L"en", L"First");
             return std::wstring();
         }},
        {"IContainer::describe(WideString locale, WideString text)", "DescribeRemovesAText", L"main:top.group=",
         [](World& w) {
             w.group->describe(L"de", WideString());
             return std::wstring();
         }},
        {"ILink::target(WideString text)", "SetTarget", L"main:top.link",
         [](World& w) {
             ILink::to(w.link.get())->target(L"goal.inner");
             return std::wstring();
         }},
    };
}

}  // namespace lumivard::platform::test_support::fault
