#pragma once

#include "lumivard/platform/core/Export.h"
#include "lumivard/platform/data/Names.h"

namespace lumivard::platform::data::structure {

class IContainer;

/// The role of a container of the type `kLink`: it names another container by its path. It does not own or watch what
/// it names: the target may come later, go, or be another one in another store. A link may hold children like any
/// container.
///
/// Only the library implements it. Threads: one at a time for each object; every operation but `container` holds the
/// guard of the link's store.
class LVP_EXPORT ILink {
public:
    virtual ~ILink() = default;

    /// The same object as a container: valid as long as a `SharedPtr` holds it.
    virtual IContainer* container() const = 0;

    /// The container that the target names in `store`, or in the link's own store for null, as a new object without a
    /// role. Null when the link has no target, or when nothing or something else than a container is there; another
    /// store than the one asked for is not searched. A link that is found is returned and not followed further.
    ///
    /// Holds, after the guard of the link's store, that of `store` as well: threads that follow links in opposite
    /// directions between two stores need an order of their own.
    virtual SharedPtr<IContainer> follow(IDataStore* store) = 0;

    /// The path of the target from the top of a store, as `IContainer::path` gives it; empty without one.
    virtual WideString target() = 0;

    /// Sets the target, which is not looked for; no characters clear it. Other objects that are open over this link
    /// keep the target that they know.
    virtual void target(WideString text) = 0;

    /// The link behind a container: the same object, with no change of ownership; valid as long as a `SharedPtr` holds
    /// it. Null for null and for a container of another type. Null also for an object without a role: that is what
    /// `IContainerFrontEnd` and `ILink::follow` give. `container` without a name, called on such an object, gives one
    /// with its role.
    static ILink* to(IContainer* container);
};

}  // namespace lumivard::platform::data::structure
