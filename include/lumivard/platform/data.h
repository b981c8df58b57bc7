#pragma once

/// The public interfaces of the data library.
///
/// A client opens a store, asks structure::IContainerFrontEnd for a container at its top, and walks on from there.
/// Containers hold further containers and properties; a property is a primitive (a named array of values with a unit)
/// or a table (a named set of properties). format::xml::IXMLFrontEnd reads and writes the whole as a document.
///
/// What follows holds for every interface below; their own headers say what is particular to them.
///
/// Ownership. The client owns the store, which outlives every object that was built on it. A SharedPtr owns the object
/// that it holds. Each call that returns an object makes a new one: nothing is cached, two objects over one item share
/// nothing but the item, and a child object may outlive the one that it came from. Plain pointers that come back own
/// nothing, unless the operation says so. As long as an object lives, its item counts as in use, and so `destroy`
/// refuses it and whatever it stands in.
///
/// What an object sees. An object over a container or a table keeps the names of its children as they were when it was
/// opened, and follows only what is done through itself. What another object creates, renames or destroys shows in an
/// object that is opened afterwards: by the front end, by `container`, `parent`, `property` or `lookup`, or by a
/// cursor. An object likewise keeps its own name, kind, schemas, link target and localized texts; a primitive keeps the
/// length of its value, its URI, its schema and the locale of its value. Flags, units, values and the names of the
/// items above it are read from the store at each call. A path is followed from the names that the object keeps at its
/// first step, and from the store at each further step.
///
/// Names and paths. A path is names joined by "."; it is not trimmed, and empty names count. Each operation says
/// whether it takes a name or a path. A name may hold a dot, but then no path reaches it.
///
/// Text. Text is WideString, by value. One without characters is no text at all: as a name or a path it finds nothing
/// and makes nothing.
///
/// Failure. What cannot be done gives a null pointer, false, 0 or an empty text, and leaves the store as it was. The
/// library throws nothing of its own, but what a store throws and `std::bad_alloc` pass through; guards are released on
/// the way, and what was written before stays written. Releasing an object writes to its store (the count of objects in
/// use and changed texts); a destructor lets nothing pass, so what a store refuses then is lost.
///
/// Threads. The library has none of its own. An object belongs to one thread at a time; different objects may be used
/// on different threads, over one store too, since each operation holds that store's guard (`IDataStore::lock`) for its
/// whole length unless its header says that it takes none. Over a store whose `lock` gives null the client excludes. A
/// client that wants several calls to be one step holds the guard around them.
///
/// Cost. Opening a container or a table, by whatever call, reads each of its direct children once; a path costs the
/// opening of each set on the way. Names are found in constant time in an object that is open. To add a child costs the
/// same whatever is there already; any other change to an item rewrites its record, which is as long as its name and
/// its value, and a change to its localized texts rewrites all of them.
namespace lumivard::platform::data {}

#include "lumivard/platform/data/Names.h"
#include "lumivard/platform/data/format/xml/IXMLFrontEnd.h"
#include "lumivard/platform/data/metadata/IPrimitive.h"
#include "lumivard/platform/data/metadata/IProperty.h"
#include "lumivard/platform/data/metadata/IPropertyFilter.h"
#include "lumivard/platform/data/metadata/ISchema.h"
#include "lumivard/platform/data/metadata/ISchemaLocator.h"
#include "lumivard/platform/data/metadata/IStringArray.h"
#include "lumivard/platform/data/metadata/IStructLayout.h"
#include "lumivard/platform/data/metadata/ITable.h"
#include "lumivard/platform/data/metadata/IURIResolver.h"
#include "lumivard/platform/data/metadata/tValue.h"
#include "lumivard/platform/data/structure/IContainer.h"
#include "lumivard/platform/data/structure/IContainerFilter.h"
#include "lumivard/platform/data/structure/IContainerFrontEnd.h"
#include "lumivard/platform/data/structure/IGroup.h"
#include "lumivard/platform/data/structure/ILink.h"
#include "lumivard/platform/data/structure/INode.h"
#include "lumivard/platform/data/structure/IVisitor.h"
#include "lumivard/platform/data/type/TypeIdentifiers.h"
#include "lumivard/platform/data/units/tUnit.h"
#include "lumivard/platform/data/units/tUnitGroup.h"
