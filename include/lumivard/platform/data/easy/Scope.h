#pragma once

#include <memory>

#include "lumivard/platform/data/Names.h"
#include "lumivard/platform/data/easy/Place.h"

namespace lumivard::platform::data::easy {

/// Holds a store's guard from its making to its end, also where an exception ends it: what is done meanwhile is one
/// step for the other threads that use the store, and costs each call less.
///
///     {
///         const easy::Scope scope(*model);
///         const int visits = easy::get<int>(*model, L"visits").value_or(0);
///         easy::set(*model, L"visits", visits + 1);
///     }
///
/// The functions that need the front end take its mutex before the guard: `IContainerFrontEnd::toplevel` and `find`,
/// and `set`, `make` and `makeTable` of a store. Where several threads use the store, call them before the scope
/// begins, or hand a container to those that take one; `get` and `visit` may be given the store within it.
///
/// It changes nothing in the store. A store without a guard, and a null pointer, give a scope that holds nothing. What
/// `IDataStore::lock` throws comes out of the constructor. Threads: it ends on the thread that it began on.
class Scope {
public:
    /// Takes the guard, and waits for it.
    explicit Scope(Place where) : _guard(where.store() ? where.store()->lock() : nullptr) {}
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

private:
    std::unique_ptr<IDataStore::ILock> _guard;
};

}  // namespace lumivard::platform::data::easy
