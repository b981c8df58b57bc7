#pragma once

#include <memory>

#include "metadata/Set.h"

namespace lumivard::platform::data {

/// Puts a new item under a set. Null, with the new item destroyed, when the set does not take it: its name is taken.
std::unique_ptr<Metadata::Item> add(Metadata::Set& parent, std::unique_ptr<Metadata::Item> child);

/// Puts a new item of class `Kind`, a primitive or a table, under a set, or finds the one that is there under its name:
/// that is shown and returned, and the new one destroyed. Null when what is there is of another kind, or not
/// equivalent.
///
/// So a document fills in the items that a set has inherited.
template <class Kind>
std::unique_ptr<Metadata::Item> addOrMerge(Metadata::Set& parent, std::unique_ptr<Metadata::Item> child);

}  // namespace lumivard::platform::data
