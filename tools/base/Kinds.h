#pragma once

#include <iterator>

#include "lumivard/platform/data/metadata/tValue.h"
#include "lumivard/platform/data/structure/IContainer.h"

namespace lvp::tool {

/// The name of a value kind, as documents have it.
inline const char* nameOf(lumivard::platform::data::metadata::tValue kind) {
    static constexpr const char* kpNames[] = {
        "no value", "binary",  "uuid",    "string",    "time",      "uri",       "version", "bool",   "int8",
        "uint8",    "int16",   "uint16",  "int32",     "uint32",    "int64",     "uint64",  "scalar", "double",
        "vector2",  "vector3", "vector4", "matrix2x2", "matrix3x3", "matrix4x4", "struct",
    };
    return kind < std::size(kpNames) ? kpNames[kind] : "unknown kind";
}

/// The name of a kind of container, as documents have it.
inline const char* nameOf(lumivard::platform::data::structure::IContainer::tType type) {
    static constexpr const char* kpNames[] = {"node", "group", "link"};
    return type < std::size(kpNames) ? kpNames[type] : "unknown kind";
}

/// The bits of an item's flags, as `IProperty::flags` tells them.
enum tFlag : unsigned char { kOptional = 0x01, kInherited = 0x02, kHidden = 0x04, kExternal = 0x08 };

}  // namespace lvp::tool
