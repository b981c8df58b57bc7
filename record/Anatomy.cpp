#include "record/Anatomy.h"

#include <algorithm>

#include "record/Container.h"
#include "record/Locale.h"
#include "record/Offsets.h"
#include "record/Primitive.h"
#include "record/Root.h"
#include "record/Table.h"

namespace lumivard::platform::data::Record {

const tSections* Anatomy::form(tType kind) {
    switch (kind) {
        case kRoot:
            return &Root::kSections;
        case kPrimitive:
            return &Primitive::kSections;
        case kTable:
            return &Table::kSections;
        case kOffsets:
            return &Offsets::kSections;
        case kContainer:
            return &Container::kSections;
        case kLocale:
            return &Locale::kSections;
    }
    return nullptr;
}

bool Anatomy::fits(const Base& record) {
    const tSections* const form = Anatomy::form(record.type());
    return form && record.size() >= form->header;
}

Anatomy::Anatomy(const Base& record) : _form(form(record.type())), _fits(fits(record)) {
    if (!_fits) return;
    const std::span<const char> all(record.bytes(), record.size());
    for (const tRange& range : _form->zeros) {
        const auto bytes = all.subspan(range.begin, range.end - range.begin);
        if (std::any_of(bytes.begin(), bytes.end(), [](char byte) { return byte != 0; })) _zeros = false;
    }
    std::size_t end = _form->header;
    record.eachSection(*_form, [&](const tSection& section) {
        _sections.at(_count++) = section;
        end += section.bytes.size();
    });
    _rest = all.subspan(end);
    if (record.type() == kOffsets) _rest = _rest.last(_rest.size() % Offsets::kEntry);
}

}  // namespace lumivard::platform::data::Record
