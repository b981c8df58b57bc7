#pragma once

#include <optional>

#include "design/Table.h"
#include "lumivard/platform/data/metadata/ITable.h"
#include "property/PropertyImpl.h"

namespace lumivard::platform::data {

/// The public face of a table.
class DesignTableImpl : public PropertyImpl, public metadata::ITable {
public:
    class DesignFilter;

    /// Opens a table's record, or makes one: takes what `Design::Table` is made of. For callers that hold the guard.
    template <class... Arguments>
    explicit DesignTableImpl(IDataStore* store, Arguments... arguments) : _table(std::in_place, store, arguments...) {}
    ~DesignTableImpl() override;

    /// Opens a table's record and gives it its face.
    static SharedPtr<metadata::ITable> open(IDataStore* store, unsigned int offset);

    /// Makes a table, a child of a set in which its name is free, and gives it its face. It inherits from a schema that
    /// is not null.
    static SharedPtr<metadata::ITable> make(Metadata::Set& owner, const wchar_t* name, metadata::ISchema* schema);

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

    Design::Table* item() const override { return &*_table; }

private:
    Design::Table* table() const { return item(); }

    /// Whether a new item may bear a name: there is one, and nothing is reached by it or called so.
    bool isFree(const WideString& name) const;

    /// What this table answers or, where that is 0 and the owner is a table, what the owner answers.
    template <class Answer>
    Answer inherited(Answer (Design::Table::*question)(units::tUnitGroup) const, units::tUnitGroup group) const;
    metadata::tValue _valuetype(units::tUnitGroup group) const;
    units::tUnit _units(units::tUnitGroup group) const;

    mutable std::optional<Design::Table> _table;  ///< until the end of this object
};

}  // namespace lumivard::platform::data
