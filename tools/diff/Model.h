#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "lumivard/platform/data/structure/IVisitor.h"
#include "tools/diff/TextPool.h"

namespace lvp::tool {

using lumivard::platform::core::storage::datastore::IDataStore;
using lumivard::platform::data::structure::IVisitor;
using lumivard::platform::data::units::tUnit;

/// What is compared of an item beside its values.
enum class tAspect : unsigned char {
    kName,  ///< of the root
    kKind,
    kFlags,
    kUnit,
    kUri,  ///< in place of a value
    kValue,
    kType,    ///< of a struct
    kLocale,  ///< of a value
    kSchemas,
    kTarget,   ///< of a link
    kText,     ///< in one language
    kDefault,  ///< of a table, in one group of units
    kOrder     ///< of what a set holds
};

/// The name of an aspect, as JSON has it: "unit".
const char* nameOf(tAspect aspect);

/// One side of a comparison: all of its items, but not their values, which stay in the store until they are asked for.
/// Items stand as in the store, each set before what it holds, so that the items below one come right behind it. The
/// first is the root, or the item that is compared.
class Model {
public:
    using tIndex = std::uint32_t;
    static constexpr tIndex kNone = 0xFFFFFFFFu;

    enum class tSort : unsigned char { kRoot, kPrimitive, kTable, kContainer };

    struct tItem {
        TextPool::tId name = 0;
        tIndex parent = 0;
        tIndex end = 0;               ///< behind the last item below it
        std::uint32_t record = 0;     ///< where a primitive stands in the store
        std::uint32_t dimension = 0;  ///< of a primitive
        std::uint32_t details = 0;    ///< its first one, if it has any
        tUnit unit = {};
        std::uint32_t type = 0;  ///< the kind of a primitive's values, or of a container
        tSort sort = tSort::kRoot;
        unsigned char flags = 0;
        unsigned char stride = 0;
    };

    /// A text that says something of an item. The key is the locale of a text and the group of a default, else 0.
    struct tDetail {
        tIndex item = 0;
        tAspect aspect = {};
        std::uint32_t key = 0;
        TextPool::tId text = 0;
    };

    Model(const TextPool& pool, IDataStore& store, std::string top)
        : _pool(pool), _store(store), _top(std::move(top)) {}

    std::size_t size() const { return _items.size(); }
    const tItem& operator[](tIndex index) const { return _items[index]; }

    /// Calls `work` with each detail of an item, in their order.
    template <class Work>
    void eachDetail(tIndex index, Work work) const {
        for (std::size_t i = _items[index].details; const tDetail* detail = detailAt(i, index); ++i) work(*detail);
    }

    /// A detail by its place; null where none of the item is.
    const tDetail* detailAt(std::size_t place, tIndex index) const {
        return place < _details.size() && _details[place].item == index ? &_details[place] : nullptr;
    }

    /// The text of an aspect that has one; 0, the empty one, when there is none.
    TextPool::tId detail(tIndex index, tAspect aspect) const;

    /// The primitive as a visitor is shown it, as far as its values need that.
    IVisitor::tPrimitive primitive(tIndex index) const;

    /// The kind of an item, as documents name it.
    const char* kind(tIndex index) const;

    /// How many items a set holds, those of the sets in it included.
    std::size_t below(tIndex index) const { return _items[index].end - index - 1; }

    std::string name(tIndex index) const;
    std::string text(TextPool::tId id) const;

    /// The names from the top of the store down, joined by dots; empty for the root. Costs the length of the path.
    std::string path(tIndex index) const;

    // For the reading.
    tIndex add(const tItem& item);
    void add(const tDetail& detail) { _details.push_back(detail); }
    void close(tIndex index) { _items[index].end = static_cast<tIndex>(_items.size()); }
    void nameRoot(TextPool::tId name) { _items[0].name = name; }

private:
    const TextPool& _pool;
    IDataStore& _store;
    std::string _top;  ///< the path of the first item
    std::vector<tItem> _items;
    std::vector<tDetail> _details;
};

}  // namespace lvp::tool
