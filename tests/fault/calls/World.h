#pragma once

#include <array>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "lumivard/platform/data/check/Repair.h"
#include "tests/fault/calls/Ground.h"

namespace lumivard::platform::test_support::fault {

using data::metadata::ISchemaLocator;
using data::metadata::IStringArray;
using tStores = std::array<IDataStore*, kPlaces>;

/// A text with what it is the text of.
using tNamed = std::pair<std::wstring, std::wstring>;

/// The objects of a client who has four stores open: one or more of each kind of interface. They are opened before an
/// operation is tried, and used on after it has failed.
struct World {
    explicit World(const tStores& stores);

    IDataStore* main() const { return stores[kMain]; }

    /// What each object says of itself, by the path that it was opened at.
    std::vector<tNamed> answers();

    /// Drops all objects.
    void close();

    tStores stores;

    SharedPtr<IContainer> top, group, first, node, link, goal, inner, last, there;
    SharedPtr<IProperty> number, words, pose, away, table, made;
    SharedPtr<IContainerFilter> containers;
    SharedPtr<IPropertyFilter> properties, items;
    SharedPtr<ISchemaLocator> locator;  ///< which has found the schema before
    SharedPtr<ISchema> schema;
    SharedPtr<ISchemaLocator> fresh;  ///< which has found nothing yet
    std::unique_ptr<IStringArray> strings;
    data::check::Repair repair;  ///< of a store, where an operation needs one
};

}  // namespace lumivard::platform::test_support::fault
