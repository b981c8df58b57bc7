#include "xml/Nesting.h"

#include "design/Primitive.h"
#include "design/Table.h"
#include "record/Base.h"

namespace lumivard::platform::data {

using core::storage::datastore::IDataStore;
using Metadata::Item;
using Metadata::Set;

namespace {

template <class Kind>
constexpr Record::tType kRecordOf = Record::kPrimitive;
template <>
constexpr Record::tType kRecordOf<Design::Table> = Record::kTable;

void reopen(std::unique_ptr<Design::Primitive>& item, IDataStore* store, unsigned int offset) {
    item = std::make_unique<Design::Primitive>(store, offset);
}

void reopen(std::unique_ptr<Design::Table>& item, IDataStore* store, unsigned int offset) {
    item = std::make_unique<Design::Table>(store, offset, false);
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
    if (Record::peek(parent.store(), present) != kRecordOf<Kind>) return nullptr;
    std::unique_ptr<Kind> item;
    reopen(item, parent.store(), present);
    if (!item->equivalent(static_cast<const Kind&>(*child))) return nullptr;
    item->show();
    return item;
}

template std::unique_ptr<Item> addOrMerge<Design::Primitive>(Set&, std::unique_ptr<Item>);
template std::unique_ptr<Item> addOrMerge<Design::Table>(Set&, std::unique_ptr<Item>);

}  // namespace lumivard::platform::data
