#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "check/Findings.h"
#include "check/Node.h"

namespace lumivard::platform::data::Check {

using core::storage::datastore::IDataStore;

/// All records that a store holds, as far as they can be found: ordered by offset, and found by it.
class Census {
public:
    static constexpr unsigned int kNone = tNode::kNone;

    explicit Census(Findings& findings) : _findings(findings) {}

    /// Up to this extent all offsets below it are asked for.
    static constexpr unsigned long long kSearched = 1ull << 26;

    /// Looks for records below the extent. `whole`: however large that is; otherwise, where it is too large, only the
    /// top is found.
    void search(IDataStore& store, bool whole);

    /// Whether all offsets below the extent were asked for.
    bool searched() const { return _searched; }

    /// Takes an offset that a reference names; true when a record lies there that was not known. Nodes that are found
    /// so stand at the end, until `settle` is called.
    bool meet(IDataStore& store, unsigned int offset);

    /// Takes note that the store did not give a record out, and of what it said.
    void refused(tNode& node, const std::string& words);

    /// Puts all nodes in order. From here on `find` may be called.
    void settle();

    /// The number of the node of an offset, or of a node of a kind; `kNone` where there is none.
    unsigned int find(unsigned int offset) const;
    unsigned int find(unsigned int offset, Record::tType kind) const;

    tNode& operator[](unsigned int number) { return _nodes[number]; }
    const tNode& operator[](unsigned int number) const { return _nodes[number]; }
    unsigned int size() const { return static_cast<unsigned int>(_nodes.size()); }

private:
    void add(IDataStore& store, unsigned int offset);

    Findings& _findings;
    std::vector<tNode> _nodes;
    std::vector<unsigned int> _dense;       ///< numbers by offset, where offsets lie close together
    std::unordered_set<unsigned int> _met;  ///< offsets of records that only references named
    unsigned long long _end = 0;            ///< where searching ended
    bool _searched = false;
};

}  // namespace lumivard::platform::data::Check
