#pragma once

#include "lumivard/platform/data/metadata/tValue.h"

namespace lumivard::platform::data::Design {

/// The size in bytes of one stored unit of each value kind: one character of a text, one component of a vector or
/// matrix. 0 for the two numbers at the ends, which are no kinds.
inline constexpr unsigned int kpIntegralSizes[] = {0, 1, 4, 4, 4, 4, 4, 1, 1, 1, 2, 2, 4,
                                                   4, 8, 8, 4, 8, 8, 8, 8, 8, 8, 8, 1, 0};

/// The stride of a kind; 0 for a number that is no kind.
constexpr unsigned int stride(metadata::tValue kind) {
    return kind <= metadata::kStruct ? kpIntegralSizes[kind] : 0;
}

/// The number of elements of a kind in so many bytes; 0 for a number that is no kind.
constexpr unsigned int dimension(metadata::tValue kind, unsigned int bytes) {
    return stride(kind) == 0 ? 0 : bytes / stride(kind);
}

}  // namespace lumivard::platform::data::Design
