#pragma once

#include <cstddef>
#include <iterator>
#include <utility>

#include "lumivard/platform/data/Names.h"
#include "lumivard/platform/data/metadata/IPropertyFilter.h"
#include "lumivard/platform/data/metadata/ITable.h"
#include "lumivard/platform/data/structure/IContainer.h"
#include "lumivard/platform/data/structure/IContainerFilter.h"

namespace lumivard::platform::data::easy {

/// What a cursor gives, for a range-for: a new object for each item that is still there when its turn comes; but in a
/// table one is passed over for each item that has had its turn and is destroyed. It is walked once, and holds the
/// cursor, whose header says what is seen of changes in between. What a store throws comes out of the step. Threads:
/// one at a time.
template <class Filter>
class Range {
public:
    /// Stands on an item and holds it open, or at the end and holds nothing.
    class Iterator {
    public:
        using value_type = decltype(std::declval<Filter&>().current());  ///< a `SharedPtr` to the item
        using difference_type = std::ptrdiff_t;                          ///< which no two have

        /// Stands on what the cursor stands on, or on the first behind that which is still there.
        explicit Iterator(Filter* filter) : _filter(filter) { settle(); }

        /// The item, which is not null before the end.
        const value_type& operator*() const { return _item; }

        /// Goes to the next one that is still there.
        Iterator& operator++() {
            _item.reset();  // before the step: what is open cannot be destroyed
            if (_filter->next()) settle();
            return *this;
        }
        /// The same.
        void operator++(int) { ++*this; }

        /// Whether it stands at the end.
        friend bool operator==(const Iterator& it, std::default_sentinel_t) { return !it._item; }

    private:
        void settle() {
            do _item = _filter->current();
            while (!_item && _filter->next());
        }

        Filter* _filter;
        value_type _item;
    };

    /// Takes over a cursor that stands at its beginning.
    explicit Range(SharedPtr<Filter> filter) : _filter(std::move(filter)) {}

    /// The first item; asked for once.
    Iterator begin() { return Iterator(_filter.get()); }
    /// The end.
    std::default_sentinel_t end() const { return {}; }

private:
    SharedPtr<Filter> _filter;
};

/// The containers in a container, as they are in the store now (see `IContainer::containers`).
///
///     for (const auto& child : easy::containers(*model)) names.push_back(child->tag().string());
///
/// Each is open while its turn lasts, so that it cannot be destroyed then.
inline Range<structure::IContainerFilter> containers(structure::IContainer& container) {
    return Range(container.containers());
}

/// The primitives and tables in a container, in the same way.
///
///     for (const auto& property : easy::properties(*model)) {
///         auto* const table = metadata::ITable::to(property.get());
///         if (!table) continue;
///         for (const auto& item : easy::properties(*table)) names.push_back(item->path().string());
///     }
inline Range<metadata::IPropertyFilter> properties(structure::IContainer& container) {
    return Range(container.properties());
}

/// The same of a table, which is in use as long as the range is there (see `ITable::properties`).
inline Range<metadata::IPropertyFilter> properties(metadata::ITable& table) {
    return Range(table.properties());
}

}  // namespace lumivard::platform::data::easy
