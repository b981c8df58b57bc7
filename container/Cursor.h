#pragma once

#include <vector>

#include "container/ContainerImpl.h"
#include "record/Base.h"

namespace lumivard::platform::data {

/// A position in the list of a container's children as it stood when the cursor was made, which stops only at records
/// of accepted kinds. It needs the store and nothing else of where it came from.
class Cursor {
public:
    using tAccepts = bool (*)(Record::tType kind);

    /// Stands on the first accepted record, or past the end.
    Cursor(const ContainerImpl& container, tAccepts accepts);

    /// Moves to the next accepted record; past the end, and false, when there is none.
    bool next();

    /// Moves to the previous accepted record; stays, and false, when there is none.
    bool prev();

    IDataStore* store() const { return _store; }

    /// The record under the cursor; `BADOFF` past the end.
    unsigned int offset() const { return _index < _offsets.size() ? _offsets[_index] : IDataStore::BADOFF; }

private:
    /// The first place from `index` on with an accepted record; past the end where there is none.
    std::size_t accepted(std::size_t index) const;

    IDataStore* _store;
    std::size_t _index = 0;
    std::vector<unsigned int> _offsets;
    tAccepts _accepts;
};

}  // namespace lumivard::platform::data
