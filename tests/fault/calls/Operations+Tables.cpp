#include "tests/fault/calls/Operation.h"

namespace lumivard::platform::test_support::fault {

namespace {

ITable& table(World& w) {
    return asTable(w.table);
}

std::wstring createTableOfSchema(World& w) {
    return said(table(w).create(L"new", w.schema.get()));
}

std::wstring createWithUnits(World& w) {
    return said(table(w).create(L"new", metadata::kDouble, units::kMeter));
}

std::wstring createByGroup(World& w) {
    return said(table(w).create(L"new", units::group(units::kMeter)));
}

/// What was made by half has to go before it can be made again.
template <tOperation::tRun kRun>
std::wstring madeAnew(World& w) {
    table(w).destroy(L"new");
    return kRun(w);
}

constexpr const wchar_t* kNew = L"main:top.group.table.new";

}  // namespace

std::vector<tOperation> tableOperations() {
    return {
        {"ITable::container() const", "TableContainer", nullptr,
         [](World& w) { return said(table(w).container() == w.table.get()); }},
        {"ITable::lookup(WideString name)", "Lookup", nullptr,
         [](World& w) { return said(table(w).lookup(L"sub.c")); }},
        {"ITable::properties()", "TableProperties", nullptr, [](World& w) { return said(table(w).properties()); }},
        {"ITable::validates(ISchema* schema)", "TableValidates", nullptr,
         [](World& w) { return said(table(w).validates(w.schema.get())); }},
        {"ITable::create(WideString name, ISchema* schema)", "TableCreatesATable", kNew,
         [](World& w) { return said(table(w).create(L"new", kNoSchema)); }},
        {"ITable::create(WideString name, ISchema* schema)", "TableCreatesATableWithASchema", kNew,
         &createTableOfSchema, nullptr, &madeAnew<&createTableOfSchema>},
        {"ITable::create(WideString name, tValue type, units::tUnit units)", "TableCreatesAPrimitive", kNew,
         &createWithUnits},
        {"ITable::create(WideString name, units::tUnitGroup group)", "TableCreatesByGroup", kNew, &createByGroup},
        {"ITable::destroy(WideString name)", "TableDestroys", L"main:top.group.table.b",
         [](World& w) { return said(table(w).destroy(L"b")); }, [](World& w) { w.items.reset(); }},
        {"ITable::destroy(WideString name)", "TableDestroysATable", L"main:top.group.table.sub",
         [](World& w) { return said(table(w).destroy(L"sub")); }, [](World& w) { w.items.reset(); }},
        {"ITable::items()", "Items", nullptr, [](World& w) { return said(table(w).items()); }},
        {"ITable::at(unsigned int index)", "At", nullptr, [](World& w) { return text(table(w).at(1)->tag()); }},
        {"ITable::defaults(units::tUnit units, tValue type)", "Defaults", L"main:top.group.table=",
         [](World& w) { return said(table(w).defaults(units::kDegreeKelvin, metadata::kScalar)); }},
        {"ITable::defaults(units::tUnit units, tValue type)", "DefaultsOfAKnownGroup", L"main:top.group.table=",
         [](World& w) { return said(table(w).defaults(units::kCentiMeter, metadata::kInt32)); }},
        {"ITable::defaults(units::tUnit units, tValue type)", "TheFirstDefaults", L"main:top.group.table.sub=",
         [](World& w) {
             return said(asTable(table(w).lookup(L"sub")).defaults(units::kDegreeKelvin, metadata::kScalar));
         }},
        {"ITable::groups()", "Groups", nullptr, [](World& w) { return said(table(w).groups()); }},
        {"ITable::group(unsigned int index)", "Group", nullptr,
         [](World& w) { return said(static_cast<unsigned int>(table(w).group(1))); }},
        {"ITable::valuetype(units::tUnitGroup group)", "TableValuetype", nullptr,
         [](World& w) {
             const auto nested = table(w).lookup(L"sub");
             return said(static_cast<unsigned int>(asTable(nested).valuetype(units::group(units::kMeter))));
         }},
        {"ITable::units(units::tUnitGroup group)", "TableUnits", nullptr,
         [](World& w) { return said(static_cast<unsigned int>(table(w).units(units::group(units::kMeter)))); }},
        {"ITable::base()", "TableBase", nullptr, [](World& w) { return text(asTable(w.made).base()); }},
        {"ITable::to(IProperty* property)", "TableTo", nullptr,
         [](World& w) { return said(ITable::to(w.table.get()) != nullptr); }},
    };
}

}  // namespace lumivard::platform::test_support::fault
