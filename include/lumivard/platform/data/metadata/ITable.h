#pragma once

#include "lumivard/platform/core/Export.h"
#include "lumivard/platform/data/Names.h"
#include "lumivard/platform/data/metadata/tValue.h"
#include "lumivard/platform/data/units/tUnit.h"
#include "lumivard/platform/data/units/tUnitGroup.h"

namespace lumivard::platform::data::metadata {

class IPrimitive;
class IProperty;
class IPropertyFilter;
class ISchema;

/// A named set of properties: primitives and further tables, each under a name of its own, in the order of their
/// adding. It also keeps a default kind and unit for groups of units, from which primitives can be made. Any table can
/// serve as a schema. None of its operations makes containers; one that `IContainer::clone` puts there counts as an
/// item and is never shown.
///
/// An object keeps the names of the items as they were when it was opened, and follows only its own changes. An item
/// that another object makes is not found here, and since its name looks free, `create` would make a second item of
/// that name; open the table anew before.
///
/// Only the library implements it. Threads: one at a time for each object; every operation but `container` holds the
/// guard.
class LVP_EXPORT ITable {
public:
    virtual ~ITable() = default;

    /// The same object as a property: valid as long as a `SharedPtr` holds either.
    virtual IProperty* container() const = 0;

    /// The item at a name or a path that begins in this table, as a new object; null when there is none. A path that
    /// goes exactly one name further than a primitive ends on that primitive.
    virtual SharedPtr<IProperty> lookup(WideString name) = 0;

    /// A new cursor over the items. It looks at the table in the store at each step, but goes no further than the
    /// number of items that there were when it was made, so an item that is added meanwhile is not reached, and when
    /// one that was passed is destroyed another is passed over (see `IPropertyFilter`). It opens the table for itself:
    /// as long as it lives the table is in use and cannot be destroyed. Each step costs a look at the list of items,
    /// which is read as a whole from a store that gives out whole records only.
    virtual SharedPtr<IPropertyFilter> properties() = 0;

    /// Whether the table conforms to a schema that a locator gave: because `base()` names all its URIs, or else because
    /// it has all items of the schema, as told at `IContainer::validates`. False for null and for what is no schema of
    /// this library. The schema's store is read without its guard in the second case, at the cost of a walk over both
    /// subtrees.
    virtual bool validates(ISchema* schema) = 0;

    /// Makes a table in this one and returns it. With a schema that is not null it takes in a copy of the schema's
    /// items, hidden (see `IProperty::flags`); the schema's store is read without its guard. Null when `lookup` of the
    /// name finds something, when an item is called exactly so, without a name, and for what is no schema of this
    /// library.
    virtual SharedPtr<ITable> create(WideString name, ISchema* schema) = 0;

    /// Makes a primitive without elements in this table, of the kind `type` and with a unit, or with none for
    /// `kNoUnit`, and returns it. Null when `lookup` of the name finds something, when an item is called exactly so,
    /// or without a name. The kind is not checked: one that `tValue` does not have makes a primitive that holds
    /// nothing.
    virtual SharedPtr<IPrimitive> create(WideString name, tValue type, units::tUnit units) = 0;

    /// The same with the kind `valuetype(group)` and the unit `units(group)`. Null as well when the group has no
    /// default.
    virtual SharedPtr<IPrimitive> create(WideString name, units::tUnitGroup group) = 0;

    /// Destroys the item of exactly this name and all that it holds. False, with nothing changed, when there is none,
    /// when it came from a schema, or when it or anything below it is in use by a live object. Other objects that are
    /// open over this table go on knowing the name, but find null behind it. Where the store throws, the item is there
    /// as it was or gone as a whole, and records of it may stay, attached to nothing. Costs a walk over the item's
    /// subtree.
    virtual bool destroy(WideString name) = 0;

    /// The number of items that this object knows.
    virtual unsigned int items() = 0;

    /// The item at `index`, from 0, in the order of their adding, as a new object. It looks at the table in the store,
    /// so after changes by others the index may lead elsewhere; null when nothing is there. Costs a look at the list of
    /// items, as in `properties`, and the opening of one.
    virtual SharedPtr<IProperty> at(unsigned int index) = 0;

    /// Sets the default for the group of `units`: this unit and this kind, in place of a default that the group had. It
    /// changes no item. False, with nothing changed, when either is 0.
    virtual bool defaults(units::tUnit units, tValue type) = 0;

    /// How many groups have a default in this table itself, as it was when this object was opened or last gave a group
    /// its first one. `group`, `valuetype` and `units` know no others of this table; what the default is they read from
    /// the store.
    virtual unsigned int groups() = 0;

    /// The group at `index`, from 0, in ascending order, of those that `groups` counts; `kNoGroup` when nothing is
    /// there.
    virtual units::tUnitGroup group(unsigned int index) = 0;

    /// The default kind of a group: of this table, or else of the table that it stands in, and no further up; 0 when
    /// there is none.
    virtual tValue valuetype(units::tUnitGroup group) = 0;

    /// The default unit of a group, found in the same way and by itself; `kNoUnit` when there is none.
    virtual units::tUnit units(units::tUnitGroup group) = 0;

    /// The URIs of the schemas that the table was made with, joined by ";"; empty without any.
    virtual WideString base() = 0;

    /// The table behind a property: the same object, with no change of ownership. Null for null and for a primitive.
    static ITable* to(IProperty* property);
};

}  // namespace lumivard::platform::data::metadata
