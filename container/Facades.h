#pragma once

#include "design/Container.h"
#include "lumivard/platform/data/structure/IContainer.h"

/// How opened containers get their public faces. For callers that hold the store's guard.
namespace lumivard::platform::data {

/// Opens a record as a container and gives it the face of the role that its type calls for: node, group or link. Null
/// for any other type, for `BADOFF` and for a record that is no container.
SharedPtr<structure::IContainer> openContainer(IDataStore* store, unsigned int offset);

/// Opens the record of a container and gives it a face without a role side, whatever the type.
SharedPtr<structure::IContainer> openPlain(IDataStore* store, unsigned int offset);

/// Makes a container, a child of a set in which its name is free, and gives it a face. It inherits from a schema that
/// is not null. A new node comes without its role side; the same node has it when it is asked for by name. Of a type
/// that is none a container is made, but null comes back.
SharedPtr<structure::IContainer> makeContainer(Metadata::Set& owner, structure::IContainer::tType type,
                                               const wchar_t* name, metadata::ISchema* schema);

/// Makes a group, a child of a set in which its name is free, and gives it a face without a role side, which knows of
/// no owner.
SharedPtr<structure::IContainer> makePlainGroup(Metadata::Set& owner, const wchar_t* name);

}  // namespace lumivard::platform::data
