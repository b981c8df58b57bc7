#include "container/GroupImpl.h"
#include "container/LinkImpl.h"
#include "container/NodeImpl.h"

// From a container to its role side. The type alone does not tell: a plain face reports its record's type and has no
// role.

namespace lumivard::platform::data::structure {

namespace {

template <class Facade>
Facade* roleOf(IContainer* container, IContainer::tType type) {
    return container && container->type() == type ? dynamic_cast<Facade*>(container) : nullptr;
}

}  // namespace

IGroup* IGroup::to(IContainer* container) {
    return roleOf<GroupImpl>(container, IContainer::kGroup);
}

INode* INode::to(IContainer* container) {
    return roleOf<NodeImpl>(container, IContainer::kNode);
}

ILink* ILink::to(IContainer* container) {
    return roleOf<LinkImpl>(container, IContainer::kLink);
}

}  // namespace lumivard::platform::data::structure
