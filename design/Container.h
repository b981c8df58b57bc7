#pragma once

#include <string>

#include "lumivard/platform/core/memory/PooledHeap.h"
#include "lumivard/platform/data/structure/IContainer.h"
#include "metadata/Set.h"

namespace lumivard::platform::data::metadata {
class ISchema;
}

namespace lumivard::platform::data::Structural {

using core::storage::datastore::IDataStore;

/// A set with a structural type (node, group or link), the list of schemas that it inherits from, and a free text,
/// which is a link's target.
class Container final : public Metadata::Set, public core::memory::PooledObject {
public:
    using tType = structure::IContainer::tType;

    /// Opens a record. With `lazy` the index of children stays empty.
    Container(IDataStore* store, unsigned int offset, bool lazy);

    /// Makes a new record. The type is not tested.
    Container(IDataStore* store, tType type, const wchar_t* name);

    ~Container() override;

    bool unreferenced() override;
    void clear() override;
    unsigned int clone(IDataStore* target) override;

    /// The schemas, joined by ";"; null when there are none.
    const wchar_t* base() const { return _base.empty() ? nullptr : _base.c_str(); }

    /// Adds the names of a schema to the base list, and takes in hidden copies of the schema's items, but for those
    /// whose names are taken, under the guard of the schema's store. False, with nothing changed, for null and for an
    /// object that no locator of ours made. Defined in schema/Inherit.cpp.
    bool inherit(metadata::ISchema* schema);

    /// The type when the object was opened.
    tType type() const { return _type; }

    /// The free text; null when there is none, and to remove it.
    const wchar_t* info() const { return _info.empty() ? nullptr : _info.c_str(); }
    void info(const wchar_t* text);

private:
    tType _type;
    std::wstring _base;
    std::wstring _info;
};

}  // namespace lumivard::platform::data::Structural
