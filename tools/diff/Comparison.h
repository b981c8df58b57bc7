#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "tools/diff/Difference.h"
#include "tools/diff/Model.h"
#include "tools/diff/ValueComparison.h"

namespace lvp::tool {

/// How two sides are compared.
struct tRules {
    double tolerance = 0;
    bool order = false;       ///< the order of items matters
    bool hidden = false;      ///< so does whether an item is a hidden default
    bool wholeStores = true;  ///< so does the name of the first item, which is the root
};

/// Compares two models, in two steps: `compare` finds out which items differ, at the cost of a look at all values, and
/// `tell` says in what they do, at the cost of those that differ.
///
/// Items are the same where they have the same place and name, and are both values, tables or containers; of several
/// such, the first on one side goes with the first on the other. What a place has lost and another one has won, with
/// the same name and all of its content, has moved. Neither step costs more than a sort of the names in each set where
/// the order differs; both keep some bytes for each item, and go down to any depth.
class Comparison {
public:
    /// Is called for each item that is gone through, and may throw.
    using tStep = std::function<void()>;

    Comparison(const Model& a, const Model& b, const TextPool& pool, const tRules& rules, tStep step);

    void compare();

    /// Whether nothing differs; after `compare`.
    bool equal() const { return _equal; }

    /// Tells all differences: by places in A as its items stand there, then what only B has. Of long values about
    /// `most` are told, of A and of B.
    tCounts tell(IReport& report, std::uint64_t most);

private:
    using tIndex = Model::tIndex;
    using tTold = std::function<void(tDifference&)>;

    // Which items go together
    void match();
    void matchChildren(tIndex a, tIndex b);
    void matchRest(std::vector<tIndex> left, std::vector<tIndex> right);
    void pair(tIndex a, tIndex b);
    void findMoved();
    std::vector<std::pair<std::uint64_t, tIndex>> hashes(const Model& model, const std::vector<tIndex>& items);
    std::uint64_t ownHash(const Model& model, tIndex index);

    // Whether and in what two items differ. Without somebody who is told, the first difference ends the search.
    bool differ(tIndex a, tIndex b, const tTold* told);
    bool valuesDiffer(tIndex a, tIndex b, const tTold* told);
    bool detailsDiffer(tIndex a, tIndex b, const tTold* told);
    bool orderDiffers(tIndex a, const tTold* told);
    bool sameDetails(tIndex a, tIndex b) const;
    void tellValues(tIndex a, tIndex b, const tTold& told);
    unsigned char flags(unsigned char bits) const;

    tDifference about(const Model& model, tIndex index) const;
    tDifference whole(tWhat what, const Model& model, tIndex index) const;

    const Model& _a;
    const Model& _b;
    const TextPool& _pool;
    tRules _rules;
    tStep _step;
    ValueComparison _values;
    std::vector<tIndex> _match;  ///< by items of A: the one of B, also of what has moved
    std::vector<bool> _taken;    ///< by items of B: it has one in A
    std::vector<bool> _left;     ///< by items of A: it has moved
    std::vector<bool> _come;     ///< by items of B
    std::vector<bool> _differ;   ///< by items of A: it is not as the one of B
    std::uint64_t _most = 0;
    bool _equal = true;
};

}  // namespace lvp::tool
