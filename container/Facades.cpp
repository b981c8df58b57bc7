#include "container/Facades.h"

#include "container/ContainerImpl.h"
#include "container/GroupImpl.h"
#include "container/LinkImpl.h"
#include "container/NodeImpl.h"
#include "lumivard/platform/core/memory/SharedPtr.h"
#include "record/Base.h"

namespace lumivard::platform::data {

namespace {

template <class Facade>
SharedPtr<structure::IContainer> face(std::unique_ptr<Structural::Container> container) {
    return core::memory::share<structure::IContainer>(std::make_unique<Facade>(std::move(container)));
}

}  // namespace

SharedPtr<structure::IContainer> typedFacade(std::unique_ptr<Structural::Container> container) {
    switch (container->type()) {
        case structure::IContainer::kNode:
            return face<NodeImpl>(std::move(container));
        case structure::IContainer::kGroup:
            return face<GroupImpl>(std::move(container));
        case structure::IContainer::kLink:
            return face<LinkImpl>(std::move(container));
        default:
            return {};
    }
}

SharedPtr<structure::IContainer> plainFacade(std::unique_ptr<Structural::Container> container) {
    return face<ContainerImpl>(std::move(container));
}

SharedPtr<structure::IContainer> openContainer(IDataStore* store, unsigned int offset) {
    if (Record::peek(store, offset) != Record::kContainer) return {};
    return typedFacade(std::make_unique<Structural::Container>(store, offset, false));
}

}  // namespace lumivard::platform::data
