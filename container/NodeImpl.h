#pragma once

#include "container/ContainerImpl.h"
#include "lumivard/platform/data/structure/INode.h"

namespace lumivard::platform::data {

/// A container that is a node, with that role's side.
class NodeImpl : public ContainerImpl, public structure::INode {
public:
    using ContainerImpl::container;
    using ContainerImpl::ContainerImpl;

    structure::IContainer* container() const override { return const_cast<NodeImpl*>(this); }
};

}  // namespace lumivard::platform::data
