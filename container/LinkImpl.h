#pragma once

#include "container/ContainerImpl.h"
#include "lumivard/platform/data/structure/ILink.h"

namespace lumivard::platform::data {

/// A container that is a link, with that role's side. The target is the container's free text.
class LinkImpl : public ContainerImpl, public structure::ILink {
public:
    using ContainerImpl::container;
    using ContainerImpl::ContainerImpl;

    structure::IContainer* container() const override { return const_cast<LinkImpl*>(this); }
    SharedPtr<structure::IContainer> follow(IDataStore* store) override;
    WideString target() override;
    void target(WideString text) override;
};

}  // namespace lumivard::platform::data
