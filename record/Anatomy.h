#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "record/Base.h"

namespace lumivard::platform::data::Record {

/// What a record is made of, by the form of its kind: for those who judge records instead of using them. It reads the
/// bytes by the same descriptions as everybody else, and tells what others pass over: lengths that claim too much, and
/// bytes that nobody reads.
///
/// It points into the record, which must outlive it and not change.
class Anatomy {
public:
    explicit Anatomy(const Base& record);

    /// The form of the records of a kind; null for a number that is no kind.
    static const tSections* form(tType kind);

    /// Whether the record is of a kind that there is, and long enough for the fixed part of that kind. Where it is not,
    /// there are no sections and no rest.
    bool known() const { return _form != nullptr; }
    bool fits() const { return _fits; }

    /// The same of a record, without the rest of its anatomy.
    static bool fits(const Base& record);

    /// How many bytes the fixed part of the kind has; 0 for an unknown kind.
    unsigned int fixed() const { return _form ? _form->header : 0; }

    /// The sections, in order.
    std::span<const tSection> sections() const { return {_sections.data(), _count}; }

    /// What lies behind the last section; in a list, behind the last whole entry.
    std::span<const char> rest() const { return _rest; }

    /// Whether the bytes of the fixed part that mean nothing are 0.
    bool zeros() const { return _zeros; }

private:
    static constexpr std::size_t kMost = 4;

    const tSections* _form;
    bool _fits;
    bool _zeros = true;
    std::array<tSection, kMost> _sections{};
    std::size_t _count = 0;
    std::span<const char> _rest;
};

}  // namespace lumivard::platform::data::Record
