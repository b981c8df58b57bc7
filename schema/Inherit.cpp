#include <optional>
#include <unordered_set>

#include "design/Container.h"
#include "design/Subtree.h"
#include "design/Table.h"
#include "record/Container.h"
#include "record/Guard.h"
#include "record/Table.h"
#include "schema/Layout.h"
#include "schema/SchemaImpl.h"

// What containers and tables take in from schemas.

namespace lumivard::platform::data {

namespace Metadata {

void Set::inherit(IDataStore* source, const std::vector<unsigned int>& offsets) {
    Design::Subtree::Copies copies(source, _store);
    for (const unsigned int offset : offsets) {
        const Record::Entity item(source, offset, Record::kInPlace);
        if (!item.whole() || !Record::isChild(item.type()) || find(item.name().c_str()) != BADOFF) continue;
        const unsigned int copy = copies.add(offset);
        add(copy);
        hide(copy);
    }
}

void Set::hide(unsigned int offset) {
    Design::Subtree::on(_store, offset, Record::kInherited | Record::kHidden);
}

}  // namespace Metadata

namespace {

/// Takes in the items of a schema's tables, as far as the locator saw them, and adds the schema's names to the base
/// list, which it returns. `guarded`: under the guard of each table's store.
std::wstring inheritItems(Metadata::Set& set, std::wstring base, const Schema::SchemaImpl& schema, bool guarded) {
    std::unordered_set<const Schema::Layout*> taken;
    for (const Schema::Layout* layout : schema.layouts()) {
        if (!base.empty()) base += L';';
        base += layout->name();
        std::optional<Record::Guard> guard;
        if (guarded) guard.emplace(layout->store());
        if (!taken.insert(layout).second) continue;  // a second time all its names are taken
        set.inherit(layout->store(), layout->entries());
    }
    return base;
}

/// Replaces the base list in a record of one of the two kinds; false where the record would outgrow 32 bits.
template <class Kind>
bool putBase(const Metadata::Set& set, const std::wstring& base) {
    Kind record(set.store(), set.offset(), Record::kInPlace);
    return record.arrays(Kind::kBase, reinterpret_cast<const char*>(base.c_str()), Record::textSection(base.c_str()));
}

}  // namespace

bool Structural::Container::inherit(metadata::ISchema* schema) {
    const auto* ours = Schema::SchemaImpl::of(schema);
    if (!ours) return false;
    const std::wstring base = inheritItems(*this, _base, *ours, true);
    if (putBase<Record::Container>(*this, base)) _base = base;
    return true;
}

bool Design::Table::inherit(metadata::ISchema* schema) {
    const auto* ours = Schema::SchemaImpl::of(schema);
    if (!ours) return false;
    // Clients that make tables from schemas rely on it that no second guard is taken here.
    const std::wstring base = inheritItems(*this, _base, *ours, false);
    if (putBase<Record::Table>(*this, base)) _base = base;
    return true;
}

}  // namespace lumivard::platform::data
