#include "design/Container.h"
#include "design/Primitive.h"
#include "design/Subtree.h"
#include "design/Table.h"
#include "metadata/Root.h"
#include "record/Table.h"

// What each kind of item answers to the operations on a whole subtree. An open object counts itself in its record.

namespace lumivard::platform::data {

namespace {

/// Whether the record of an open set counts no object but that one.
bool heldOnce(core::storage::datastore::IDataStore* store, unsigned int offset) {
    return Record::Entity(store, offset, Record::kInPlace).refs() < 2;
}

/// Cuts a record's references to what was erased. It may be gone itself, where damage had made it a child of its own.
void detach(core::storage::datastore::IDataStore* store, unsigned int offset) {
    Record::Table record(store, offset, Record::kInPlace);
    if (!record.whole()) return;
    record.locale(Record::Entity::BADOFF);
    if (record.type() != Record::kPrimitive) record.children(Record::Entity::BADOFF);
    if (record.type() == Record::kTable) record.defaults(Record::Entity::BADOFF);
    record.update(true, Record::tTouches::kItself);
}

}  // namespace

namespace Metadata {

bool Root::unreferenced() {
    return heldOnce(_store, _offset) && Set::unreferenced();
}

void Root::clear() {
    Item::cleanup();
    Set::cleanup();
    detach(_store, _offset);
}

unsigned int Root::clone(IDataStore*) {
    return BADOFF;
}

}  // namespace Metadata

namespace Design {

bool Primitive::unreferenced() {
    return Record::Entity(_store, _offset, Record::kInPlace).refs() == 1;
}

void Primitive::clear() {
    Item::cleanup();
    detach(_store, _offset);
}

unsigned int Primitive::clone(IDataStore* target) {
    return Subtree::clone(_store, _offset, {.locale = _locale}, target);
}

bool Table::unreferenced() {
    return heldOnce(_store, _offset) && Set::unreferenced();
}

void Table::clear() {
    Item::cleanup();
    Set::cleanup();
    if (Record::peek(_store, _defaults) == Record::kOffsets) _store->erase(_defaults);
    _defaults = BADOFF;
    _groups.clear();
    detach(_store, _offset);
}

unsigned int Table::clone(IDataStore* target) {
    return Subtree::clone(_store, _offset, {.locale = _locale, .children = _children, .defaults = _defaults}, target);
}

}  // namespace Design

namespace Structural {

bool Container::unreferenced() {
    return heldOnce(_store, _offset) && Set::unreferenced();
}

void Container::clear() {
    Item::cleanup();
    Set::cleanup();
    detach(_store, _offset);
}

unsigned int Container::clone(IDataStore* target) {
    return Design::Subtree::clone(_store, _offset, {.locale = _locale, .children = _children}, target);
}

}  // namespace Structural
}  // namespace lumivard::platform::data
