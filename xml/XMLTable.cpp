#include "xml/XMLTable.h"

#include <cstring>

#include "design/Primitive.h"
#include "design/Table.h"
#include "lumivard/platform/core/string/StringAlgorithm.h"
#include "record/Base.h"
#include "xml/Inheriting.h"
#include "xml/Nesting.h"
#include "xml/ValueElements.h"

namespace lumivard::platform::data {

using core::string::StringAlgorithm;
using core::xml::XMLSerializer;
using Metadata::Item;

namespace {

void writeDefault(const Design::Table& table, units::tUnitGroup group, XMLSerializer& serializer) {
    const char* unit = Element::units().unit(table.units(group));
    const tTypeName* type = typeOf(table.valuetype(group));
    serializer.startElement("default");
    if (unit) serializer.addAttribute("unit", std::string_view(unit));
    if (type) serializer.addAttribute("type", std::string_view(type->narrow));
    serializer.endElement(false);
}

}  // namespace

unsigned int XMLTable::type() const {
    return Record::kTable;
}

std::unique_ptr<Item> XMLTable::open(const char* const* attributes) {
    const char* name = find("name", attributes);
    if (!name) return refuse(kMissingName);
    auto table = std::make_unique<Design::Table>(_store, StringAlgorithm::UTF8Decode(name).c_str());
    if (isOptional(attributes)) table->on(Record::kOptional);
    inheritClass(*table, attributes, _locator);
    return table;
}

std::unique_ptr<Item> XMLTable::nest(Item& parent, std::unique_ptr<Item> child) {
    auto& set = static_cast<Metadata::Set&>(parent);
    switch (Record::peek(_store, child->offset())) {
        case Record::kPrimitive:
            return addOrMerge<Design::Primitive>(set, std::move(child));
        case Record::kTable:
            return addOrMerge<Design::Table>(set, std::move(child));
        case Record::kRoot:
        case Record::kContainer:
            return nullptr;
        default:
            return child;
    }
}

bool XMLTable::set(Item& item, const char* text) {
    if (_mode == tMode::kName) {
        closeName(item, text);
        return true;
    }
    if (_mode != tMode::kDefault) return false;
    const tTypeName* type = typeNamed(_typeName.c_str());
    if (!type) return false;
    static_cast<Design::Table&>(item).defaults(units().unit(_unit.c_str()), type->kind);
    _mode = tMode::kNone;
    return false;
}

bool XMLTable::sub(const char* name, const char* const* attributes) {
    if (_mode != tMode::kNone) return false;
    if (std::strcmp(name, "name") == 0) {
        openName(attributes);
        return true;
    }
    if (std::strcmp(name, "default") != 0) return false;
    const char* unit = find("unit", attributes);
    const char* type = find("type", attributes);
    if (!unit || !type) return false;
    _unit = unit;
    _typeName = type;
    _mode = tMode::kDefault;
    return true;
}

bool XMLTable::serialize(Item& item, XMLSerializer& serializer) {
    const auto& table = static_cast<const Design::Table&>(item);
    serializer.startElement(name());
    serializer.addAttribute("name", table.tag());
    if (table.base()) serializer.addAttribute("class", table.base());
    for (const units::tUnitGroup group : table.groups()) writeDefault(table, group, serializer);
    writeNames(item, serializer);
    return true;
}

}  // namespace lumivard::platform::data
