#pragma once

// Daily work in a few words: namespace lumivard::platform::data::easy. It is written over the public interfaces alone
// and adds no rule to theirs; whoever needs more than it offers uses them beside it.
//
//     get, set                  values by their path, as numbers, arrays and texts of C++
//     make, makeTable           containers and tables by their path, with those on the way
//     containers, properties    children in a range-for
//     visit                     a whole subtree, shown to lambdas
//     Scope                     the store's guard for several calls
//
// Paths are those of `structure::IContainer`, and begin where the first argument says: at the top of a store, or in a
// container (see `easy::Place`). They are followed through the store as it is now, whatever an open object knows.
//
// What comes back, and when:
//
// - `get` gives an empty `std::optional`, and its other form false, where there is nothing at the path, something other
//   than a primitive, a kind that is not the type's, a URI in the place of values, or another number of values.
// - `set` gives false where the value cannot go: no place for it, another kind or unit, a URI, a zero in a text.
// - `make` gives a null pointer, and `makeTable` false, where something else bears a name of the path.
// - `containers` and `properties` pass over what is gone, and `visit` gives false where there is nothing at the path.
// - What was refused has changed nothing.
// - Nothing here throws but what the store throws, `std::bad_alloc`, and what a lambda of the caller throws. Guards are
//   given back on the way.
//
// Threads: as the interfaces below. `get`, `set`, `visit`, and `make` and `makeTable` in a container, are one step each
// for the store's other threads; given a store, `set` finds and the last two make the container at its top in a step
// before. Several calls are one step under a `Scope`.
//
// Header-only: a program that includes it links nothing beyond the library.
#include "lumivard/platform/data/easy/Make.h"
#include "lumivard/platform/data/easy/Place.h"
#include "lumivard/platform/data/easy/Scope.h"
#include "lumivard/platform/data/easy/Values.h"
#include "lumivard/platform/data/easy/Visit.h"
#include "lumivard/platform/data/easy/Walk.h"
