#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "lumivard/platform/data/structure/IVisitor.h"

namespace lvp::tool {

namespace data = lumivard::platform::data;

/// Texts, each kept once and named by its place. The empty text has place 0.
class PageTexts {
public:
    PageTexts() { place(L""); }
    PageTexts(PageTexts&&) = default;

    std::size_t place(std::wstring_view text);
    const std::vector<const std::wstring*>& texts() const { return _texts; }

private:
    std::unordered_map<std::wstring, std::size_t> _places;
    std::vector<const std::wstring*> _texts;  ///< the keys, which stay where they are
};

/// What the page is told of the items of a store, but for their values: numbers from 0, the root, in the order in which
/// a visitor is shown them. Texts are places in the pool. Some 100 bytes for an item.
struct tPageItems {
    /// What an item is when it is no value: a kind below 0. Values have the number of their `tValue`.
    enum tKind : std::int64_t { kRoot = -1, kNode = -2, kGroup = -3, kLink = -4, kTable = -5, kOther = -6 };

    /// Something that few items have.
    struct tNote {
        std::size_t item;
        std::size_t text;
    };
    /// A localized name, which is in the pool of nobody.
    struct tName {
        std::size_t item;
        std::size_t locale;
        std::wstring text;
    };
    struct tDefault {
        std::size_t item;
        std::size_t unit;
        data::metadata::tValue kind;
    };

    PageTexts pool;
    unsigned int version = 0;

    std::vector<std::uint32_t> level;
    std::vector<std::int64_t> kind;
    std::vector<std::size_t> name;
    std::vector<unsigned char> flags;
    std::vector<std::size_t> unit;

    std::vector<tNote> base;
    std::vector<tNote> target;
    std::vector<tNote> uri;
    std::vector<tNote> schema;
    std::vector<tNote> locale;
    std::vector<tName> names;
    std::vector<tDefault> defaults;

    /// The items by their records.
    std::unordered_map<unsigned int, std::size_t> byRecord;

    std::size_t size() const { return level.size(); }
    const std::wstring& nameOf(std::size_t item) const { return *pool.texts()[name[item]]; }
    bool isSet(std::size_t item) const { return kind[item] < 0; }
};

/// Gathers them from a store.
tPageItems gatherItems(data::IDataStore& store);

}  // namespace lvp::tool
