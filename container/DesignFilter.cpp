#include "container/DesignFilter.h"

#include "property/Facades.h"
#include "record/Guard.h"

namespace lumivard::platform::data {

ContainerImpl::DesignFilter::DesignFilter(ContainerImpl* container)
    : _cursor(*container, [](Record::tType kind) { return kind == Record::kPrimitive || kind == Record::kTable; }) {}

SharedPtr<metadata::IProperty> ContainerImpl::DesignFilter::current() {
    const Record::Guard guard(_cursor.store());
    return openProperty(_cursor.store(), _cursor.offset());
}

}  // namespace lumivard::platform::data
