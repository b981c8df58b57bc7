#include "tests/fault/calls/Operation.h"

namespace lumivard::platform::test_support::fault {

namespace {

IPrimitive& number(World& w) {
    return asPrimitive(w.number);
}

}  // namespace

std::vector<tOperation> primitiveOperations() {
    return {
        {"IPrimitive::container() const", "PrimitiveContainer", nullptr,
         [](World& w) { return said(number(w).container() == w.number.get()); }},
        {"IPrimitive::dimension()", "Dimension", nullptr, [](World& w) { return said(number(w).dimension()); }},
        {"IPrimitive::stride() const", "Stride", nullptr, [](World& w) { return said(number(w).stride()); }},
        {"IPrimitive::bytes()", "Bytes", nullptr, [](World& w) { return said(asPrimitive(w.away).bytes()); }},
        {"IPrimitive::valuetype()", "Valuetype", nullptr,
         [](World& w) { return said(static_cast<unsigned int>(number(w).valuetype())); }},
        {"IPrimitive::units()", "PrimitiveUnits", nullptr,
         [](World& w) { return said(static_cast<unsigned int>(number(w).units())); }},
        {"IPrimitive::schema() const", "StructSchema", nullptr,
         [](World& w) { return text(asPrimitive(w.pose).schema()); }},
        {"IPrimitive::uri() const", "Uri", nullptr, [](World& w) { return text(asPrimitive(w.away).uri()); }},
        {"IPrimitive::schema(WideString uri)", "SetStructSchema", L"main:top.group.pose",
         [](World& w) { return said(asPrimitive(w.pose).schema(kDoor)); }},
        {"IPrimitive::uri(WideString uri)", "SetUri", L"main:top.group.number",
         [](World& w) { return said(number(w).uri(L"file:elsewhere")); }},
        {"IPrimitive::uri(WideString uri)", "ClearUri", L"main:top.group.away",
         [](World& w) { return said(asPrimitive(w.away).uri(WideString())); }},
        {"IPrimitive::valuelocale()", "Valuelocale", nullptr, [](World& w) { return text(number(w).valuelocale()); }},
        {"IPrimitive::valuelocale(WideString locale)", "SetValuelocale", L"main:top.group.text",
         [](World& w) {
             asPrimitive(w.words).valuelocale(L"en");
             return std::wstring();
         }},
        {"IPrimitive::set(const void* data, unsigned int start, unsigned int count)", "Set", L"main:top.group.number",
         [](World& w) {
             const double more[] = {4.5, 5.5};
             return said(number(w).set(more, 2, 2));
         }},
        {"IPrimitive::set(const void* data, unsigned int start, unsigned int count)", "SetShowsWhatWasHidden",
         L"main:top.group.made",
         [](World& w) {
             const double one[] = {6.5};
             return said(asPrimitive(w.group->property(L"made.x")).set(one, 0, 1));
         }},
        {"IPrimitive::reset(unsigned int count)", "Reset", L"main:top.group.number",
         [](World& w) { return said(number(w).reset(5)); }},
        {"IPrimitive::get(void* data, unsigned int start, unsigned int count)", "Get", nullptr,
         [](World& w) {
             double all[3] = {};
             const bool got = number(w).get(all, 0, 3);
             return said(got) + std::to_wstring(all[2]);
         }},
        {"IPrimitive::to(IProperty* property)", "PrimitiveTo", nullptr,
         [](World& w) { return said(IPrimitive::to(w.number.get()) != nullptr); }},

        {"IStringArray::strings() const", "Strings", nullptr, [](World& w) { return said(w.strings->strings()); }},
        {"IStringArray::get(unsigned int index) const", "StringsGet", nullptr,
         [](World& w) { return text(w.strings->get(1)); }},
        {"IStringArray::add(WideString text)", "StringsAdd", L"",
         [](World& w) {
             w.strings->add(L"three");
             return said(w.strings->strings());
         }},
        {"IStringArray::write(IPrimitive* primitive)", "StringsWrite", L"main:top.group.text",
         [](World& w) { return said(w.strings->write(&asPrimitive(w.words))); },
         [](World& w) { w.strings->add(L"three"); }},
        {"IStringArray::to(const wchar_t* packed, unsigned int length)", "StringsTo", nullptr,
         [](World&) {
             const std::unique_ptr<IStringArray> made(IStringArray::to(L"a\0b", 4));
             return said(made->strings());
         }},
    };
}

}  // namespace lumivard::platform::test_support::fault
