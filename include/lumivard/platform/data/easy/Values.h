#pragma once

#include <cstddef>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "lumivard/platform/data/Names.h"
#include "lumivard/platform/data/easy/Forms.h"
#include "lumivard/platform/data/easy/Make.h"
#include "lumivard/platform/data/easy/Place.h"
#include "lumivard/platform/data/easy/Scope.h"
#include "lumivard/platform/data/metadata/IPrimitive.h"
#include "lumivard/platform/data/metadata/IProperty.h"
#include "lumivard/platform/data/structure/IContainer.h"
#include "lumivard/platform/data/structure/IContainerFrontEnd.h"
#include "lumivard/platform/data/units/tUnit.h"

namespace lumivard::platform::data::easy {

/// The value at a path, as a `T`; nothing where it is not exactly that.
///
///     const std::optional<double> length = easy::get<double>(*model, L"length");
///     const auto pressures = easy::get<std::vector<float>>(*model, L"pressures");
///     const auto at = easy::get<std::array<double, 3>>(*model, L"place.at");
///     const std::string title = easy::get<std::string>(*model, L"title").value_or("untitled");
///
/// The kind has to be the type's own. Nothing is converted, neither numbers nor units:
///
/// | `T`, alone or in a vector, array or span | kinds |
/// |---|---|
/// | `bool` | `kBool`; any byte but 0 is true |
/// | integers, but for types of characters | `kInt8` to `kUInt64`, of the same size and sign |
/// | `float`, `double` | `kScalar`, `kDouble` |
/// | several `double` | also `kVec2` to `kMtx4x4`, as their components one behind the other |
/// | `std::byte` | `kBinary`, and for several also `kStruct` |
/// | `std::wstring`, `std::string` in UTF-8, alone or in a vector | `kUUID`, `kString`, `kTime`, `kURI`, `kVersion` |
///
/// How many values there are matters: one number and one text are given where there is exactly one, a `std::array`
/// where there are as many as it has, a `std::vector` always, without elements where there are none. Texts are those of
/// `IStringArray::to`. In UTF-8 a character that is none becomes U+FFFD.
///
/// Nothing is given where there is nothing at the path, a container or a table, a URI in the place of values, or no
/// path. A link is not followed.
///
/// No object is opened: this is `IVisitor::visit`, and costs a search in each set on the path and what is read.
template <detail::Gettable T>
std::optional<T> get(Place where, std::wstring_view path) {
    std::optional<T> value;
    detail::look(where, path, detail::Form<T>::holds, [&](const auto& item) { value = detail::Form<T>::read(item); });
    return value;
}

/// Copies values to where they are wanted: as many as `into` has elements, from the value at `start` on. All of them or
/// none: false, with `into` untouched, where the array ends before, where `into` has no elements, or where the form
/// above gives nothing because of the path or the kind.
///
///     double window[3] = {};
///     const bool read = easy::get(*model, L"samples", std::span(window), 1000);
///
/// Costs what is read, or a read of the whole value from a store that gives out whole records only.
template <class T, std::size_t N>
requires detail::Number<T>
bool get(Place where, std::wstring_view path, std::span<T, N> into, unsigned int start = 0) {
    bool done = false;
    if (into.size() > std::numeric_limits<unsigned int>::max()) return false;
    const auto count = static_cast<unsigned int>(into.size());
    detail::look(where, path, detail::holdsMany<T>,
                 [&](const auto& item) { done = detail::copy(item, into.data(), start, count); });
    return done;
}

/// What is asked of the primitive that `set` gives a value to: a unit, a kind, or both. One that is made gets them; one
/// that is there already has to have them. Without a unit any will do, and a new primitive has none; without a kind any
/// that holds the type will do, and a new primitive has the type's own.
struct tAs {
    /// Nothing beyond the value.
    tAs() = default;

    /// A unit.
    tAs(units::tUnit unit) : units(unit) {}  // NOLINT(google-explicit-constructor): made in calls
    /// A kind.
    tAs(metadata::tValue value) : valuetype(value) {}  // NOLINT(google-explicit-constructor): made in calls
    /// Both.
    tAs(units::tUnit unit, metadata::tValue value) : units(unit), valuetype(value) {}

