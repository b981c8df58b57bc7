#pragma once

#include <array>
#include <deque>

#include "check/Case.h"

namespace lumivard::platform::data::Check {

/// Finds the tree in a store: gives each item that can be reached from the top one place.
///
/// Where an item is listed more than once, the place that it names itself, by its parent, goes before others, and where
/// several records name one list, the one that the listed items name; but what can only be reached against that gets
/// the place where it is reached. A place that no cursor gets to, whatever the item says, comes after all that cursors
/// get to, for the sake of what is below it, too. So everything that could be reached has a place, everything that
/// cursors got to has one that they get to, and whatever leads to it otherwise can be cut.
class Tree {
public:
    explicit Tree(Case& subject) : _case(subject), _census(subject.census) {}

    /// Fills the case's tree, and the owners of its items and of their lists. `top`: the node of the record at offset
    /// 0.
    void grow(unsigned int top);

private:
    static constexpr unsigned int kNone = tNode::kNone;

    /// Something that is only followed when nothing better is left: an item, or a whole list where `item` is none.
    struct tDeferred {
        unsigned int owner;
        unsigned int item;
    };

    /// When a deferred one is followed: all of a rank before the next.
    enum tRank {
        kSecond,  ///< against what the items say
        kThird,   ///< a shared list of which some items would be misplaced
        kLast,    ///< an item that is misplaced
        kRanks
    };

    bool step();
    void defer(tRank rank, tDeferred deferred) { _deferred[rank].push_back(deferred); }
    void place(unsigned int item, unsigned int owner);
    void expand(unsigned int item);
    void take(unsigned int owner, unsigned int list);
    void follow(const tDeferred& deferred);

    Case& _case;
    Census& _census;
    std::size_t _expanded = 0;  ///< how many items of the tree were followed
    std::array<std::deque<tDeferred>, kRanks> _deferred;
};

}  // namespace lumivard::platform::data::Check
