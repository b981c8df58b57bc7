#include "xml/Nesting.h"

#include "design/Primitive.h"
#include "design/Table.h"
#include "record/Base.h"

namespace lumivard::platform::data {

using core::storage::datastore::IDataStore;
using Metadata::Item;
using Metadata::Set;

namespace {

/// Opens what a record holds as an object of a class; null for a record of another kind.
template <class Kind>
std::unique_ptr<Kind> open(IDataStore* store, unsigned int offset);

template <>
std::unique_ptr<Design::Primitive> open(IDataStore* store, unsigned int offset) {
    if (Record::peek(store, offset) != Record::kPrimitive) return nullptr;
    return std::make_unique<Design::Primitive>(store, offset);
}

template <>
std::unique_ptr<Design::Table> open(IDataStore* store, unsigned int offset) {
    if (Record::peek(store, offset) != Record::kTable) return nullptr;
    return std::make_unique<Design::Table>(store, offset, false);
}

}  // namespace

std::unique_ptr<Item> add(Set& parent, std::unique_ptr<Item> child) {
    if (!parent.add(child->offset())) return nullptr;
    return child;
}

template <class Kind>
std::unique_ptr<Item> addOrMerge(Set& parent, std::unique_ptr<Item> child) {
    const unsigned int present = parent.find(child->tag());
    if (present == Item::BADOFF) {
        parent.add(child->offset());
        return child;
    }
    auto item = open<Kind>(parent.store(), present);
    if (!item || !item->equivalent(static_cast<const Kind&>(*child))) return nullptr;
    item->show();
    return item;
}

template std::unique_ptr<Item> addOrMerge<Design::Primitive>(Set&, std::unique_ptr<Item>);
template std::unique_ptr<Item> addOrMerge<Design::Table>(Set&, std::unique_ptr<Item>);

}  // namespace lumivard::platform::data
