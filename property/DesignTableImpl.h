#pragma once

#include "design/Table.h"
#include "lumivard/platform/data/metadata/ITable.h"
#include "property/PropertyImpl.h"

namespace lumivard::platform::data {

/// The public face of a table.
class DesignTableImpl final : public PropertyImpl, public metadata::ITable {
public:
    class DesignFilter;

    explicit DesignTableImpl(std::unique_ptr<Design::Table> table) : PropertyImpl(std::move(table)) {}

    /// Opens a table's record and gives it its face, after it has inherited from a schema that is not null. For callers
    /// that hold the guard.
    static SharedPtr<metadata::ITable> open(IDataStore* store, unsigned int offset,
                                            metadata::ISchema* schema = nullptr);

    metadata::IProperty* container() const override;
    SharedPtr<metadata::IProperty> lookup(WideString name) override;
    SharedPtr<metadata::IPropertyFilter> properties() override;
    bool validates(metadata::ISchema* schema) override;
    SharedPtr<metadata::ITable> create(WideString name, metadata::ISchema* schema) override;
    SharedPtr<metadata::IPrimitive> create(WideString name, metadata::tValue type, units::tUnit units) override;
    SharedPtr<metadata::IPrimitive> create(WideString name, units::tUnitGroup group) override;
    bool destroy(WideString name) override;
    unsigned int items() override;
    SharedPtr<metadata::IProperty> at(unsigned int index) override;
    bool defaults(units::tUnit units, metadata::tValue type) override;
    unsigned int groups() override;
    units::tUnitGroup group(unsigned int index) override;
    metadata::tValue valuetype(units::tUnitGroup group) override;
    units::tUnit units(units::tUnitGroup group) override;
    WideString base() override;

private:
    Design::Table* table() const { return static_cast<Design::Table*>(item()); }

    /// Whether a new item may bear a name: there is one, and nothing is reached by it or called so.
    bool isFree(const WideString& name) const;

    /// What this table answers or, where that is 0 and the owner is a table, what the owner answers.
    template <class Answer>
    Answer inherited(Answer (Design::Table::*question)(units::tUnitGroup) const, units::tUnitGroup group) const;
    metadata::tValue _valuetype(units::tUnitGroup group) const;
    units::tUnit _units(units::tUnitGroup group) const;
};

}  // namespace lumivard::platform::data
