#pragma once

#include "lumivard/platform/core/Export.h"
#include "lumivard/platform/data/Names.h"

namespace lumivard::platform::data::structure {

class IContainer;

/// A cursor over the containers in a container, in the order in which they were added; it passes over properties. It
/// begins on the first one, so a walk is:
///
///     do {
///         if (auto child = filter->current()) use(*child);
///     } while (filter->next());
///
/// It walks over the list of children as it stood in the store when the cursor was made (`IContainer::containers`):
/// what is added later is not reached, and what is destroyed meanwhile gives null or is passed over. It needs only the
/// store, not the object that it came from, and keeps nothing in use.
///
/// Only the library implements it. Threads: one at a time; every operation holds the guard while it looks.
class LVP_EXPORT IContainerFilter {
public:
    virtual ~IContainerFilter() = default;

    /// Moves to the next container. When there is none it gives false and stands behind the last one, where `current`
    /// is null and `prev` leads back. Costs a look at each item passed.
    virtual bool next() = 0;

    /// Moves to the container before. When there is none it gives false and stays where it was, unlike `next`.
    virtual bool prev() = 0;

    /// The container under the cursor, as a new object at each call, of the role of its type (`INode`, `IGroup`,
    /// `ILink`); null behind the last one, where there is none, and for a type that is none of the three.
    virtual SharedPtr<IContainer> current() = 0;
};

}  // namespace lumivard::platform::data::structure
