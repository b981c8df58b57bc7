#include "tests/fault/calls/Picture.h"

#include <algorithm>
#include <set>
#include <sstream>

namespace lumivard::platform::test_support::fault {

using core::io::MemoryWriter;
using data::format::xml::IXMLFrontEnd;

namespace {

constexpr const wchar_t* kPlaceNames[] = {L"main:", L"other:", L"schemas:", L"empty:"};

/// The names at the top of the stores, those that operations make among them.
constexpr const wchar_t* kTops[] = {L"top", L"goal", L"last", L"there", L"schemas", L"default", L"robot", L"arm"};

template <class Item>
std::wstring texts(Item& item) {
    std::wstring all = L" texts";
    for (unsigned int i = 0; i < item.locales(); ++i) {
        const WideString locale = item.locale(i);
        all += L' ' + text(locale) + L'=' + text(item.localize(locale));
    }
    return all;
}

std::wstring describe(IPrimitive& primitive) {
    std::wstring all = numeral(primitive.valuetype()) + numeral(static_cast<unsigned int>(primitive.units())) + L' ' +
                       text(primitive.schema()) + L' ' + text(primitive.uri()) + L' ' + text(primitive.valuelocale()) +
                       L" of" + numeral(primitive.dimension()) + numeral(primitive.bytes());
    std::string bytes(std::size_t{primitive.dimension()} * primitive.stride(), '\0');
    primitive.get(bytes.data(), 0, primitive.dimension());
    for (const char byte : bytes) all += numeral(static_cast<unsigned char>(byte));
    return all;
}

std::wstring describe(ITable& table) {
    std::wstring all = L" base " + text(table.base());
    for (unsigned int i = 0; i < table.groups(); ++i) {
        const units::tUnitGroup group = table.group(i);
        all += numeral(static_cast<unsigned int>(group)) + numeral(static_cast<unsigned int>(table.units(group))) +
               numeral(table.valuetype(group));
    }
    return all;
}

/// One walk over the containers and tables of one store.
class Walk {
public:
    Walk(Picture& picture, std::wstring prefix) : _picture(picture), _prefix(std::move(prefix)) {}

    void over(IDataStore* store) {
        for (const wchar_t* name : kTops) {
            auto top = IContainerFrontEnd::find(store, name);
            if (top) show(_prefix + name, top->container(kNoName));
        }
        while (!_waiting.empty()) {
            const tWaiting next = std::move(_waiting.back());
            _waiting.pop_back();
            if (next.container) enter(next.path, *next.container);
            if (next.table) enter(next.path, asTable(next.table));
        }
    }

private:
    struct tWaiting {
        std::wstring path;
        SharedPtr<IContainer> container;
        SharedPtr<IProperty> table;
    };

    void show(const std::wstring& path, SharedPtr<IContainer> container) {
        _picture.items.emplace_back(path, test_support::fault::describe(*container));
        _waiting.push_back({path, std::move(container), {}});
    }

    void show(const std::wstring& path, SharedPtr<IProperty> property) {
        _picture.items.emplace_back(path, test_support::fault::describe(*property));
        if (ITable::to(property.get())) _waiting.push_back({path, {}, std::move(property)});
    }

    void enter(const std::wstring& path, IContainer& container) {
        std::set<std::wstring> names;
        const auto containers = container.containers();
        const auto properties = container.properties();
        each(path, *containers, names, [&](const wchar_t* name) { return container.has(name); });
        each(path, *properties, names, [&](const wchar_t* name) { return container.has(name); });
        if (container.empty() != names.empty()) complain(path, L"knows what is not there");
    }

    void enter(const std::wstring& path, ITable& table) {
        std::set<std::wstring> names;
        const auto items = table.properties();
        each(path, *items, names, [&](const wchar_t* name) { return bool(table.lookup(name)); });
        if (table.items() != names.size()) complain(path, L"counts what is not there");
        for (unsigned int i = 0; i < table.items(); ++i) {
            if (!table.at(i)) complain(path, L"has a gap");
        }
    }

    /// Shows all that a cursor gives; each has a name of its own, and `known` says that it is found by it.
    template <class Cursor, class Known>
    void each(const std::wstring& path, Cursor& cursor, std::set<std::wstring>& names, Known known) {
        if (!cursor.current()) return;
        do {
            const auto item = cursor.current();
            if (!item) return complain(path, L"has a gap under a cursor");
            const std::wstring name = text(item->tag());
            if (!names.insert(name).second) complain(path, L"has two of the name " + name);
            if (!known(name.c_str())) complain(path, L"does not find " + name);
            show(path + L'.' + name, item);
        } while (cursor.next());
    }

    void complain(const std::wstring& where, const std::wstring& what) {
        _picture.complaints.push_back(where + L' ' + what);
    }

    Picture& _picture;
    const std::wstring _prefix;
    std::vector<tWaiting> _waiting;
};

bool isAt(const std::wstring& path, const std::wstring& place) {
    if (place.back() == L'=') return path + L'=' == place;
    return path.compare(0, place.size(), place) == 0 &&
           (path.size() == place.size() || path[place.size()] == L'.' || place.back() == L':');
}

}  // namespace

Picture pictureOf(const tStores& stores) {
    Picture picture;
    for (unsigned int place = 0; place < kPlaces; ++place) {
        IDataStore* store = stores[place];
        picture.items.emplace_back(std::wstring(kPlaceNames[place]) + L"version", numeral(store->version()));
        if (store->extent() == 0) continue;
        Walk(picture, kPlaceNames[place]).over(store);
    }
    return picture;
}

std::string documentOf(IDataStore* store) {
    MemoryWriter document;
    if (store->extent() != 0) IXMLFrontEnd::serialize(store, &document, nullptr, 0);
    return document.bytes();
}

std::vector<tNamed> untouched(const std::vector<tNamed>& items, const wchar_t* touched) {
    std::vector<tNamed> left = items;
    std::wistringstream places(touched ? touched : L"");
    for (std::wstring place; std::getline(places, place, L';');) {
        std::erase_if(left, [&](const tNamed& item) { return isAt(item.first, place); });
    }
    return left;
}

std::wstring describe(IContainer& container) {
    std::wstring all = L"container" + numeral(container.type()) + L" base " + text(container.base());
    ILink* const link = ILink::to(&container);
    if (link) all += L" to " + text(link->target());
    return all + texts(container);
}

std::wstring describe(IProperty& property) {
    std::wstring all = L"property" + numeral(property.flags()) + texts(property);
    IPrimitive* const primitive = IPrimitive::to(&property);
    return all + (primitive ? describe(*primitive) : describe(*ITable::to(&property)));
}

std::wstring path(const IDataStore* store, const tStores& stores, const std::wstring& path) {
    const auto place = std::find(stores.begin(), stores.end(), store) - stores.begin();
    return kPlaceNames[place] + path;
}

std::string difference(const std::vector<tNamed>& wanted, const std::vector<tNamed>& found) {
    if (wanted == found) return {};
    const auto [a, b] = std::mismatch(wanted.begin(), wanted.end(), found.begin(), found.end());
    const auto show = [](auto place, auto end) {
        return place == end ? std::string("nothing") : narrow(place->first + L" {" + place->second + L"}");
    };
    return "wanted " + show(a, wanted.end()) + ", found " + show(b, found.end());
}

std::string narrow(const std::wstring& text) {
    return WideString(text.c_str()).string();
}

}  // namespace lumivard::platform::test_support::fault
