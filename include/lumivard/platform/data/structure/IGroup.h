#pragma once

#include "lumivard/platform/core/Export.h"
#include "lumivard/platform/data/Names.h"

namespace lumivard::platform::data::structure {

class IContainer;

/// The role of a container of the type `kGroup`: a label for clients that adds no operations to `IContainer`.
///
/// Only the library implements it. Threads: one at a time for each object.
class LVP_EXPORT IGroup {
public:
    virtual ~IGroup() = default;

    /// The same object as a container: valid as long as a `SharedPtr` holds it. Takes no guard.
    virtual IContainer* container() const = 0;

    /// The group behind a container: the same object, with no change of ownership; valid as long as a `SharedPtr` holds
    /// it. Null for null and for a container of another type. Null also for an object without a role: that is what
    /// `IContainerFrontEnd` and `ILink::follow` give. `container` without a name, called on such an object, gives one
    /// with its role.
    static IGroup* to(IContainer* container);
};

}  // namespace lumivard::platform::data::structure
