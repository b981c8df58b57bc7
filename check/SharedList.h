#pragma once

#include "check/Node.h"

namespace lumivard::platform::data::Check {

/// What is known of a list that more than one record names as its children.
struct tSharedList {
    /// The node of the one among them that the listed items name as their parent; the first that is so named.
    unsigned int claimed = tNode::kNone;

    bool containers = false;  ///< containers stand in it
    bool primitives = false;

    /// Whether cursors would not get to some of its items if they were an owner's.
    bool misplacesIn(const tNode& owner) const {
        return (owner.kind == Record::kTable && containers) || (owner.kind == Record::kRoot && primitives);
    }

    /// Whether cursors get from `other` to items that they do not get to from `owner`. That is so below a root alone: a
    /// table has a list only where they get to no container that names it, since such a one would have gone before it.
    bool needs(const tNode& other, const tNode& owner) const {
        return other.kind != owner.kind && owner.kind == Record::kRoot && primitives;
    }
};

}  // namespace lumivard::platform::data::Check