    units::tUnit units = units::kNoUnit;  ///< none asks for none
    metadata::tValue valuetype = {};      ///< 0 asks for none
};

namespace detail {

/// Makes elements the whole value of a primitive.
inline bool replace(metadata::IPrimitive& primitive, const void* data, unsigned int count) {
    if (count == 0) return primitive.reset(0);
    if (primitive.dimension() > count && !primitive.reset(count)) return false;  // no array shrinks by `set`
    return primitive.set(data, 0, count);
}

/// Elements on their way into a store.
struct tElements {
    const void* data;
    std::size_t count;
    tHolds holds;
    metadata::tValue own;  ///< the kind of the primitive that is made where none is asked for
};

/// Gives a primitive that is there a value.
inline bool putInto(metadata::IPrimitive& there, const tElements& elements, const tAs& as) {
    if (!elements.holds(there.valuetype())) return false;
    if (as.valuetype != metadata::tValue{} && there.valuetype() != as.valuetype) return false;
    if (as.units != units::kNoUnit && there.units() != as.units) return false;
    return replace(there, elements.data, static_cast<unsigned int>(elements.count));
}

/// What `set` does in a container. For what is open when something is made see `makeIn`.
inline bool putIn(structure::IContainer& from, std::wstring_view path, const tElements& elements, const tAs& as) {
    const Scope scope(from);
    if (const auto now = from.container({})) {
        const auto property = now->property(wide(path));
        const auto owner = property ? now->property(wide(atLast(path).head)) : SharedPtr<metadata::IProperty>();
        if (metadata::IPrimitive::to(owner.get())) return false;  // a path may go one name beyond a primitive
        if (property) {
            auto* const there = metadata::IPrimitive::to(property.get());
            return there && putInto(*there, elements, as);
        }
    }
    if (!canBeMade(path)) return false;
    const auto [before, name] = atLast(path);
    const auto kind = as.valuetype != metadata::tValue{} ? as.valuetype : elements.own;
    const auto made = Owner(from, before).create(name, kind, as.units);
    return made && replace(*made, elements.data, static_cast<unsigned int>(elements.count));
}

inline bool put(Place where, std::wstring_view path, const tElements& elements, const tAs& as) {
    if (!isWhole(path) || elements.count > std::numeric_limits<unsigned int>::max()) return false;
    if (as.valuetype != metadata::tValue{} && !elements.holds(as.valuetype)) return false;
    if (where.container()) return putIn(*where.container(), path, elements, as);
    const auto [name, rest] = atFirst(path);
    if (!where.store() || rest.empty()) return false;
    const auto top = structure::IContainerFrontEnd::find(where.store(), wide(name));
    return top && putIn(*top, rest, elements, as);
}

/// Puts texts that are packed.
inline bool putTexts(Place where, std::wstring_view path, const std::wstring& packed, const tAs& as) {
    return put(where, path, {packed.data(), packed.size(), holdsTexts, metadata::kString}, as);
}

}  // namespace detail

/// Makes a number the value at a path: all of it, however long the value was that it replaces. A primitive that is not
/// there is made; the container or table that it stands in has to be there (see `make`).
///
///     easy::set(*model, L"length", 2.5);
///     easy::set(*model, L"place.height", 3.2, units::kMeter);  // in a table: see `makeTable`
///     easy::set(store.get(), L"model.count", 3);               // an int: kInt32
///
/// Which kinds a type fits is told at `get`. What the primitive has to be beyond that, `as` says.
///
/// False, with nothing changed: where the path leads to a container or a table, to a primitive of another kind or unit,
/// or to one that has a URI in place of values; where the container or table before the last name is not there; where a
/// container is to make a primitive with a unit, which only tables do; at the top of a store, where there are
/// containers only; and for what `IContainer::create` and `IPrimitive::set` refuse. (A value that is longer than a
/// record holds, some 4 GB, leaves the primitive that was made for it.)
///
/// The path is followed through the store as it is now. What is made directly in a container that is given is known to
/// that object, unless it still knows another item of that name, which is gone. A hidden property is shown, as by
/// `IPrimitive::set`. What a store throws may come between the steps of this: then a primitive that was made has no
/// values, and one that was longer has as many zeros as were to be written.
///
/// Costs the opening of the container and of each on the way, and of the primitive. Who sets many values keeps the
/// `IPrimitive`.
template <detail::Number T>
bool set(Place where, std::wstring_view path, T value, tAs as = {}) {
    return detail::put(where, path, {&value, 1, detail::holdsOne<T>, detail::kindOf<T>()}, as);
}

/// The same for several numbers: a vector, an array, a span. Without elements it empties the value; a property that was
/// hidden stays hidden then.
///
///     easy::set(*model, L"pressures", std::vector{1.5F, 2.5F});
///     const std::array at{0.0, 0.0, 1.5};
///     easy::set(*model, L"place.at", at, {units::kMeter, metadata::kVec3});
template <detail::Numbers T>
bool set(Place where, std::wstring_view path, const T& values, tAs as = {}) {
    using tElement = std::remove_cvref_t<decltype(*std::data(values))>;
    return detail::put(where, path,
                       {std::data(values), std::size(values), detail::holdsMany<tElement>, detail::kindOf<tElement>()},
                       as);
}

/// The same for the one vector whose elements lie otherwise. Exactly that type: no braces become it.
template <class T>
requires std::is_same_v<T, std::vector<bool>>
bool set(Place where, std::wstring_view path, const T& values, tAs as = {}) {
    const std::vector<unsigned char> bytes(values.begin(), values.end());
    return detail::put(where, path, {bytes.data(), bytes.size(), detail::holdsMany<bool>, metadata::kBool}, as);
}

/// The same for a text, wide or in UTF-8, of which what is no UTF-8 becomes U+FFFD. False as well, with nothing
/// changed, for a text with a zero inside.
///
///     easy::set(*model, L"title", L"Carport");
///     easy::set(*model, L"made", "2024-05-01", metadata::kTime);
inline bool set(Place where, std::wstring_view path, std::wstring_view text, tAs as = {}) {
    std::wstring packed;
    return detail::pack(packed, text) && detail::putTexts(where, path, packed, as);
}
inline bool set(Place where, std::wstring_view path, std::string_view text, tAs as = {}) {
    std::wstring packed;
    return detail::pack(packed, text) && detail::putTexts(where, path, packed, as);
}

/// The same for several texts.
///
///     easy::set(*model, L"authors", std::vector<std::string>{"Ada", "Zoë"});
template <detail::Text T>
bool set(Place where, std::wstring_view path, const std::vector<T>& texts, tAs as = {}) {
    std::wstring packed;
    for (const T& text : texts) {
        if (!detail::pack(packed, text)) return false;
    }
    return detail::putTexts(where, path, packed, as);
}

}  // namespace lumivard::platform::data::easy
