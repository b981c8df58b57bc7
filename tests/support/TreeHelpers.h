#pragma once

#include "design/Container.h"
#include "design/Primitive.h"
#include "design/Table.h"
#include "metadata/Root.h"
#include "record/Base.h"

/// Small trees, made below the public interfaces. Nothing that these make is open when they return.
namespace lumivard::platform::test_support::tree {

using core::storage::datastore::IDataStore;
using data::metadata::tValue;
using data::structure::IContainer;

/// A new root; at offset 0 in a new store.
inline unsigned int root(IDataStore* store, const wchar_t* name = L"root") {
    return data::Metadata::Root(store, name).offset();
}

/// New records that are attached to nothing.
inline unsigned int container(IDataStore* store, const wchar_t* name, IContainer::tType type = IContainer::kGroup) {
    return data::Structural::Container(store, type, name).offset();
}

inline unsigned int table(IDataStore* store, const wchar_t* name) {
    return data::Design::Table(store, name).offset();
}

inline unsigned int primitive(IDataStore* store, const wchar_t* name, tValue kind = data::metadata::kInt32) {
    return data::Design::Primitive(store, kind, name).offset();
}

/// Makes a record a child of a root, table or container, none of which is open, and returns its offset; `BADOFF` when
/// it is refused.
inline unsigned int add(IDataStore* store, unsigned int owner, unsigned int child) {
    bool added = false;
    switch (data::Record::peek(store, owner)) {
        case data::Record::kRoot:
            added = data::Metadata::Root(store, owner).add(child);
            break;
        case data::Record::kTable:
            added = data::Design::Table(store, owner, false).add(child);
            break;
        case data::Record::kContainer:
            added = data::Structural::Container(store, owner, false).add(child);
            break;
        default:
            break;
    }
    return added ? child : IDataStore::BADOFF;
}

/// New children of an owner that is not open.
inline unsigned int addContainer(IDataStore* store, unsigned int owner, const wchar_t* name) {
    return add(store, owner, container(store, name));
}

inline unsigned int addTable(IDataStore* store, unsigned int owner, const wchar_t* name) {
    return add(store, owner, table(store, name));
}

inline unsigned int addPrimitive(IDataStore* store, unsigned int owner, const wchar_t* name) {
    return add(store, owner, primitive(store, name));
}

}  // namespace lumivard::platform::test_support::tree
