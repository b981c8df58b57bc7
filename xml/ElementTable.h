#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "xml/Element.h"

namespace lumivard::platform::data {

/// Finds elements by name: a look-up takes one comparison of names, as a rule. Nothing is owned.
class ElementTable {
public:
    /// Adds an element under its own name, unless the name has one.
    void add(Element& element) {
        tEntry& entry = place(element.name());
        if (!entry.element) entry = {element.name(), &element};
    }

    /// Null for a name that has none.
    Element* find(std::string_view name) const { return const_cast<ElementTable*>(this)->place(name).element; }

private:
    struct tEntry {
        std::string_view name;
        Element* element = nullptr;
    };

    /// A power of 2, some four times as many as there are elements.
    static constexpr std::size_t kPlaces = 128;

    static std::size_t hash(std::string_view name) {
        if (name.empty()) return 0;
        const auto byte = [&](std::size_t index) { return static_cast<std::size_t>(name[index]) & 0xFF; };
        return name.size() * 17 + byte(0) * 5 + byte(name.size() / 2) * 11 + byte(name.size() - 1);
    }

    /// Where a name stands, or the free place where it would.
    tEntry& place(std::string_view name) {
        std::size_t index = hash(name) % kPlaces;
        while (_entries[index].element && _entries[index].name != name) index = (index + 1) % kPlaces;
        return _entries[index];
    }

    std::array<tEntry, kPlaces> _entries;
};

}  // namespace lumivard::platform::data
