#pragma once

#include "lumivard/platform/core/Export.h"
#include "lumivard/platform/data/Names.h"
#include "lumivard/platform/data/metadata/tValue.h"

namespace lumivard::platform::data::metadata {

class IPrimitive;
class IProperty;
class IPropertyFilter;
class ISchema;
class ITable;

}  // namespace lumivard::platform::data::metadata

/// Containers, from the top of a store down, and what goes over them.
namespace lumivard::platform::data::structure {

class IContainerFilter;

/// A named place in a store that holds properties and further containers, each under a name of its own, in the order of
/// their adding. Every container is a node, a group or a link; what a link has beyond a container is in `ILink`. It
/// reads and writes no values: properties do.
///
/// An object keeps the names of its children as they were when it was opened, and follows only what is done through
/// itself. A child that another object makes is not found here, and since its name looks free, `create` would make a
/// second child of that name; the name of a child that another object destroys stays taken. `container` without a name
/// opens the container anew. The cursors of `properties` and `containers` look at the store.
///
/// Where a name or a path is asked for: `create`, `destroy` and `rename` take a name, in which a dot is a character
/// like any other. `has`, `container`, `property` and `validates` take a path that begins in this container, so they do
/// not reach a child with a dot in its name. A path that goes exactly one name further than a primitive ends on that
/// primitive.
///
/// Only the library implements it, and no other implementation is accepted where one is asked for. Threads: one at a
/// time for each object; every operation holds the guard but `store` and `empty`.
class LVP_EXPORT IContainer {
public:
    /// What a container is. These numbers are what a store keeps.
    enum tType : unsigned char {
        kNode = 0,   ///< see `INode`
        kGroup = 1,  ///< see `IGroup`
        kLink = 2    ///< see `ILink`
    };

    virtual ~IContainer() = default;

    /// The name that the container had when this object was opened.
    virtual WideString tag() const = 0;

    /// The names from the top level down to this container, joined by ".", without that of the store's root. The names
    /// above it come from the store, its own is `tag()`. Costs a read for each level.
    virtual WideString path() const = 0;

    /// The store that the container stands in; takes no guard.
    virtual IDataStore* store() const = 0;

    /// The container that this one stands in, as a new object of the role of its type; null at the top level.
    virtual SharedPtr<IContainer> parent() = 0;

    /// The URIs of the schemas that the container was made with, joined by ";"; empty without any.
    virtual WideString base() const = 0;

    /// Whether this object knows no children; takes no guard.
    virtual bool empty() const = 0;

    /// What the container is, as it was given when it was made; in a damaged store any number.
    virtual tType type() const = 0;

    /// Destroys the child of exactly this name and all that it holds. False, with nothing changed, when this object
    /// knows no such child, when it came from a schema, or when it or anything below it is in use by a live object.
    /// Other objects that are open over this container go on knowing the name (`has` is true, `create` refuses it), but
    /// find null behind it. Where the store throws, the child is there as it was or gone as a whole, and records of it
    /// may stay, attached to nothing. Costs a walk over the child's subtree.
    virtual bool destroy(WideString name) = 0;

    /// Gives this container another name among its siblings.
    ///
    /// False, with nothing changed, when a sibling bears the name, when there is no name, when the container came from
    /// a schema, or when it stands at the top level, where names are for good.
    ///
    /// The new name does not reach any object that is open: `tag()` and the end of `path()` of this one go on with the
    /// old name, and so do the objects over its parent. A further `rename` through this object would go by the old name
    /// too: open the container anew. Costs the opening of the parent.
    virtual bool rename(WideString name) = 0;

    /// Makes a container in this one and returns it. With a schema that is not null the child takes in a copy of the
    /// schema's items, hidden (see `IProperty::flags`); of two schemas that have an item of one name, the first gives
    /// it. The guard of the schema's store is held meanwhile, taken after this store's. Null, with nothing made, for
    /// what is no schema of this library.
    ///
    /// Null, with nothing changed, when this object knows a child of that name, or without a name. A type above `kLink`
    /// gives null as well, yet the child is made: its name is taken, and no operation of a container opens it.
    ///
    /// A group and a link come back in their role, so that `IGroup::to` and `ILink::to` work; a node does not, until it
    /// is opened again by `container`.
    virtual SharedPtr<IContainer> create(tType type, WideString name, metadata::ISchema* schema) = 0;

    /// Makes a primitive without elements and without a unit in this container, of the kind `value`, and returns it.
    /// Null, with nothing changed, when this object knows a child of that name, or without a name. The kind is not
    /// checked: one that `tValue` does not have makes a primitive that holds nothing.
    virtual SharedPtr<metadata::IPrimitive> create(WideString name, metadata::tValue value) = 0;

    /// Makes a table in this container and returns it; a schema works as for a container, but its store is read without
    /// its guard. Null, with nothing changed, when this object knows a child of that name, or without a name.
    virtual SharedPtr<metadata::ITable> create(WideString name, metadata::ISchema* schema) = 0;

    /// Whether there is something at a path.
    virtual bool has(WideString name) = 0;

