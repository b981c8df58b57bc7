#include "tools/view/PageItems.h"

#include "tools/base/Units.h"
#include "tools/items/Items.h"

namespace lvp::tool {

using namespace data;

namespace {

constexpr unsigned int kRootRecord = 0;

class Gatherer : public structure::IVisitor {
public:
    explicit Gatherer(tPageItems& items) : _items(items) {}

    void root(const tRoot& item) override {
        static constexpr tPageItems::tKind kKinds[] = {tPageItems::kRoot, tPageItems::kTable, tPageItems::kNode,
                                                       tPageItems::kGroup, tPageItems::kLink};
        const std::size_t index = add(kKinds[item.kind], item.name, 0, kRootRecord);
        note(_items.base, index, item.base);
        if (item.kind == tRoot::kLink) note(_items.target, index, item.target);
        ++_level;
    }

    void primitive(const tPrimitive& item) override {
        const auto kind = static_cast<std::int64_t>(item.valuetype);
        const std::size_t index = add(kind, item.name, item.flags, item.offset);
        if (item.units != units::kNoUnit) _items.unit[index] = _items.pool.place(nameOf(item.units));
        note(_items.uri, index, item.uri);
        note(_items.schema, index, item.schema);
        note(_items.locale, index, item.valuelocale);
    }

    bool table(const tTable& item) override {
        note(_items.base, add(tPageItems::kTable, item.name, item.flags, item.offset), item.base);
        ++_level;
        return true;
    }

    bool container(const tContainer& item) override {
        const std::size_t index = add(kindOf(item.type), item.name, item.flags, item.offset);
        note(_items.base, index, item.base);
        if (item.type == structure::IContainer::kLink) note(_items.target, index, item.target);
        ++_level;
        return true;
    }

    void leave() override { --_level; }

    void text(std::wstring_view locale, std::wstring_view text) override {
        _items.names.push_back({_items.size() - 1, _items.pool.place(locale), std::wstring(text)});
    }

    void unitDefault(units::tUnit unit, metadata::tValue kind) override {
        _items.defaults.push_back({_items.size() - 1, _items.pool.place(nameOf(unit)), kind});
    }

private:
    static std::int64_t kindOf(structure::IContainer::tType type) {
        switch (type) {
            case structure::IContainer::kNode:
                return tPageItems::kNode;
            case structure::IContainer::kGroup:
                return tPageItems::kGroup;
            case structure::IContainer::kLink:
                return tPageItems::kLink;
        }
        return tPageItems::kOther;
    }

    static std::wstring nameOf(units::tUnit unit) { return static_cast<const wchar_t*>(wide(unitName(unit))); }

    std::size_t add(std::int64_t kind, std::wstring_view name, unsigned char flags, unsigned int record) {
        _items.byRecord.emplace(record, _items.size());
        _items.level.push_back(_level);
        _items.kind.push_back(kind);
        _items.name.push_back(_items.pool.place(name));
        _items.flags.push_back(flags);
        _items.unit.push_back(0);
        return _items.size() - 1;
    }

    void note(std::vector<tPageItems::tNote>& notes, std::size_t item, std::wstring_view text) {
        if (!text.empty()) notes.push_back({item, _items.pool.place(text)});
    }

    tPageItems& _items;
    std::uint32_t _level = 0;
};

}  // namespace

std::size_t PageTexts::place(std::wstring_view text) {
    const auto [entry, isNew] = _places.try_emplace(std::wstring(text), _texts.size());
    if (isNew) _texts.push_back(&entry->first);
    return entry->second;
}

tPageItems gatherItems(IDataStore& store) {
    tPageItems items;
    items.version = store.version();
    Gatherer gatherer(items);
    structure::IVisitor::visit(&store, L"", gatherer);
    return items;
}

}  // namespace lvp::tool
