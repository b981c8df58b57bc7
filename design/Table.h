#pragma once

#include <map>
#include <string>
#include <vector>

#include "lumivard/platform/data/metadata/tValue.h"
#include "lumivard/platform/data/units/tUnit.h"
#include "lumivard/platform/data/units/tUnitGroup.h"
#include "metadata/Set.h"

namespace lumivard::platform::data::Record {
class Table;
}

namespace lumivard::platform::data::metadata {
class ISchema;
}

namespace lumivard::platform::data::Design {

using core::storage::datastore::IDataStore;

/// A set of properties over a table record, with the list of schemas that it inherits from and, for each group of
/// units, the unit and the value kind that a new property takes.
class Table final : public Metadata::Set {
public:
    /// Opens a record. With `lazy` the index of children stays empty.
    Table(IDataStore* store, unsigned int offset, bool lazy);

    /// Makes a new record.
    Table(IDataStore* store, const wchar_t* name);

    ~Table() override;

    bool unreferenced() override;
    /// The list of defaults goes too.
    void clear() override;
    unsigned int clone(IDataStore* target) override;

    /// Whether name and base list are equal; items and defaults are not compared.
    bool equivalent(const Table& other) const { return _tag.view() == other._tag.view() && _base == other._base; }

    /// The schemas, joined by ";"; null when there are none.
    const wchar_t* base() const { return _base.empty() ? nullptr : _base.c_str(); }

    /// Adds the names of a schema to the base list, and takes in hidden copies of the schema's items, but for those
    /// whose names are taken. False, with nothing changed, for null and for an object that no locator of ours made.
    /// Defined in schema/Inherit.cpp.
    bool inherit(metadata::ISchema* schema);

    /// Records the default unit and kind of the unit's group, in place of what the group had. False, with nothing
    /// changed, when either is 0.
    bool defaults(units::tUnit unit, metadata::tValue type);

    /// The groups that have defaults, ascending as signed numbers.
    std::vector<units::tUnitGroup> groups() const;

    /// A group's default kind or unit, read from the store; 0 when it has none.
    metadata::tValue valuetype(units::tUnitGroup group) const;
    units::tUnit units(units::tUnitGroup group) const;

private:
    /// Takes the list of defaults from the record, and the groups from the list.
    void loadDefaults(const Record::Table& record);
    unsigned int entry(units::tUnitGroup group, unsigned int which) const;

    std::map<units::tUnitGroup, unsigned int> _groups;
    unsigned int _defaults = BADOFF;
    std::wstring _base;
};

}  // namespace lumivard::platform::data::Design
