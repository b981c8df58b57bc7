#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "lumivard/platform/data/Names.h"
#include "lumivard/platform/data/easy/Place.h"
#include "lumivard/platform/data/structure/IVisitor.h"

namespace lumivard::platform::data::easy {

/// What `visit` shows, by short names.
using tPrimitive = structure::IVisitor::tPrimitive;
using tTable = structure::IVisitor::tTable;
using tContainer = structure::IVisitor::tContainer;

/// Where an item stands that `visit` shows. Good during the call alone.
struct tAt {
    std::wstring_view path;  ///< from where the visit's own path begins, so that `get` takes it there
    unsigned int depth = 0;  ///< 0 for what lies at the visit's path, and one more in each set
};

namespace detail {

/// Several lambdas as one, of which the arguments choose.
template <class... Callbacks>
struct Overloaded : Callbacks... {
    using Callbacks::operator()...;
};
template <class... Callbacks>
Overloaded(Callbacks...) -> Overloaded<Callbacks...>;

template <class Callback, class Item>
constexpr bool kTakes =
    std::is_invocable_v<Callback&, const Item&, const tAt&> || std::is_invocable_v<Callback&, const Item&>;

template <class Callback>
constexpr bool kTakesSome = kTakes<Callback, tPrimitive> || kTakes<Callback, tTable> || kTakes<Callback, tContainer>;

/// Hands what a visitor is shown to callbacks, and keeps count of where it stands.
template <class Callbacks>
class Teller final : public structure::IVisitor {
public:
    Teller(std::wstring_view start, Callbacks& callbacks) : _start(start), _callbacks(callbacks) {}

    void primitive(const tPrimitive& item) override {
        const std::size_t above = step(item.name);
        tell(item);
        _path.resize(above);
    }
    bool table(const tTable& item) override { return enter(item); }
    bool container(const tContainer& item) override { return enter(item); }
    void leave() override {
        _path.resize(_above.back());
        _above.pop_back();
    }

private:
    template <class Item>
    bool enter(const Item& item) {
        const std::size_t above = step(item.name);
        const bool enters = tell(item);
        if (enters) {
            _above.push_back(above);
        } else {
            _path.resize(above);
        }
        return enters;
    }

    /// Makes the path that of an item in the set that was entered last; gives the length that it had.
    std::size_t step(std::wstring_view name) {
        const std::size_t above = _path.size();
        if (!_above.empty()) _path += L'.';
        _path += _above.empty() && !_start.empty() ? startOf(name) : name;
        return above;
    }

    /// The path of the item that is shown first: where the visit began, or one name less, since a path may go one name
    /// beyond a primitive.
    std::wstring_view startOf(std::wstring_view name) const {
        const auto dot = _start.rfind(L'.');
        return dot == _start.npos || _start.substr(dot + 1) == name ? _start : _start.substr(0, dot);
    }

    template <class Item>
    bool tell(const Item& item) {
        const tAt at{_path, static_cast<unsigned int>(_above.size())};
        if constexpr (std::is_invocable_v<Callbacks&, const Item&, const tAt&>) {
            return answer([&] { return _callbacks(item, at); });
        } else if constexpr (std::is_invocable_v<Callbacks&, const Item&>) {
            return answer([&] { return _callbacks(item); });
        } else {
            return true;
        }
    }

    template <class Call>
    static bool answer(Call call) {
        if constexpr (std::is_same_v<decltype(call()), bool>) {
            return call();
        } else {
            call();
            return true;
        }
    }

    std::wstring_view _start;
    Callbacks& _callbacks;
    std::wstring _path;
    std::vector<std::size_t> _above;  // of each set that is entered, the length of the path that it stands at
};

}  // namespace detail

/// Shows the item at a path, with all that it holds, to lambdas; without a path all that stands in the place. Each
/// lambda takes a primitive, a table or a container, and after it where that stands, if it wants to know; a kind of
/// item that no lambda takes is passed over, but not what it holds. A lambda that gives false for a set passes over
/// what that holds.
///
///     std::map<std::wstring, units::tUnit> units;
///     const auto note = [&](const easy::tPrimitive& item, const easy::tAt& at) {
///         units[std::wstring(at.path)] = item.units;
///     };
///     const auto noLinks = [](const easy::tContainer& item) { return item.type != structure::IContainer::kLink; };
///     easy::visit(*model, L"", note, noLinks);
///
/// Gives false where there is nothing at the path. What is shown, when, and at what cost is told at `IVisitor`: no
/// object is opened, the store's guard is held all the time, and lambdas may change the store meanwhile. Nothing here
/// goes deeper with the data, but the path, which grows with it. Exceptions of the lambdas pass through. The lambdas
/// are copied: what they keep, they keep by reference.
template <class... Callbacks>
bool visit(Place where, std::wstring_view path, Callbacks... callbacks) {
    static_assert((detail::kTakesSome<Callbacks> && ...),
                  "a lambda takes a tPrimitive, a tTable or a tContainer, and then a tAt or nothing");
    detail::Overloaded all{std::move(callbacks)...};
    detail::Teller<decltype(all)> teller(path, all);
    return detail::show(where, path, teller);
}

}  // namespace lumivard::platform::data::easy
