#pragma once

#include "container/Cursor.h"
#include "lumivard/platform/data/structure/IContainerFilter.h"

namespace lumivard::platform::data {

/// A cursor over the child containers of a container.
class ContainerImpl::ContainerFilter : public structure::IContainerFilter {
public:
    explicit ContainerFilter(ContainerImpl* container);

    bool next() override { return _cursor.next(); }
    bool prev() override { return _cursor.prev(); }
    SharedPtr<structure::IContainer> current() override;

private:
    Cursor _cursor;
};

}  // namespace lumivard::platform::data
