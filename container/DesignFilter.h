#pragma once

#include "container/Cursor.h"
#include "lumivard/platform/data/metadata/IPropertyFilter.h"

namespace lumivard::platform::data {

/// A cursor over the primitives and tables of a container.
class ContainerImpl::DesignFilter : public metadata::IPropertyFilter {
public:
    explicit DesignFilter(ContainerImpl* container);

    bool next() override { return _cursor.next(); }
    bool prev() override { return _cursor.prev(); }
    SharedPtr<metadata::IProperty> current() override;

private:
    Cursor _cursor;
};

}  // namespace lumivard::platform::data
