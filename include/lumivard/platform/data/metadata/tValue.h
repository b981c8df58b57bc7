#pragma once

/// Properties: primitives, which hold values, and tables of them; and schemas, which say what to expect.
namespace lumivard::platform::data::metadata {

/// The kind of a primitive's values.
///
/// A primitive is an array of elements of a fixed size, and all counts and positions of `IPrimitive` are in elements.
/// Of a vector or a matrix, an element is one component: a `kVec3` of two vectors has 6 elements. Of a text kind it is
/// one wide character: a text of n characters takes n + 1 elements with its zero, and several texts stand one after the
/// other. Elements are in the byte order of the machine. These numbers are what a store keeps.
enum tValue : unsigned int {
    /// Bytes of no form: elements of 1 byte.
    kBinary = 1,

    kUUID,     ///< a text: elements of 4 bytes, each text ended by a zero; nothing checks what a text says
    kString,   ///< a text
    kTime,     ///< a text
    kURI,      ///< a text
    kVersion,  ///< a text

    kBool,    ///< elements of 1 byte, 0 or 1
    kInt8,    ///< elements of 1 byte
    kUInt8,   ///< elements of 1 byte
    kInt16,   ///< elements of 2 bytes
    kUInt16,  ///< elements of 2 bytes
    kInt32,   ///< elements of 4 bytes
    kUInt32,  ///< elements of 4 bytes
    kInt64,   ///< elements of 8 bytes
    kUInt64,  ///< elements of 8 bytes
    kScalar,  ///< elements are floats of 4 bytes
    kDouble,  ///< elements are doubles of 8 bytes

    kVec2,    ///< 2 components, as doubles of 8 bytes; nothing holds an array to a multiple of these
    kVec3,    ///< 3 components
    kVec4,    ///< 4 components
    kMtx2x2,  ///< 4 components
    kMtx3x3,  ///< 9 components
    kMtx4x4,  ///< 16 components

    /// Structs, laid out without gaps as `IStructLayout` tells: elements of 1 byte.
    kStruct
};

}  // namespace lumivard::platform::data::metadata
