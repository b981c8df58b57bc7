#pragma once

#include <iterator>

#include "lumivard/platform/data/metadata/tValue.h"

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

}  // namespace lvp::tool
