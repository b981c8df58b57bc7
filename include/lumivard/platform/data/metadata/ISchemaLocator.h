#pragma once

#include "lumivard/platform/core/Export.h"
#include "lumivard/platform/data/Names.h"

namespace lumivard::platform::data::metadata {

class ISchema;

/// Finds schemas by their URI. A schema is a table in a store, and its URI is its name at the top of that store, or its
/// path from there. A locator searches a set of stores, and keeps what it has found: a URI goes on meaning the same
/// table, whatever is added or changed later.
///
/// It does not own the stores; they outlive it, those that `reset` dropped included. A table that it keeps as a schema
/// is in use, so that `destroy` refuses it.
///
/// Only the library implements it. Threads: `resolve` may run on several at once; `push`, `pop` and `reset` run while
/// nothing else does on this locator. No operation takes a store's guard, though a URI that is new to the locator is
/// looked for in the stores, and counts are written there then, by `pop`, and when the locator goes: who shares a store
/// of schemas with other threads holds its guard around these. A URI that was found before touches no store.
class LVP_EXPORT ISchemaLocator {
public:
    virtual ~ISchemaLocator() = default;

    /// The schema behind a URI, or behind several joined by ";", in that order, one that is named twice standing twice.
    /// A URI that no store knows is passed over in silence; null when none is left, or without a text. Where several
    /// stores know a URI that was not found before, any of them may be taken.
    ///
    /// A schema is not found inside itself: a member that leads back to a schema which is being laid out has no fields
    /// there. A layout whose fields and names would take more than 256 MB ends where they do. What a store throws
    /// passes through; the schemas that were found before that stay.
    ///
    /// Costs one look in a table for a URI that was found before, and otherwise a reading of the names at the top of
    /// each store and a walk over the schema.
    virtual SharedPtr<ISchema> resolve(WideString uri) = 0;

    /// Adds a store to the set; nothing happens if it is there already, and for null.
    virtual void push(IDataStore* store) = 0;

    /// Takes a store out of the set, whichever it is, and forgets the schemas that were found in it: the `ISchema`s
    /// that show one of them are dead. Schemas of other stores keep the fields that they took from there. False, with
    /// nothing forgotten, when the store is not in the set.
    virtual bool pop(IDataStore* store) = 0;

    /// Takes all stores out of the set, but keeps the schemas that were found: they still resolve.
    virtual void reset() = 0;

    /// Makes a locator over one store, or over none for null.
    static SharedPtr<ISchemaLocator> make(IDataStore* store);
};

}  // namespace lumivard::platform::data::metadata
