#pragma once

#include <algorithm>
#include <array>
#include <cstring>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tests/model/TreeObject.h"

namespace lumivard::platform::model {

/// Texts with their locales, in the order of their adding.
using tTexts = std::vector<std::pair<std::wstring, std::wstring>>;

/// The children that a set knows, by their names.
struct PlainItem;
using tIndex = std::map<std::wstring, PlainItem*>;

/// An item in plain memory, with what a store keeps of it.
struct PlainItem {
    enum tKind { kRoot, kPrimitive, kTable, kContainer };
    enum tFlag : unsigned char { kInherited = 2, kHidden = 4, kExternal = 8 };

    /// Processes that have the tree open, of which each counts its own objects alone.
    static constexpr std::size_t kProcesses = 4;

    tKind kind = kRoot;
    std::size_t number = 0;  ///< in the order of their making
    std::wstring name;
    PlainItem* parent = nullptr;
    bool dead = false;
    std::array<int, kProcesses> open{};  ///< how many objects stand over it
    unsigned char flags = 0;
    std::shared_ptr<tTexts> texts;
    std::wstring base;

    // Sets. A set that never had a child has no list.
    std::optional<std::vector<PlainItem*>> list;

    // Containers.
    IContainer::tType type = IContainer::kGroup;
    std::wstring target;

    // Tables: pairs of a unit and a kind.
    std::optional<std::vector<unsigned int>> defaults;

    // Primitives. With `kExternal`, the value is a text.
    metadata::tValue valuetype = metadata::kBinary;
    units::tUnit unit = units::kNoUnit;
    std::string value;
    std::wstring valuelocale;

    bool isSet() const { return kind != kPrimitive; }

    /// The children with the first of each name.
    tIndex index() const {
        tIndex found;
        if (list) {
            for (PlainItem* child : *list) found.emplace(child->name, child);
        }
        return found;
    }

    /// The same in the order of their adding.
    std::vector<PlainItem*> named() const {
        std::vector<PlainItem*> found;
        const tIndex names = index();
        if (!list) return found;
        std::copy_if(list->begin(), list->end(), std::back_inserter(found),
                     [&](const PlainItem* child) { return names.at(child->name) == child; });
        return found;
    }

    PlainItem* child(const std::wstring& wanted) const {
        if (!list) return nullptr;
        const auto found =
            std::find_if(list->begin(), list->end(), [&](const PlainItem* each) { return each->name == wanted; });
        return found == list->end() ? nullptr : *found;
    }
};

/// The bytes of a text with its zero, and the text that bytes begin with.
inline std::string bytesOf(const std::wstring& text) {
    return {reinterpret_cast<const char*>(text.c_str()), (text.size() + 1) * sizeof(wchar_t)};
}
inline std::wstring textOf(const std::string& bytes) {
    std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
    if (!text.empty()) std::memcpy(text.data(), bytes.data(), text.size() * sizeof(wchar_t));
    return text.substr(0, text.find(L'\0'));
}

}  // namespace lumivard::platform::model
