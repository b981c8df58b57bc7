#pragma once

namespace lumivard::platform::data::metadata {

/// The kind of a primitive's values.
///
/// A primitive is an array of elements of a fixed size, and all counts and positions of `IPrimitive` are in elements.
/// Of a vector or a matrix, an element is one component: a `kVec3` of two vectors has 6 elements. Of a text kind it is
/// one wide character: a text of n characters takes n + 1 elements with its zero, and several texts stand one after the
/// other. Elements are in the byte order of the machine. These numbers are what a store keeps.
enum tValue : unsigned int {
    // Bytes of no form: elements of 1 byte.
    kBinary = 1,
    // Texts: elements of 4 bytes, each text ended by a zero. Nothing checks what a text says.
    kUUID,
    kString,
    kTime,
    kURI,
    kVersion,
    // Numbers: elements of the size that the name tells, a bool of 1 byte, a scalar a float of 4, a double of 8.
    kBool,
    kInt8,
    kUInt8,
    kInt16,
    kUInt16,
    kInt32,
    kUInt32,
    kInt64,
    kUInt64,
    kScalar,
    kDouble,
    // Vectors of 2, 3, 4 and matrices of 4, 9, 16 components: elements are doubles of 8 bytes. Nothing holds an array
    // to a multiple of these.
    kVec2,
    kVec3,
    kVec4,
    kMtx2x2,
    kMtx3x3,
    kMtx4x4,
    // Structs, laid out without gaps as `IStructLayout` tells: elements of 1 byte.
    kStruct
};

}  // namespace lumivard::platform::data::metadata
