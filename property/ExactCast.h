#pragma once

#include <typeinfo>

#include "lumivard/platform/core/memory/PointerCounter.h"
#include "lumivard/platform/data/metadata/IProperty.h"

namespace lumivard::platform::data {

/// The face of a class that a property is, or null. Nearly all of them were made by `makeShared`, which is seen from
/// the address of their type; only for others the way over the names of the types is gone, which costs as much as a
/// call of the interface.
template <class Face>
Face* exactCast(metadata::IProperty* property) {
    using Boxed = core::memory::_Private::_Counter::_Boxed<Face>;
    return &typeid(*property) == &typeid(Boxed) ? static_cast<Face*>(property) : dynamic_cast<Face*>(property);
}

}  // namespace lumivard::platform::data
