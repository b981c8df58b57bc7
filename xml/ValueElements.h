#pragma once

#include <cstddef>
#include <cstring>
#include <iterator>

#include "lumivard/platform/data/metadata/tValue.h"

namespace lumivard::platform::data {

/// One word in both forms: narrow for reading, wide for writing.
struct tElementName {
    const char* narrow;
    const wchar_t* wide;
};

/// The names of the value elements, by value kind. The first is that of no kind.
inline constexpr tElementName kpValueElements[] = {
    {nullptr, nullptr},          {"binary", L"binary"},       {"uuid", L"uuid"},
    {"string", L"string"},       {"time", L"time"},           {"uri", L"uri"},
    {"version", L"version"},     {"bool", L"bool"},           {"int8", L"int8"},
    {"uint8", L"uint8"},         {"int16", L"int16"},         {"uint16", L"uint16"},
    {"int32", L"int32"},         {"uint32", L"uint32"},       {"int64", L"int64"},
    {"uint64", L"uint64"},       {"scalar", L"scalar"},       {"double", L"double"},
    {"vector2", L"vector2"},     {"vector3", L"vector3"},     {"vector4", L"vector4"},
    {"matrix2x2", L"matrix2x2"}, {"matrix3x3", L"matrix3x3"}, {"matrix4x4", L"matrix4x4"},
    {"struct", L"struct"},
};
static_assert(std::size(kpValueElements) == metadata::kStruct + 1);

/// The name of a kind's element; null pointers for a number that is no kind.
constexpr const tElementName& valueElement(metadata::tValue kind) {
    return kpValueElements[kind > metadata::kStruct ? 0u : unsigned{kind}];
}

/// A value kind as the defaults of a table name it.
struct tTypeName {
    const char* narrow;
    const wchar_t* wide;
    metadata::tValue kind;
};

/// The kinds that can be a table's default. Vectors and matrices have other names here than their elements have, and
/// structs have none: documents in use are so.
inline constexpr tTypeName kpTypes[] = {
    {"string", L"string", metadata::kString}, {"binary", L"binary", metadata::kBinary},
    {"scalar", L"scalar", metadata::kScalar}, {"double", L"double", metadata::kDouble},
    {"bool", L"bool", metadata::kBool},       {"string", L"string", metadata::kString},
    {"uuid", L"uuid", metadata::kUUID},       {"time", L"time", metadata::kTime},
    {"uri", L"uri", metadata::kURI},          {"version", L"version", metadata::kVersion},
    {"int8", L"int8", metadata::kInt8},       {"uint8", L"uint8", metadata::kUInt8},
    {"int16", L"int16", metadata::kInt16},    {"uint16", L"uint16", metadata::kUInt16},
    {"int32", L"int32", metadata::kInt32},    {"uint32", L"uint32", metadata::kUInt32},
    {"int64", L"int64", metadata::kInt64},    {"uint64", L"uint64", metadata::kUInt64},
    {"mtx2x2", L"mtx2x2", metadata::kMtx2x2}, {"mtx3x3", L"mtx3x3", metadata::kMtx3x3},
    {"mtx4x4", L"mtx4x4", metadata::kMtx4x4}, {"vec2", L"vec2", metadata::kVec2},
    {"vec3", L"vec3", metadata::kVec3},       {"vec4", L"vec4", metadata::kVec4},
};

/// The first entry of `kpTypes` of that name, or of that kind; null when there is none.
inline const tTypeName* typeNamed(const char* name) {
    for (const tTypeName& type : kpTypes) {
        if (std::strcmp(type.narrow, name) == 0) return &type;
    }
    return nullptr;
}
inline const tTypeName* typeOf(metadata::tValue kind) {
    for (const tTypeName& type : kpTypes) {
        if (type.kind == kind) return &type;
    }
    return nullptr;
}

}  // namespace lumivard::platform::data
