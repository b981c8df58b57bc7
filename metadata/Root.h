#pragma once

#include "metadata/Set.h"

namespace lumivard::platform::data::Metadata {

/// The set at the top of a store, over a root record, which has no owner. Its children are the top-level containers,
/// tables and primitives.
class Root : public Set {
public:
    /// Makes a new root record; offset 0 in a new store. Nothing is populated.
    Root(IDataStore* store, const wchar_t* name);

    /// Opens the record at an offset, 0 as a rule, and populates the index. A container or table stands there as well
    /// as a root: its list of children lies in the same place.
    Root(IDataStore* store, unsigned int offset);

    ~Root() override;

    bool unreferenced() override;
    /// The root record stays in the store, which goes on being set up.
    void clear() override;
    /// A root is never copied: `BADOFF`.
    unsigned int clone(IDataStore* target) override;
};

}  // namespace lumivard::platform::data::Metadata
