#include <cstring>
#include <cwchar>
#include <vector>

#include "design/Subtree.h"
#include "metadata/Set.h"
#include "record/Entity.h"
#include "record/Offsets.h"

namespace lumivard::platform::data::Metadata {

bool Set::remove(const wchar_t* name) {
    const unsigned int offset = find(name);
    if (offset == BADOFF) return false;
    if (Record::Entity(_store, offset).flags() & Record::kInherited) return false;
    if (!Design::Subtree::unreferenced(_store, {offset})) return false;
    const std::vector<unsigned int> dead = Design::Subtree::everything(_store, {offset});
    // Out of the list first: where the store fails behind that, records are left that nothing refers to, but no list
    // with a gap and no child without its children.
    Record::Offsets(_store, _children).removeVal(offset);
    forget(name);
    Design::Subtree::erase(_store, dead);
    return true;
}

bool Set::rename(const wchar_t* from, const wchar_t* to) {
    if (!from || !to || find(to) != BADOFF) return false;
    const unsigned int offset = find(from);
    if (offset == BADOFF) return false;
    if (Record::Entity(_store, offset).flags() & Record::kInherited) return false;

    // The section of a renamed item is twice as long as its name needs, and records in use have it so. Readers stop at
    // the terminator; the second half is zero.
    const std::size_t length = std::wcslen(to);
    std::vector<char> section(2 * (length + 1) * sizeof(wchar_t));
    std::memcpy(section.data(), to, length * sizeof(wchar_t));
    index(offset, to);
    bool renamed = false;
    try {
        renamed = Record::Entity(_store, offset).name(section.data(), section.size());
    } catch (...) {
        forget(to);
        throw;
    }
    forget(renamed ? from : to);
    return renamed;
}

bool Set::unreferenced() {
    return Design::Subtree::unreferenced(_store, indexed());
}

void Set::cleanup() {
    if (_children == BADOFF) return;
    Design::Subtree::erase(_store, Design::Subtree::everything(_store, indexed()));
    if (Record::peek(_store, _children) == Record::kOffsets) _store->erase(_children);
    _children = BADOFF;
    forgetAll();
}

unsigned int Set::duplicate(IDataStore* target, unsigned int parent) {
    return Design::Subtree::duplicate(_store, _children, target, parent);
}

}  // namespace lumivard::platform::data::Metadata
