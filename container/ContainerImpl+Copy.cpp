#include "container/ContainerImpl.h"

namespace lumivard::platform::data {

bool ContainerImpl::copy(SharedPtr<structure::IContainer>) {
    return false;
}

bool ContainerImpl::clone(SharedPtr<structure::IContainer>) {
    return false;
}

bool ContainerImpl::clone(SharedPtr<metadata::IProperty>) {
    return false;
}

bool ContainerImpl::clone(WideString, WideString, bool) {
    return false;
}

bool ContainerImpl::clone(IDataStore*, WideString) {
    return false;
}

}  // namespace lumivard::platform::data
