#include "tools/schemas/Conformance.h"

#include <vector>

#include "lumivard/platform/data.h"
#include "lumivard/platform/stores.h"
#include "tools/base/Kinds.h"
#include "tools/base/Text.h"

namespace lvp::tool {

using namespace lumivard::platform::data;

namespace {

/// A property of a set: its name, and the kind by which it is compared.
struct tItem {
    std::wstring name;
    bool isTable;
    metadata::tValue kind;  ///< of a value
    SharedPtr<metadata::IProperty> property;

    bool operator==(const tItem& other) const {
        return name == other.name && isTable == other.isTable && kind == other.kind;
    }
    std::string kindName() const { return isTable ? "table" : nameOf(kind); }
    std::string isWhat() const { return isTable ? "a table" : "of the kind " + kindName(); }
};

std::vector<tItem> itemsOf(const SharedPtr<metadata::IPropertyFilter>& cursor) {
    std::vector<tItem> items;
    for (bool more = true; more; more = cursor->next()) {
        const auto property = cursor->current();
        if (!property) continue;
        auto* primitive = metadata::IPrimitive::to(property.get());
        items.push_back({static_cast<const wchar_t*>(property->tag()), primitive == nullptr,
                         primitive ? primitive->valuetype() : metadata::tValue{}, property});
    }
    return items;
}

std::vector<tItem> itemsOf(const tItem& table) {
    return itemsOf(metadata::ITable::to(table.property.get())->properties());
}

std::string text(const std::wstring& name) {
    return printable(WideString(name.c_str()).string());
}

/// A set under test and the schema's table that it is compared with.
struct tPair {
    std::wstring name;  ///< of the table; empty at the top
    std::vector<tItem> items;
    std::vector<tItem> wanted;
    bool isContainer;  ///< in which the search goes on behind a match, in a table on it
    std::size_t cursor = 0;
    std::size_t next = 0;  ///< of `wanted`
};

/// What is wrong with the item that the innermost pair wants next and did not find from its cursor on.
std::string difference(const std::vector<tPair>& pairs) {
    std::string path;
    for (const tPair& pair : pairs) path += pair.name.empty() ? "" : text(pair.name) + ".";
    const auto quoted = [&](const tItem& item) { return "'" + path + text(item.name) + "'"; };

    const tPair& pair = pairs.back();
    const tItem& wanted = pair.wanted[pair.next];
    const tItem* other = nullptr;
    for (const tItem& item : pair.items) {
        if (item.name != wanted.name) continue;
        if (item == wanted && pair.next != 0) {
            return quoted(wanted) + " stands before " + quoted(pair.wanted[pair.next - 1]) +
                   ", and in the schema behind it";
        }
        other = &item;
    }
    if (!other) return quoted(wanted) + " (" + wanted.kindName() + ") is missing";
    return quoted(wanted) + " is " + other->isWhat() + ", and in the schema " + wanted.isWhat();
}

std::string compare(std::vector<tItem> items, bool isContainer, metadata::ISchema* schema) {
    // A table that inherits from a schema holds its items, which nothing else shows one by one.
    const auto store = lumivard::platform::stores::memory();
    const auto group = structure::IContainerFrontEnd::toplevel(store.get(), L"group");
    const auto table = group->create(L"schema", schema);

    std::vector<tPair> pairs;
    pairs.push_back({L"", std::move(items), itemsOf(table->properties()), isContainer});
    while (!pairs.empty()) {
        tPair& pair = pairs.back();
        if (pair.next == pair.wanted.size()) {
            pairs.pop_back();
            continue;
        }
        const tItem& wanted = pair.wanted[pair.next];
        while (pair.cursor < pair.items.size() && !(pair.items[pair.cursor] == wanted)) ++pair.cursor;
        if (pair.cursor == pair.items.size()) return difference(pairs);
        const tItem& found = pair.items[pair.cursor];
        if (pair.isContainer) ++pair.cursor;
        ++pair.next;
        if (!wanted.isTable) continue;
        pairs.push_back({wanted.name, itemsOf(found), itemsOf(wanted), false});
    }
    return {};
}

}  // namespace

std::string firstDifference(structure::IContainer& container, metadata::ISchema* schema) {
    return compare(itemsOf(container.properties()), true, schema);
}

std::string firstDifference(metadata::ITable& table, metadata::ISchema* schema) {
    return compare(itemsOf(table.properties()), false, schema);
}

}  // namespace lvp::tool
