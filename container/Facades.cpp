#include "container/Facades.h"

#include "container/ContainerImpl.h"
#include "container/GroupImpl.h"
#include "container/LinkImpl.h"
#include "container/NodeImpl.h"
#include "lumivard/platform/core/memory/SharedPtr.h"
#include "record/Container.h"

namespace lumivard::platform::data {

using core::memory::makeShared;
using structure::IContainer;

namespace {

/// Makes the face of the role that a type calls for from the same arguments as any other.
template <class... Arguments>
SharedPtr<IContainer> makeTyped(IContainer::tType type, Arguments... arguments) {
    switch (type) {
        case IContainer::kNode:
            return makeShared<IContainer, NodeImpl>(arguments...);
        case IContainer::kGroup:
            return makeShared<IContainer, GroupImpl>(arguments...);
        case IContainer::kLink:
            return makeShared<IContainer, LinkImpl>(arguments...);
        default:
            return {};
    }
}

}  // namespace

SharedPtr<IContainer> openContainer(IDataStore* store, unsigned int offset) {
    const Record::Container record(store, offset, Record::kInPlace);
    if (record.type() != Record::kContainer) return {};
    return makeTyped(static_cast<IContainer::tType>(record.kind()), store, offset, false);
}

SharedPtr<IContainer> openPlain(IDataStore* store, unsigned int offset) {
    return makeShared<IContainer, ContainerImpl>(store, offset, false);
}

SharedPtr<IContainer> makeContainer(Metadata::Set& owner, IContainer::tType type, const wchar_t* name,
                                    metadata::ISchema* schema) {
    const bool hasRole = type == IContainer::kGroup || type == IContainer::kLink;
    auto face = hasRole ? makeTyped(type, owner.store(), type, name)
                        : makeShared<IContainer, ContainerImpl>(owner.store(), type, name);
    Structural::Container& container = *static_cast<ContainerImpl&>(*face).item();
    container.comeTo(owner);
    if (schema) container.inherit(schema);
    return hasRole || type == IContainer::kNode ? face : SharedPtr<IContainer>();
}

SharedPtr<IContainer> makePlainGroup(Metadata::Set& owner, const wchar_t* name) {
    auto face = makeShared<IContainer, ContainerImpl>(owner.store(), IContainer::kGroup, name);
    owner.add(static_cast<ContainerImpl&>(*face).item()->offset());
    return face;
}

}  // namespace lumivard::platform::data
