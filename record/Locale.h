#pragma once

#include <string_view>

#include "record/Base.h"

namespace lumivard::platform::data::Record {

/// The localized names of one entity.
///
///     0       1               5           8
///     +-------+---------------+-----------+---------------------------------------+
///     | type  |    length     |     0     | locale, 0, name, 0, locale, 0, ...    |
///     +-------+---------------+-----------+---------------------------------------+
///       u8          u32                     payload: wide texts in pairs, each ended by a zero
///
/// It is no entity: it has no parent and no count. A record of another kind reads as an empty payload.
class Locale : public Base {
public:
    static constexpr unsigned int kLength = 1;
    static constexpr unsigned int kPayload = 8;

    /// The form of the record.
    static constexpr unsigned int kLengths[] = {kLength};
    static constexpr tSections kSections{kPayload, kLengths, {}};

    /// Makes a new empty record and writes it to the store.
    explicit Locale(IDataStore* store);
    Locale(IDataStore* store, unsigned int offset) : Base(store, offset) {}
    Locale(IDataStore* store, unsigned int offset, tInPlace place) : Base(store, offset, place) {}

    /// The payload as wide characters, terminators included.
    std::wstring payload() const;

    /// Calls `visit(locale, name)` for each pair in a payload; a text without its zero is none.
    template <class Visit>
    static void each(std::wstring_view payload, Visit visit);

    /// Replaces the payload by `length` bytes from `data` and writes the record. False, with nothing done, when the
    /// record would outgrow 32 bits.
    bool payload(std::uint64_t length, const char* data);
};

template <class Visit>
void Locale::each(std::wstring_view payload, Visit visit) {
    const auto next = [&payload](std::wstring_view& text) {
        const std::size_t end = payload.find(L'\0');
        if (end == payload.npos) return false;
        text = payload.substr(0, end);
        payload.remove_prefix(end + 1);
        return true;
    };
    std::wstring_view locale;
    std::wstring_view name;
    while (next(locale) && next(name)) visit(locale, name);
}

}  // namespace lumivard::platform::data::Record
