#include "tools/diff/Model.h"

#include <algorithm>
#include <iterator>

#include "tools/base/Kinds.h"
#include "tools/items/Items.h"

namespace lvp::tool {

namespace metadata = lumivard::platform::data::metadata;

const char* nameOf(tAspect aspect) {
    static constexpr const char* kpNames[] = {"name",   "kind",    "flags",  "unit", "uri",     "value", "type",
                                              "locale", "schemas", "target", "text", "default", "order"};
    return kpNames[static_cast<std::size_t>(aspect)];
}

TextPool::tId Model::detail(tIndex index, tAspect aspect) const {
    TextPool::tId found = 0;
    eachDetail(index, [&](const tDetail& detail) {
        if (detail.aspect == aspect) found = detail.text;
    });
    return found;
}

IVisitor::tPrimitive Model::primitive(tIndex index) const {
    const tItem& item = _items[index];
    IVisitor::tPrimitive primitive;
    primitive.valuetype = static_cast<metadata::tValue>(item.type);
    primitive.stride = item.stride;
    primitive.dimension = item.dimension;
    primitive.store = &_store;
    primitive.offset = item.record;
    return primitive;
}

const char* Model::kind(tIndex index) const {
    const tItem& item = _items[index];
    switch (item.sort) {
        case tSort::kPrimitive:
            return nameOf(static_cast<metadata::tValue>(item.type));
        case tSort::kTable:
            return "table";
        case tSort::kContainer:
            return nameOf(static_cast<IContainer::tType>(item.type));
        default:
            return "root";
    }
}

std::string Model::name(tIndex index) const {
    return text(_items[index].name);
}

std::string Model::text(TextPool::tId id) const {
    return utf8(_pool[id]);
}

std::string Model::path(tIndex index) const {
    std::vector<tIndex> way;
    for (; index != 0; index = _items[index].parent) way.push_back(index);
    std::string path = _top;
    for (auto each = way.rbegin(); each != way.rend(); ++each) {
        if (each != way.rbegin() || !_top.empty()) path += '.';
        path += name(*each);
    }
    return path;
}

Model::tIndex Model::add(const tItem& item) {
    const auto index = static_cast<tIndex>(_items.size());
    _items.push_back(item);
    _items.back().end = index + 1;
    _items.back().details = static_cast<std::uint32_t>(_details.size());
    return index;
}

}  // namespace lvp::tool
