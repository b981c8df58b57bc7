#pragma once

#include <memory>

#include "design/Container.h"
#include "lumivard/platform/data/structure/IContainer.h"

/// How opened containers get their public faces. For callers that hold the store's guard.
namespace lumivard::platform::data {

/// The face of the role that the container's type calls for: node, group or link; null for any other type.
SharedPtr<structure::IContainer> typedFacade(std::unique_ptr<Structural::Container> container);

/// A face without a role side, whatever the type.
SharedPtr<structure::IContainer> plainFacade(std::unique_ptr<Structural::Container> container);

/// Opens a record as a container and gives it its typed face; null for `BADOFF` and for a record that is no container.
SharedPtr<structure::IContainer> openContainer(IDataStore* store, unsigned int offset);

}  // namespace lumivard::platform::data
