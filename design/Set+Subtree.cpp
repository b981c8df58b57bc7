#include <cstring>
#include <cwchar>
#include <vector>

#include "design/Subtree.h"
#include "metadata/Indexes.h"
#include "metadata/Set.h"
#include "record/Entity.h"
#include "record/Offsets.h"

namespace lumivard::platform::data::Metadata {

using Record::tTouches;

bool Set::remove(const wchar_t* name) {
    const unsigned int offset = find(name);
    if (offset == BADOFF) return false;
    const Record::Entity child(_store, offset, Record::kInPlace);
    if (child.flags() & Record::kInherited) return false;
    if (!Design::Subtree::unreferenced(_store, {offset})) return false;
    const Design::Subtree::tDead dead = Design::Subtree::everything(_store, {offset});
    const std::string_view known = Record::bytesOf(name);
    NameIndex& own = writable();
    Indexes* const indexes = Indexes::known(_store);
    const tTouches touches = owns(child) && dead.closed ? tTouches::kItself : tTouches::kChildren;
    // Out of the list first: where the store fails behind that, records are left that nothing refers to, but no list
    // with a gap and no child without its children.
    Record::Offsets(_store, _children, Record::kInPlace).removeVal(offset, touches);
    own.erase(known);
    if (indexes) {
        indexes->follow(_children, _index, [&](NameIndex& index) {
            if (index.find(known) != offset) return false;
            index.erase(known);
            return true;
        });
        for (const unsigned int list : dead.records) indexes->drop(list);
    }
    Design::Subtree::erase(_store, dead, touches);
    return true;
}

bool Set::rename(const wchar_t* from, const wchar_t* to) {
    if (!from || !to || find(to) != BADOFF) return false;
    const unsigned int offset = find(from);
    if (offset == BADOFF) return false;
    Record::Entity child(_store, offset, Record::kInPlace);
    if (child.flags() & Record::kInherited) return false;

    // The section of a renamed item is twice as long as its name needs, and records in use have it so. Readers stop at
    // the terminator; the second half is zero.
    const std::size_t length = std::wcslen(to);
    std::vector<char> section(2 * (length + 1) * sizeof(wchar_t));
    std::memcpy(section.data(), to, length * sizeof(wchar_t));
    const std::string_view before = Record::bytesOf(from);
    const std::string_view after = Record::bytesOf(to);
    NameIndex& own = writable();
    Indexes* const indexes = Indexes::known(_store);
    own.insert(offset, after);
    bool renamed = false;
    try {
        renamed = child.name(section.data(), section.size(), owns(child) ? tTouches::kItself : tTouches::kChildren);
    } catch (...) {
        own.erase(after);
        throw;
    }
    own.erase(renamed ? before : after);
    if (!renamed || !indexes) return renamed;
    indexes->follow(_children, _index, [&](NameIndex& index) {
        if (index.find(before) != offset || !index.insert(offset, after)) return false;
        index.erase(before);
        return true;
    });
    return renamed;
}

bool Set::unreferenced() {
    return Design::Subtree::unreferenced(_store, indexed());
}

void Set::cleanup() {
    if (_children == BADOFF) return;
    Design::Subtree::erase(_store, Design::Subtree::everything(_store, indexed()), tTouches::kChildren);
    if (Record::peek(_store, _children) == Record::kOffsets) _store->erase(_children);
    _children = BADOFF;
    _index.reset();
}

unsigned int Set::duplicate(IDataStore* target, unsigned int parent) {
    return Design::Subtree::duplicate(_store, _children, target, parent);
}

}  // namespace lumivard::platform::data::Metadata
