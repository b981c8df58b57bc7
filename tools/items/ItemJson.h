#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "lumivard/platform/data/structure/IVisitor.h"
#include "tools/base/JsonWriter.h"

namespace lvp::tool {

/// Writes items as JSON objects, each with all that it holds:
///
///     {"name": "height", "kind": "double", "unit": "Meter", "values": [2.5],
///      "texts": [{"locale": "de-de", "text": "Höhe"}]}
///     {"name": "door", "kind": "table", "schemas": "Sizes", "items": [...]}
///
/// What an item does not have is left out, "values" and "items" aside. "flags" tells which of "optional", "inherited"
/// and "hidden" it has. Where the value lies elsewhere there is "uri" in place of "values". A table has "defaults" of
/// units and kinds, a link "to".
class ItemJson : public lumivard::platform::data::structure::IVisitor {
public:
    /// How far it goes: so many levels, and to hidden items only if they shall be shown, or are what was asked for by
    /// its path. Of a set on the last level there are neither "items" nor "texts".
    struct tExtent {
        std::size_t levels = SIZE_MAX;
        bool hidden = false;
        bool byPath = true;
    };

    ItemJson(JsonWriter& json, tExtent extent) : _json(json), _extent(extent) {}

    void primitive(const tPrimitive& item) override;
    bool table(const tTable& item) override;
    bool container(const tContainer& item) override;
    void text(std::wstring_view locale, std::wstring_view text) override;
    void unitDefault(lumivard::platform::data::units::tUnit units,
                     lumivard::platform::data::metadata::tValue valuetype) override;
    void leave() override;

    /// Completes what was written last. Comes behind the visit, and wherever else the item that came last is complete.
    void finish();

private:
    /// What of the item that came last is open: nothing, or the object of a primitive or set.
    enum tOpen : unsigned char { kNothing, kPrimitive, kSet };
    /// A member of it that is an array, and that goes on.
    enum tList : unsigned char { kNone, kTexts, kDefaults };

    bool passesOver(unsigned char flags) const;
    void begin(std::wstring_view name, const char* kind, unsigned char flags);
    bool enter();
    void list(tList list, const char* name);

    JsonWriter& _json;
    tExtent _extent;
    std::size_t _levels = 0;  ///< that were entered
    tOpen _open = kNothing;
    tList _list = kNone;
};

/// Prints an object of the store, the path, and the items that a visit of the path shows.
void printItems(lumivard::platform::core::storage::datastore::IDataStore& store, const std::string& storeName,
                const std::string& path, ItemJson::tExtent extent);

}  // namespace lvp::tool
