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

void Set::inherit(IDataStore* source, unsigned int offset) {
    const Record::Entity item(source, offset);
    if (!item.whole() || !Record::isChild(item.type()) || find(item.name().c_str()) != BADOFF) return;
    const unsigned int copy = Design::Subtree::clone(source, offset, _store);
    add(copy);
    hide(copy);
}

void Set::hide(unsigned int offset) {
    Design::Subtree::on(_store, offset, Record::kInherited | Record::kHidden);
}

}  // namespace Metadata

namespace {

/// Takes in the items of a schema's table, as far as the locator has seen them.
void inheritItems(Metadata::Set& set, const Schema::Layout& layout) {
    for (const unsigned int offset : layout.set().entries()) set.inherit(layout.set().store(), offset);
}

/// A base list with one more name.
std::wstring longer(std::wstring base, const Schema::Layout& layout) {
    if (!base.empty()) base += L';';
    return base + layout.name();
}

const char* bytesOf(const std::wstring& text) {
    return reinterpret_cast<const char*>(text.c_str());
}

}  // namespace

namespace Structural {

bool Container::inherit(metadata::ISchema* schema) {
    const auto* ours = Schema::SchemaImpl::of(schema);
    if (!ours) return false;
    std::wstring base = _base;
    for (const Schema::Layout* layout : ours->layouts()) {
        base = longer(std::move(base), *layout);
        const Record::Guard guard(layout->set().store());
        inheritItems(*this, *layout);
    }
    Record::Container record(_store, _offset);
    if (record.arrays(Record::Container::kBase, bytesOf(base), Record::textSection(base.c_str()))) _base = base;
    return true;
}

}  // namespace Structural

namespace Design {

bool Table::inherit(metadata::ISchema* schema) {
    const auto* ours = Schema::SchemaImpl::of(schema);
    if (!ours) return false;
    std::wstring base = _base;
    for (const Schema::Layout* layout : ours->layouts()) {
        base = longer(std::move(base), *layout);
        inheritItems(*this, *layout);
    }
    Record::Table record(_store, _offset);
    if (record.arrays(Record::Table::kBase, bytesOf(base), Record::textSection(base.c_str()))) _base = base;
    return true;
}

}  // namespace Design
}  // namespace lumivard::platform::data
