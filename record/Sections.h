#pragma once

#include <span>

namespace lumivard::platform::data::Record {

/// Some bytes of a record, from `begin` up to `end`.
struct tRange {
    unsigned int begin;
    unsigned int end;
};

/// The form of the records of a kind: `header` bytes of fixed fields, then one section for each field in `lengths`, in
/// that order, of the length that the field holds. A section is named by the position of its 32-bit length field.
/// `zeros` are the bytes of the fixed part that mean nothing and that every writer leaves at 0.
struct tSections {
    unsigned int header;
    std::span<const unsigned int> lengths;
    std::span<const tRange> zeros;
};

/// One section as it lies in a record: what its length field claims, and the bytes that are there, which end with the
/// record at the latest.
struct tSection {
    unsigned int field;
    unsigned int claimed;
    std::span<const char> bytes;

    /// Whether all that is claimed is there.
    bool fits() const { return bytes.size() == claimed; }
};

}  // namespace lumivard::platform::data::Record
