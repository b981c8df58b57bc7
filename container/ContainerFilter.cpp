#include "container/ContainerFilter.h"

#include "container/Facades.h"
#include "record/Guard.h"

namespace lumivard::platform::data {

ContainerImpl::ContainerFilter::ContainerFilter(ContainerImpl* container)
    : _cursor(*container, [](Record::tType kind) { return kind == Record::kContainer; }) {}

SharedPtr<structure::IContainer> ContainerImpl::ContainerFilter::current() {
    const Record::Guard guard(_cursor.store());
    return openContainer(_cursor.store(), _cursor.offset());
}

}  // namespace lumivard::platform::data
