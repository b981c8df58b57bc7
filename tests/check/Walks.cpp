#include "tests/check/Walks.h"

#include <deque>

#include "lumivard/platform/core.h"
#include "lumivard/platform/data.h"
#include "record/Container.h"
#include "record/Entity.h"
#include "record/Locale.h"
#include "record/Offsets.h"
#include "record/Primitive.h"
#include "record/Table.h"
#include "tests/support/StoredRecords.h"

namespace lumivard::platform::test_support::walks {

namespace {

using namespace data;
using metadata::IPrimitive;
using metadata::IProperty;
using metadata::ITable;
using structure::IContainer;
using structure::IContainerFrontEnd;

constexpr std::string_view kItems("\x01\x02\x04", 3);

unsigned char kindOf(IDataStore& store, unsigned int offset) {
    unsigned char kind = 0;
    store.read(offset, &kind, 1);
    return store.size(offset) == 0 ? 0xFF : kind;
}

using tTold = decltype(tItem::told);

/// A text, or numbers, as bytes.
template <class Elements>
std::string asBytes(const Elements& elements) {
    return {reinterpret_cast<const char*>(elements.data()), elements.size() * sizeof(*elements.data())};
}

void tellContainer(const Record::Container& record, tTold& told) {
    told.emplace_back("type", std::to_string(record.kind()));
    told.emplace_back("base", asBytes(record.text(Record::Container::kBase)));
    told.emplace_back("target", asBytes(record.text(Record::Container::kInfo)));
}

void tellTable(const Record::Table& record, tTold& told) {
    told.emplace_back("base", asBytes(record.text(Record::Table::kBase)));
    told.emplace_back("defaults", asBytes(Record::Offsets(record.store(), record.defaults()).get()));
}

/// The number of elements follows from the value and its kind; in place of the value there may be a URI.
void tellPrimitive(const Record::Primitive& record, tTold& told) {
    told.emplace_back("unit", std::to_string(record.units()));
    told.emplace_back("kind of value", std::to_string(record.valuetype()));
    told.emplace_back("locale of the value", asBytes(record.text(Record::Primitive::kValueLocale)));
    told.emplace_back("schema", asBytes(record.text(Record::Primitive::kBase)));
    told.emplace_back("value", asBytes(record.section(Record::Primitive::kValue)));
}

tItem itemAt(IDataStore& store, unsigned int offset) {
    const Record::Entity entity(&store, offset);
    tItem item{entity.name(), {}};
    item.told.emplace_back("kind", std::to_string(entity.type()));
    item.told.emplace_back("flags", std::to_string(entity.flags()));
    item.told.emplace_back("localized names", asBytes(Record::Locale(&store, entity.locale()).payload()));
    switch (entity.type()) {
        case Record::kContainer:
            tellContainer(Record::Container(&store, offset), item.told);
            break;
        case Record::kTable:
            tellTable(Record::Table(&store, offset), item.told);
            break;
        case Record::kPrimitive:
            tellPrimitive(Record::Primitive(&store, offset), item.told);
            break;
        default:
            break;
    }
    return item;
}

/// The walk by the public interfaces.
class Walk {
public:
    Walk(IDataStore& store, std::set<std::wstring>& lost, std::size_t most) : _store(store), _lost(lost), _most(most) {}

    std::size_t run() {
        for (const unsigned int offset : stored::children(&_store, 0)) {
            if (kindOf(_store, offset) != 4) continue;
            const std::wstring name = Record::Entity(&_store, offset).name();
            if (auto container = IContainerFrontEnd::find(&_store, name.c_str())) _containers.push_back(container);
        }
        while (!_containers.empty() && _count < _most) {
            const auto next = _containers.front();
            _containers.pop_front();
            container(*next);
        }
        return _count;
    }

private:
    void container(IContainer& item) {
        ++_count;
        const auto path = item.path();
        if (!IContainerFrontEnd::find(&_store, path)) _lost.insert(static_cast<const wchar_t*>(path));
        item.base();
        item.type();
        texts(item);
        if (auto* link = structure::ILink::to(&item)) link->target();
        const auto containers = item.containers();
        for (bool more = static_cast<bool>(containers->current()); more; more = containers->next()) {
            const auto below = containers->current();
            if (!below) continue;
            if (!item.container(below->tag())) _lost.insert(static_cast<const wchar_t*>(below->path()));
            _containers.push_back(below);
        }
        const auto properties = item.properties();
        for (bool more = static_cast<bool>(properties->current()); more; more = properties->next()) {
            const auto below = properties->current();
            if (!below) continue;
            if (!item.property(below->tag())) _lost.insert(static_cast<const wchar_t*>(below->path()));
            property(below);
        }
    }

