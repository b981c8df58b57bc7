#pragma once

#include "lumivard/platform/core/Export.h"
#include "lumivard/platform/data/Names.h"

namespace lumivard::platform::data::structure {

class IContainer;

/// The way into a store. It has no instances and holds nothing.
///
/// Threads: any. `toplevel` and `find` hold one mutex of the process, for all stores, and the store's guard within it;
/// so a thread that holds a store's guard must not call them while another may be inside for that store. The objects
/// that they give are used without the mutex.
class LVP_EXPORT IContainerFrontEnd {
public:
    /// The version of this interface: 1.
    static int version();

    /// The container of that name at the top of a store, or without a name the first container there, whatever its
    /// name. Where there is none a group is made, of that name or of the name "default". The name is taken as it is, a
    /// dot included. No operation renames or destroys such a container. Null, with nothing made, when something other
    /// than a container bears the name at the top.
    ///
    /// An empty store (`IDataStore::extent` is 0) is first set up: it gets its root, the record at offset 0, and the
    /// version 1.
    ///
    /// The object comes without a role, whatever its `type()` (see `IGroup::to`). `store` is not null, and outlives
    /// whatever is got from it. Costs the opening of the root and of the container.
    static SharedPtr<IContainer> toplevel(IDataStore* store, WideString name);

    /// The container at a path from the top of a store, at any depth. It makes nothing and writes no data. Null when
    /// there is nothing there, something other than a container, no name, or an empty store. For the rest as
    /// `toplevel`; costs the opening of each set on the way.
    static SharedPtr<IContainer> find(IDataStore* store, WideString name);
};

}  // namespace lumivard::platform::data::structure
