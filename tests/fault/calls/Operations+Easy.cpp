#include "lumivard/platform/data/easy.h"
#include "tests/fault/calls/Operation.h"

// What is written over the other interfaces, and takes several of their steps at once.

namespace lumivard::platform::test_support::fault {

namespace {

namespace easy = data::easy;

template <class Items>
std::wstring tags(Items items) {
    std::wstring all;
    for (const auto& item : items) all += text(item->tag()) + L';';
    return all;
}

}  // namespace

std::vector<tOperation> easyOperations() {
    return {
        {"easy::get(Place where, std::wstring_view path)", "EasyGet", nullptr,
         [](World& w) {
             const auto numbers = easy::get<std::vector<double>>(*w.group, L"number");
             const auto texts = easy::get<std::vector<std::wstring>>(w.main(), L"top.group.text");
             return std::to_wstring(numbers.value().size()) + texts.value().at(0);
         }},
        {"easy::get(Place where, std::wstring_view path, std::span<T, N> into, unsigned int start = 0)", "EasyGetSpan",
         nullptr,
         [](World& w) {
             double two[2] = {};
             const bool done = easy::get(*w.group, L"number", std::span(two), 1);
             return said(done) + std::to_wstring(two[1]);
         }},
        {"easy::set(Place where, std::wstring_view path, T value, tAs as = {})", "EasySet", L"main:top.group.behind",
         [](World& w) { return said(easy::set(*w.group, L"behind", 12)); }},
        {"easy::set(Place where, std::wstring_view path, T value, tAs as = {})", "EasySetMakes", L"main:goal.new",
         [](World& w) { return said(easy::set(*w.goal, L"new", 12)); }},
        {"easy::set(Place where, std::wstring_view path, T value, tAs as = {})", "EasySetMakesInATable",
         L"main:top.group.table",
         [](World& w) { return said(easy::set(w.main(), L"top.group.table.new", 1.5, units::kMeter)); }},
        {"easy::set(Place where, std::wstring_view path, T value, tAs as = {})", "EasySetRefuses", nullptr,
         [](World& w) { return said(easy::set(*w.group, L"number", 12)); }},
        {"easy::set(Place where, std::wstring_view path, const T& values, tAs as = {})", "EasySetShrinks",
         L"main:top.group.number",
         [](World& w) {
             return said(easy::set(*w.group, L"number", std::array{9.5, 8.5}));
         }},
        {"easy::set(Place where, std::wstring_view path, const T& values, tAs as = {})", "EasySetBools",
         L"main:goal.new",
         [](World& w) {
             return said(easy::set(*w.goal, L"new", std::vector{true, false}));
         }},
        {"easy::set(Place where, std::wstring_view path, std::wstring_view text, tAs as = {})", "EasySetText",
         L"main:top.group.text", [](World& w) { return said(easy::set(*w.group, L"text", L"three")); }},
        {"easy::set(Place where, std::wstring_view path, std::string_view text, tAs as = {})", "EasySetUTF8",
         L"main:top.group.text",
         [](World& w) { return said(easy::set(*w.group, L"text", "a text that is longer than it was")); }},
        {"easy::set(Place where, std::wstring_view path, const std::vector<T>& texts, tAs as = {})", "EasySetTexts",
         L"main:top.group.text",
         [](World& w) {
             return said(easy::set(*w.group, L"text", std::vector<std::string>{"a", "b"}));
         }},
        {"easy::make(Place where, std::wstring_view path, structure::IContainer::tType type = "
         "structure::IContainer::kGroup)",
         "EasyMake", L"main:goal.new", [](World& w) { return said(easy::make(*w.goal, L"new.one")); }},
        {"easy::make(Place where, std::wstring_view path, structure::IContainer::tType type = "
         "structure::IContainer::kGroup)",
         "EasyMakeAtTheTop", L"empty:", [](World& w) { return said(easy::make(w.stores[kEmpty], L"new.one")); },
         nullptr,
         // As with the front end: a set-up that failed behind its root leaves the version 0.
         [](World& w) {
             w.stores[kEmpty]->version(1);
             return said(easy::make(w.stores[kEmpty], L"new.one"));
         }},
        {"easy::makeTable(Place where, std::wstring_view path)", "EasyMakeTable", L"main:goal.new",
         [](World& w) { return said(easy::makeTable(*w.goal, L"new.table")); }},
        {"easy::containers(structure::IContainer& container)", "EasyContainers", nullptr,
         [](World& w) { return tags(easy::containers(*w.group)); }},
        {"easy::properties(structure::IContainer& container)", "EasyProperties", nullptr,
         [](World& w) { return tags(easy::properties(*w.group)); }},
        {"easy::properties(metadata::ITable& table)", "EasyPropertiesOfATable", nullptr,
         [](World& w) { return tags(easy::properties(asTable(w.table))); }},
        {"easy::visit(Place where, std::wstring_view path, Callbacks... callbacks)", "EasyVisit", nullptr,
         [](World& w) {
             std::wstring all;
             easy::visit(*w.group, L"", [&](const auto&, const easy::tAt& at) { all.append(at.path) += L';'; });
             return all;
         }},
    };
}

}  // namespace lumivard::platform::test_support::fault
