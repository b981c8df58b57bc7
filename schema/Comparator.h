#pragma once

#include <optional>
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
/// It keeps a stack of its own and goes forward only: the cost is the items of the two sets. In a damaged store a
/// schema's table may be found below itself or in several places: such a schema is matched by nothing. Nor is one with
/// so many items of one name that the same table would be looked into again and again.
class Comparator {
public:
    bool compare(IDataStore* store, unsigned int offset, IDataStore* schemaStore, unsigned int schemaOffset);

private:
    /// How many items of tables may be looked at that were looked into before.
    static constexpr std::size_t kMostAgain = 1u << 22;

    /// One record, as far as two of them are compared.
    struct Entity {
        Entity(IDataStore* store, unsigned int offset);
        bool operator==(const Entity& other) const;

        unsigned int offset;
        Record::tType kind;
        std::wstring tag;
        unsigned int valuetype = 0;  // of a primitive
        unsigned int children = IDataStore::BADOFF;
    };

    /// A set that is walked, and how far the walk has come.
    struct tWalk {
        tWalk(IDataStore* store, const Entity& set);
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

    /// Goes one level down. False where the schema has no table, or one that was met before.
    bool push(IDataStore* store, const Entity& instance, IDataStore* schemaStore, const Entity& schema);

    /// Moves a walk to the first item from its cursor on that equals another; none when it comes to the end.
    static std::optional<Entity> find(tWalk& walk, const Entity& wanted);

    /// The match of the item that the schema's walk stands on was found.
    void advance();

    std::vector<tPair> _pairs;
    std::unordered_set<unsigned int> _instances;
    std::unordered_set<unsigned int> _schemas;
    std::size_t _again = 0;
};

}  // namespace lumivard::platform::data::Schema