    void property(const SharedPtr<IProperty>& first) {
        std::vector<SharedPtr<IProperty>> waiting{first};
        while (!waiting.empty() && _count < _most) {
            const auto item = waiting.back();
            waiting.pop_back();
            ++_count;
            item->flags();
            texts(*item);
            if (auto* value = IPrimitive::to(item.get())) values(*value);
            auto* table = ITable::to(item.get());
            if (!table) continue;
            for (unsigned int i = 0; i < table->groups(); ++i) table->valuetype(table->group(i));
            const auto properties = table->properties();
            for (bool more = static_cast<bool>(properties->current()); more; more = properties->next()) {
                const auto below = properties->current();
                if (!below) continue;
                if (!table->lookup(below->tag())) _lost.insert(static_cast<const wchar_t*>(below->path()));
                waiting.push_back(below);
            }
        }
    }

    static void values(IPrimitive& value) {
        value.units();
        value.uri();
        value.schema();
        value.valuelocale();
        std::vector<char> bytes(value.bytes() + 1);
        if (value.dimension() != 0) value.get(bytes.data(), 0, value.dimension());
    }

    template <class Item>
    static void texts(Item& item) {
        for (unsigned int i = 0; i < item.locales(); ++i) item.localize(item.locale(i));
    }

    IDataStore& _store;
    std::set<std::wstring>& _lost;
    std::size_t _most;
    std::size_t _count = 0;
    std::deque<SharedPtr<IContainer>> _containers;
};

}  // namespace

std::vector<tItem> inOrder(IDataStore& store) {
    std::vector<tItem> items;
    std::vector<unsigned int> waiting{0};
    while (!waiting.empty()) {
        const unsigned int offset = waiting.back();
        waiting.pop_back();
        items.push_back(itemAt(store, offset));
        if (kindOf(store, offset) == Record::kPrimitive) continue;
        const std::vector<unsigned int> children = stored::children(&store, offset);
        items.back().told.emplace_back("number of children", std::to_string(children.size()));
        waiting.insert(waiting.end(), children.rbegin(), children.rend());
    }
    return items;
}

std::map<unsigned int, tItem> reachable(IDataStore& store) {
    std::map<unsigned int, tItem> items;
    std::set<unsigned int> lists;
    std::vector<unsigned int> waiting{0};
    while (!waiting.empty()) {
        const unsigned int offset = waiting.back();
        waiting.pop_back();
        const unsigned char kind = kindOf(store, offset);
        if (kind != 0 && kind != 2 && kind != 4) continue;
        const unsigned int list = stored::word(&store, offset, stored::kChildren);
        if (list == IDataStore::BADOFF || !lists.insert(list).second || kindOf(store, list) != 3) continue;
        for (const unsigned int entry : stored::children(&store, offset)) {
            if (entry == 0 || entry == IDataStore::BADOFF ||
                kItems.find(static_cast<char>(kindOf(store, entry))) == kItems.npos) {
                continue;
            }
            if (items.emplace(entry, itemAt(store, entry)).second) waiting.push_back(entry);
        }
    }
    return items;
}

std::set<unsigned int> byCursors(IDataStore& store) {
    std::set<unsigned int> items;
    std::vector<unsigned int> waiting{0};
    while (!waiting.empty()) {
        const unsigned int owner = waiting.back();
        waiting.pop_back();
        const unsigned char kind = kindOf(store, owner);
        if (kind != 0 && kind != 2 && kind != 4) continue;
        const unsigned int list = stored::word(&store, owner, stored::kChildren);
        if (list == IDataStore::BADOFF || kindOf(store, list) != 3) continue;
        const unsigned char passedOver = kind == 0 ? 1 : kind == 2 ? 4 : 0;
        for (const unsigned int entry : stored::children(&store, owner)) {
            if (entry == 0 || entry == IDataStore::BADOFF) continue;
            const unsigned char found = kindOf(store, entry);
            if (found == passedOver || kItems.find(static_cast<char>(found)) == kItems.npos) continue;
            if (items.insert(entry).second) waiting.push_back(entry);
        }
    }
    return items;
}

std::size_t askEverything(IDataStore& store, std::set<std::wstring>& lost, std::size_t most) {
    return Walk(store, lost, most).run();
}

}  // namespace lumivard::platform::test_support::walks
