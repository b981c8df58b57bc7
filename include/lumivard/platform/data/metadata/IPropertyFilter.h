#pragma once

#include "lumivard/platform/core/Export.h"
#include "lumivard/platform/data/Names.h"

namespace lumivard::platform::data::metadata {

class IProperty;

/// A cursor over the properties of a container (`IContainer::properties`) or of a table (`ITable::properties`), in the
/// order in which they were added; it passes over whatever is no property. It begins on the first one, so a walk is:
///
///     do {
///         if (auto property = filter->current()) use(*property);
///     } while (filter->next());
///
/// It does not hold the store's guard between calls, and does not protect what it walks over: the two operations that
/// make one say what it sees of changes in between. In a container, items that are destroyed during a walk give null or
/// are passed over. In a table the cursor counts places in the list as it is: when an item before it or under it is
/// destroyed the rest moves up, and the next step passes over an item that is still there. Who destroys items of a
/// table gathers their names first.
///
/// Only the library implements it. Threads: one at a time; every operation holds the guard while it looks.
class LVP_EXPORT IPropertyFilter {
public:
    virtual ~IPropertyFilter() = default;

    /// Moves to the next property. When there is none it gives false and stands behind the last one, where `current` is
    /// null and `prev` leads back. Costs a look at each item passed.
    virtual bool next() = 0;

    /// Moves to the property before. When there is none it gives false and stays where it was, unlike `next`.
    virtual bool prev() = 0;

    /// The property under the cursor, as a new object at each call; null behind the last one and where there is none.
    virtual SharedPtr<IProperty> current() = 0;
};

}  // namespace lumivard::platform::data::metadata
