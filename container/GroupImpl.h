#pragma once

#include "container/ContainerImpl.h"
#include "lumivard/platform/data/structure/IGroup.h"

namespace lumivard::platform::data {

/// A container that is a group, with that role's side.
class GroupImpl : public ContainerImpl, public structure::IGroup {
public:
    using ContainerImpl::container;
    using ContainerImpl::ContainerImpl;

    structure::IContainer* container() const override { return const_cast<GroupImpl*>(this); }
};

}  // namespace lumivard::platform::data
