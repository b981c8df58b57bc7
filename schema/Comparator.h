#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"
#include "record/tType.h"

namespace lumivard::platform::data::Schema {

using core::storage::datastore::IDataStore;

/// Decides whether a table or container has everything that a schema's table has, in that order; it may hold anything
/// else besides. Primitives match by name and value kind, tables by name and content; containers match nothing, so
/// below the top only tables are looked into. Units, values, dimensions, flags and locales do not matter.
///
/// The first table of the right name decides. After a match in a container the search goes on behind the matched item,
/// in a table on that item again.
///
/// It keeps a stack of its own and looks at each item once. In a damaged store a schema's table may stand below itself:
/// such a schema is matched by nothing.
class Comparator {
public:
    bool compare(IDataStore* store, unsigned int offset, IDataStore* schemaStore, unsigned int schemaOffset);

private:
    /// One record, as far as two of them are compared.
    struct Entity {
        Entity(IDataStore* store, unsigned int offset);
        bool operator==(const Entity& other) const;

        IDataStore* store;
        unsigned int offset;
        Record::tType kind;
        std::wstring tag;
        unsigned int valuetype = 0;  // of a primitive
        unsigned int children = IDataStore::BADOFF;
    };

    /// A set that is walked, and how far the walk has come.
    struct tWalk {
        explicit tWalk(const Entity& set);
        bool done() const { return cursor == items.size(); }
        Entity current() const { return Entity(store, items[cursor]); }

        IDataStore* store;
        Record::tType kind;
        std::vector<unsigned int> items;
        std::size_t cursor = 0;
    };

    /// A set under test, and the schema's table that it is compared with.
    struct tPair {
        tWalk instance;
        tWalk schema;
    };

    /// Goes one level down. False where the schema has no table, or has it above already.
    bool push(const Entity& instance, const Entity& schema);

    /// The match of the item that the schema's walk stands on was found.
    void advance();

    std::vector<tPair> _pairs;
    std::unordered_set<unsigned int> _seen;
};

}  // namespace lumivard::platform::data::Schema