    /// The container at a path, as a new object of the role of its type; null when there is none, or something else.
    /// Without a name, a new object over this container itself, which knows its children as they are now.
    virtual SharedPtr<IContainer> container(WideString name) = 0;

    /// The property at a path, as a new object; null when there is none, or a container.
    virtual SharedPtr<metadata::IProperty> property(WideString name) = 0;

    /// A new cursor over the primitives and tables in this container, as they stand in the store now: what is added
    /// later is not reached, and what is destroyed meanwhile gives null or is passed over. It may outlive this object,
    /// and keeps nothing in use.
    virtual SharedPtr<metadata::IPropertyFilter> properties() = 0;

    /// A new cursor over the containers in this container, under the same terms.
    virtual SharedPtr<IContainerFilter> containers() = 0;

    /// Whether the container conforms to a schema that a locator gave. It does when `base()` names all URIs of the
    /// schema. If not, `quick` says no, and otherwise it does when it has all items of the schema, of each URI in their
    /// order, with any others before, between and behind them: values of the same name and kind, and tables of the same
    /// name that hold all that the schema's do. Containers match nothing, and a schema without any items is met by
    /// nobody in this way. Costs a walk over both subtrees; the schema's store is read without its guard.
    ///
    /// False for null and for what is no schema of this library.
    virtual bool validates(metadata::ISchema* schema, bool quick) = 0;

    /// The same for the container or the table at a path; false when there is none, and for a primitive.
    virtual bool validates(WideString name, metadata::ISchema* schema, bool quick) = 0;

    /// Adds a copy of each direct child of `source` to this container, subtree and all, under its own name. A child
    /// whose name (taken as a path) is found here already is passed over: nothing is merged below the first level. True
    /// when all were looked at. False when one that `source` knows is no child any more; what was copied before stays.
    ///
    /// What holds for all copies: null, and what is no object of this library, gives false. Only this store's guard is
    /// held: who shares another store of the source holds it still. A copy has its own values and texts, and the flags
    /// of its source: what came from a schema stays inherited, and hidden. What it says by name, of schemas and of link
    /// targets, it goes on saying. It is in use by nobody. Texts that were set through an object that is still open are
    /// not in it. A container may be copied into itself or below itself: the copy is of what there was before. Where a
    /// store throws, records that were made by then stay, attached to nothing. Costs a walk over what is copied.
    virtual bool copy(SharedPtr<IContainer> source) = 0;

    /// Adds a copy of `source` to this container under its own name. False, with nothing changed, when that name (taken
    /// as a path) is found here.
    virtual bool clone(SharedPtr<IContainer> source) = 0;

    /// The same for a primitive or a table.
    virtual bool clone(SharedPtr<metadata::IProperty> source) = 0;

    /// Adds a copy of the item at the path `source` to the container at the path `destination` up to its last dot,
    /// under the name that follows it; without a dot, to this container under the name `destination`. `source` begins
    /// at the top of the store when `fromRoot` is true and in this container otherwise; `destination` always begins
    /// here.
    ///
    /// False, with nothing changed, when there is no such item or container, or the name is taken there. This object
    /// knows the copy only if there was no dot; another object over the destination does not.
    virtual bool clone(WideString source, WideString destination, bool fromRoot) = 0;

    /// Adds a copy of this container to another store: to the container or table at the path `destination` up to its
    /// last dot, from the top of that store, under the name that follows it; without a dot, to the top-level item of
    /// the name `destination`, under that same name. False, with nothing changed, when there is no such container or
    /// table.
    ///
    /// It does not see whether the name is taken: then it gives true, and the copy stays in the store attached to
    /// nothing. Ask `has` before. False for null and for an empty store. Holds the guard of `store` and, taken after
    /// it, that of this container's: two threads that copy between two stores in opposite directions can block each
    /// other for ever.
    virtual bool clone(IDataStore* store, WideString destination) = 0;

    /// How many locales the container has a text in.
    ///
    /// Texts that were set through this object are written when it goes, and show in objects that are opened after
    /// that; where the store throws then, or memory runs out, they are lost and nobody is told. This object itself
    /// shows them if the container had any text when it was opened; otherwise `locales` and `localize` here go on
    /// telling of none.
    virtual unsigned int locales() = 0;

    /// The name of the locale at `index`, from 0, in the order in which they were first described; empty when there is
    /// none there.
    virtual WideString locale(unsigned int index) = 0;

    /// Sets the container's text in a locale such as "en-us", in place of one that is there; a text without characters
    /// removes it. When it shows is told at `locales`.
    ///
    /// When this object goes it writes all texts, those that it has read with those that it was given: what another
    /// object wrote in between is lost. So let one object describe at a time.
    ///
    /// After a removal this object goes by stale places, until the container is opened anew: for each later locale
    /// `localize` gives, and `describe` changes or removes, the text of the one that follows it; for the last one there
    /// is none. To remove the only text has no lasting effect: it is back when the container is opened again.
    virtual void describe(WideString locale, WideString text) = 0;

    /// The text in a locale; empty when there is none.
    virtual WideString localize(WideString locale) = 0;
};

}  // namespace lumivard::platform::data::structure
