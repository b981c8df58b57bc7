#pragma once

#include <string>
#include <string_view>

#include "lumivard/platform/data/Names.h"
#include "lumivard/platform/data/structure/IContainer.h"
#include "lumivard/platform/data/structure/IVisitor.h"

namespace lumivard::platform::data::easy {

/// Where a path begins: at the top of a store, or in a container. It is what the functions here take first, and is made
/// by handing them the one or the other:
///
///     const auto atTheTop = easy::get<double>(store.get(), L"model.sizes.door");
///     const auto inside = easy::get<double>(*model, L"sizes.door");
///
/// A null pointer is a place that holds nothing, so that the result of `IContainerFrontEnd::find` or
/// `IContainer::container` can be handed on without a look at it.
///
/// It owns nothing and serves one call; the store or the container outlives it. No operation takes a guard.
class Place {
public:
    /// The top of a store.
    Place(IDataStore* store) : _store(store) {}  // NOLINT(google-explicit-constructor): made in calls

    /// A container, which is an object of this library.
    Place(structure::IContainer& container)  // NOLINT(google-explicit-constructor)
        : _store(container.store()), _container(&container) {}

    /// The same; nothing for null.
    Place(const SharedPtr<structure::IContainer>& container)  // NOLINT(google-explicit-constructor)
        : _store(container ? container->store() : nullptr), _container(container.get()) {}

    /// The store that it lies in; null where it holds nothing.
    IDataStore* store() const { return _store; }

    /// The container; null at the top of a store.
    structure::IContainer* container() const { return _container; }

private:
    IDataStore* _store = nullptr;
    structure::IContainer* _container = nullptr;
};

/// What clients do not call.
namespace detail {

/// Shows what lies at a path (see `IVisitor::visit`); false where nothing does.
inline bool show(Place where, std::wstring_view path, structure::IVisitor& visitor) {
    if (where.container()) return structure::IVisitor::visit(where.container(), path, visitor);
    return where.store() && structure::IVisitor::visit(where.store(), path, visitor);
}

/// A text as the interfaces take it.
inline WideString wide(std::wstring_view text) {
    return std::wstring(text).c_str();
}

/// Whether a text can be handed on whole: one with a zero inside would be cut there.
inline bool isWhole(std::wstring_view text) {
    return text.find(L'\0') == std::wstring_view::npos;
}

}  // namespace detail

}  // namespace lumivard::platform::data::easy
