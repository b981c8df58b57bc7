#include "tests/fault/calls/Operation.h"

// What primitives and tables have in common.

namespace lumivard::platform::test_support::fault {

std::vector<tOperation> propertyOperations() {
    return {
        {"IProperty::tag() const", "PropertyTag", nullptr, [](World& w) { return text(w.number->tag()); }},
        {"IProperty::path() const", "PropertyPath", nullptr, [](World& w) { return text(w.table->path()); }},
        {"IProperty::store() const", "PropertyStore", nullptr,
         [](World& w) { return said(w.number->store() == w.main()); }},
        {"IProperty::type() const", "PropertyType", nullptr, [](World& w) { return said(w.table->type()); }},
        {"IProperty::rename(WideString name)", "RenameAPrimitive", L"main:top.group.number;main:top.group.renamed",
         [](World& w) { return said(w.number->rename(L"renamed")); }},
        {"IProperty::rename(WideString name)", "RenameInATable", L"main:top.group.table.b;main:top.group.table.renamed",
         [](World& w) { return said(w.group->property(L"table.b")->rename(L"renamed")); }, nullptr,
         [](World& w) {
             const auto item = w.group->property(L"table.b");
             return said(item && item->rename(L"renamed"));
         }},
        {"IProperty::parent()", "PropertyParent", nullptr,
         [](World& w) { return said(w.group->property(L"table.b")->parent()); }},
        {"IProperty::locales()", "PropertyLocales", nullptr, [](World& w) { return said(w.number->locales()); }},
        {"IProperty::locale(unsigned int index)", "PropertyLocale", nullptr,
         [](World& w) { return text(w.number->locale(1)); }},
        {"IProperty::describe(WideString locale, WideString description)", "DescribeAProperty",
         L"main:top.group.number",
         [](World& w) {
             w.number->describe(L"fr", L"Nombre");
             return std::wstring();
         }},
        {"IProperty::localize(WideString locale)", "PropertyLocalize", nullptr,
         [](World& w) { return text(w.number->localize(L"de")); }},
        {"IProperty::flags() const", "Flags", nullptr, [](World& w) { return said(unsigned{w.made->flags()}); }},
        {"IProperty::on(unsigned char bits)", "On", L"main:top.group.number",
         [](World& w) {
             w.number->on(1);
             return std::wstring();
         }},
        {"IProperty::off(unsigned char bits)", "Off", L"main:top.group.made=",
         [](World& w) {
             w.made->off(4);
             return std::wstring();
         }},

        {"IPropertyFilter::next()", "PropertiesNext", nullptr, [](World& w) { return said(w.properties->next()); }},
        {"IPropertyFilter::prev()", "PropertiesPrev", nullptr, [](World& w) { return said(w.properties->prev()); },
         [](World& w) { toTheEnd(*w.properties); }},
        {"IPropertyFilter::current()", "PropertiesCurrent", nullptr,
         [](World& w) { return text(w.properties->current()->tag()); }},
        {"IPropertyFilter::next()", "ItemsNext", nullptr, [](World& w) { return said(w.items->next()); }},
        {"IPropertyFilter::prev()", "ItemsPrev", nullptr, [](World& w) { return said(w.items->prev()); },
         [](World& w) { toTheEnd(*w.items); }},
        {"IPropertyFilter::current()", "ItemsCurrent", nullptr,
         [](World& w) { return text(w.items->current()->tag()); }},
    };
}

}  // namespace lumivard::platform::test_support::fault
