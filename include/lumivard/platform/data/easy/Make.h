#pragma once

#include <string_view>
#include <utility>

#include "lumivard/platform/data/Names.h"
#include "lumivard/platform/data/easy/Place.h"
#include "lumivard/platform/data/easy/Scope.h"
#include "lumivard/platform/data/metadata/IPrimitive.h"
#include "lumivard/platform/data/metadata/IProperty.h"
#include "lumivard/platform/data/metadata/ITable.h"
#include "lumivard/platform/data/structure/IContainer.h"
#include "lumivard/platform/data/structure/IContainerFrontEnd.h"

namespace lumivard::platform::data::easy {

namespace detail {

/// A path up to one of its dots, and what follows that; without one, `head` or `tail` is the whole, as it is asked for.
struct tSplit {
    std::wstring_view head;
    std::wstring_view tail;
};

/// The first name, and the path behind it.
inline tSplit atFirst(std::wstring_view path) {
    const auto dot = path.find(L'.');
    if (dot == path.npos) return {path, {}};
    return {path.substr(0, dot), path.substr(dot + 1)};
}

/// The path before the last name, and that name.
inline tSplit atLast(std::wstring_view path) {
    const auto dot = path.rfind(L'.');
    if (dot == path.npos) return {{}, path};
    return {path.substr(0, dot), path.substr(dot + 1)};
}

/// Whether each name of a path has characters: no item is made under another path.
inline bool canBeMade(std::wstring_view path) {
    if (!isWhole(path) || path.empty() || path.front() == L'.' || path.back() == L'.') return false;
    return path.find(L"..") == path.npos;
}

/// Makes something in a container, through the object that is given, which then knows it. That may know an item that is
/// gone by now, and keep its name: then through an object that knows what is there.
template <class Create>
auto createIn(structure::IContainer& given, Create create) {
    auto made = create(given);
    if (made) return made;
    const auto now = given.container({});
    return now ? create(*now) : made;
}

/// The container or table at a path in a container, without a path that container itself: where items are made.
class Owner {
public:
    Owner(structure::IContainer& from, std::wstring_view path) {
        if (path.empty()) {
            _container = &from;
            return;
        }
        const auto now = from.container({});
        if (!now) return;
        _held = now->container(wide(path));
        _container = _held.get();
        if (!_container) _table = now->property(wide(path));
    }

    /// Null, with nothing made, where a container is asked for a primitive with a unit: it makes none.
    SharedPtr<metadata::IPrimitive> create(std::wstring_view name, metadata::tValue kind, units::tUnit unit) {
        if (auto* const table = metadata::ITable::to(_table.get())) return table->create(wide(name), kind, unit);
        if (!_container || unit != units::kNoUnit) return {};
        return createIn(*_container, [&](auto& container) { return container.create(wide(name), kind); });
    }

    bool createTable(std::wstring_view name) {
        if (auto* const table = metadata::ITable::to(_table.get())) return bool(table->create(wide(name), nullptr));
        if (!_container) return false;
        return bool(createIn(*_container, [&](auto& container) { return container.create(wide(name), nullptr); }));
    }

private:
    structure::IContainer* _container = nullptr;
    SharedPtr<structure::IContainer> _held;
    SharedPtr<metadata::IProperty> _table;
};

/// What `make` does in a container. What is made directly in that, is made through the object that was given, which
/// then knows it; and while no other one is open over the same container, since two would have to copy all names each
/// time.
inline SharedPtr<structure::IContainer> makeIn(structure::IContainer& from, std::wstring_view path,
                                               structure::IContainer::tType type) {
    const Scope scope(from);
    auto now = from.container({});
    auto* owner = &from;
    for (tSplit left = atFirst(path); now; left = atFirst(left.tail)) {
        const WideString name = wide(left.head);
        auto next = now->container(name);
        if (!next && !now->has(name)) {
            if (owner == &from) now.reset();
            next = createIn(*owner, [&](auto& container) { return container.create(type, name, nullptr); });
        }
        if (left.tail.empty()) return next;
        now = std::move(next);
        owner = now.get();
    }
    return {};
}

/// What `makeTable` does in a container.
inline bool makeTableIn(structure::IContainer& from, std::wstring_view path) {
    const Scope scope(from);
    const auto [before, name] = atLast(path);
    bool ready = before.empty();
    {
        const auto now = from.container({});
        if (!now) return false;
        if (const auto there = now->property(wide(path))) return metadata::ITable::to(there.get()) != nullptr;
        ready = ready || now->has(wide(before));
    }
    if (!ready && !makeIn(from, before, structure::IContainer::kGroup)) return false;
    return Owner(from, before).createTable(name);
}

}  // namespace detail

/// The container at a path, with those on the way; the ones that are not there are made, of the type `type`. As a new
/// object.
///
///     const auto door = easy::make(*model, L"house.north.door");
///
/// At the top of a store, where the first name lies for a path from there, groups are made, as by
/// `IContainerFrontEnd::toplevel`, which also sets up an empty store.
///
/// Null, with nothing made, where a name of the path has no characters, or something other than a container bears it.
/// What a store throws may come when a part was made; that stays, and the next try goes on from there. Costs the
/// opening of each container on the way.
inline SharedPtr<structure::IContainer> make(Place where, std::wstring_view path,
                                             structure::IContainer::tType type = structure::IContainer::kGroup) {
    if (!detail::canBeMade(path)) return {};
    if (where.container()) return detail::makeIn(*where.container(), path, type);
    if (!where.store()) return {};
    const auto [name, rest] = detail::atFirst(path);
    const auto top = structure::IContainerFrontEnd::toplevel(where.store(), detail::wide(name));
    if (!top) return {};
    return rest.empty() ? top->container({}) : detail::makeIn(*top, rest, type);
}

/// Makes a table at a path, in the container or table that the path leads to before its last name. Containers on the
/// way that are not there are made as by `make`. True when there is a table at the path now, also one that was there
/// before.
///
///     easy::makeTable(*model, L"house.sizes");
///     easy::set(*model, L"house.sizes.door", 2.1, units::kMeter);
///
/// In tables primitives are made with a unit, which containers do not offer.
///
/// False where a name of the path has no characters or something else bears it, and for a path of one name at the top
/// of a store, where there are containers only; then no table is made. For the rest as `make`.
inline bool makeTable(Place where, std::wstring_view path) {
    if (!detail::canBeMade(path)) return false;
    if (where.container()) return detail::makeTableIn(*where.container(), path);
    const auto [name, rest] = detail::atFirst(path);
    if (!where.store() || rest.empty()) return false;
    const auto top = structure::IContainerFrontEnd::toplevel(where.store(), detail::wide(name));
    return top && detail::makeTableIn(*top, rest);
}

}  // namespace lumivard::platform::data::easy
