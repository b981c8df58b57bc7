#include "metadata/Set.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "metadata/Indexes.h"
#include "record/Entity.h"
#include "record/Offsets.h"

namespace lumivard::platform::data::Metadata {

using Record::bytesOf;
using Record::Entity;
using Record::Offsets;
using Record::tTouches;

namespace {

constexpr unsigned int BADOFF = IDataStore::BADOFF;

/// For so many children room is made beforehand: a damaged list may have any number of entries that name nothing.
constexpr unsigned int kMostAtOnce = 100'000;

/// Calls `visit(child)` for each entry of a list that can be a child, in order, until it returns false.
template <class Visit>
void eachChild(const Offsets& list, Visit visit) {
    // A record that is listed twice is the same child; a damaged list may name a long one thousands of times.
    const bool distinct = list.rising();
    list.expect();
    std::unordered_set<unsigned int> seen;
    const unsigned int count = list.items();
    for (unsigned int index = 0; index < count; ++index) {
        const unsigned int offset = list.get(index);
        if (!distinct && !seen.insert(offset).second) continue;
        const Entity child(list.store(), offset, Record::kInPlace);
        if (child.whole() && Record::isChild(child.type()) && !visit(child)) return;
    }
}

/// What an index has to know of its list to be kept: see `Indexes`.
class Soundness {
public:
    void see(const Entity& child, bool added) {
        if (_owner == BADOFF) _owner = child.parent();
        _children += added && child.parent() == _owner;
    }
    bool holds(const Offsets& list, std::size_t entries) const {
        return _children == entries && Entity(list.store(), _owner, Record::kInPlace).children() == list.offset();
    }

private:
    unsigned int _owner = BADOFF;
    std::size_t _children = 0;
};

/// The index of a list as it is in the store: one that is kept, or one that is made now, and kept where it may be.
std::shared_ptr<NameIndex> indexOf(const Offsets& list) {
    const unsigned int entries = list.items();
    if (entries == 0) return nullptr;
    Indexes* const indexes = entries >= Indexes::kLarge ? Indexes::of(list.store()) : nullptr;
    if (indexes) {
        if (auto kept = indexes->find(list.offset())) return kept;
    }
    auto index = std::make_shared<NameIndex>();
    index->reserve(std::min(entries, kMostAtOnce));
    Soundness soundness;
    eachChild(list, [&](const Entity& child) {
        soundness.see(child, index->insert(child.offset(), child.nameBytes()));
        return true;
    });
    if (indexes && soundness.holds(list, entries)) indexes->keep(list.offset(), index);
    return index;
}

}  // namespace

void Set::update() {
    const unsigned int list = Entity(_store, _offset, Record::kInPlace).children();
    _index = indexOf(Offsets(_store, list, Record::kInPlace));
    _children = list;
}

void Set::populate() {
    _index = indexOf(Offsets(_store, _children, Record::kInPlace));
}

unsigned int Set::find(const wchar_t* name) const {
    return name ? find(std::wstring_view(name)) : BADOFF;
}

unsigned int Set::find(std::wstring_view name) const {
    return _index ? _index->find(bytesOf(name)) : BADOFF;
}

bool Set::add(unsigned int offset) {
    Entity child(_store, offset, Record::kInPlace);
    if (!child.whole() || !Record::isChild(child.type())) return false;
    if (!writable().insert(offset, child.nameBytes())) return false;
    try {
        takeFromOwner(child);
        if (child.parent() != _offset) child.writeParent(_offset, tTouches::kItself);
        append(offset, child.nameBytes());
    } catch (...) {
        _index->erase(child.nameBytes());
        throw;
    }
    return true;
}

void Set::takeFromOwner(const Entity& child) const {
    Indexes* const indexes = Indexes::known(_store);
    if (!indexes || child.parent() == BADOFF || child.parent() == _offset) return;
    const unsigned int list = Entity(_store, child.parent(), Record::kInPlace).children();
    const auto index = indexes->find(list);
    if (index && index->find(child.nameBytes()) == child.offset()) indexes->drop(list);
}

void Set::append(unsigned int offset, std::string_view name) {
    const auto listed = [this] { return Record::peek(_store, _children) == Record::kOffsets; };
    // Another object may have made the list since this one was opened, or another one in its place.
    if (!listed()) _children = Entity(_store, _offset, Record::kInPlace).children();
    if (!listed()) {
        Offsets list(_store);
        list.add(offset, tTouches::kItself);
        Entity(_store, _offset, Record::kInPlace).writeChildren(list.offset());
        _children = list.offset();
        return;
    }
    Indexes* const indexes = Indexes::known(_store);
    _store->append(_children, &offset, sizeof(offset));
    if (!indexes) return;
    indexes->follow(_children, _index, [&](NameIndex& index) { return index.insert(offset, name); });
    Indexes::account(_store);
}

NameIndex& Set::writable() {
    if (!_index) _index = std::make_shared<NameIndex>();
    if (_index.use_count() == 1) return *_index;
    Indexes* const indexes = Indexes::known(_store);
    const bool kept = indexes && indexes->find(_children) == _index;
    if (kept && _index.use_count() == 2) return *_index;
    auto own = std::make_shared<NameIndex>(*_index);
    if (kept) indexes->keep(_children, own);
    _index = std::move(own);
    return *_index;
}

bool Set::owns(const Entity& child) const {
    return child.parent() == _offset && Entity(_store, _offset, Record::kInPlace).children() == _children;
}

unsigned int Set::at(unsigned int index) const {
    return _children == BADOFF ? BADOFF : Offsets::at(_store, _children, index);
}

std::vector<unsigned int> Set::entries() const {
    return entries(_store, _children, items());
}

std::vector<unsigned int> Set::entries(IDataStore* store, unsigned int list) {
    const auto index = indexOf(Offsets(store, list, Record::kInPlace));
    return entries(store, list, index ? index->size() : 0);
}

std::vector<unsigned int> Set::entries(IDataStore* store, unsigned int list, std::size_t most) {
    std::vector<unsigned int> entries = Offsets(store, list, Record::kInPlace).get();
    if (entries.size() > most) entries.resize(most);
    return entries;
}

std::vector<unsigned int> Set::children(IDataStore* store, unsigned int list) {
    const auto index = indexOf(Offsets(store, list, Record::kInPlace));
    return index ? index->offsets() : std::vector<unsigned int>();
}

unsigned int Set::search(IDataStore* store, unsigned int list, std::wstring_view name) {
    const Offsets entries(store, list, Record::kInPlace);
    const std::string_view wanted = bytesOf(name);
    unsigned int found = BADOFF;
    auto* const access = store->access();
    if (!access) {
        eachChild(entries, [&](const Entity& child) {
            if (Record::isChildCalled({child.bytes(), child.size()}, wanted)) found = child.offset();
            return found == BADOFF;
        });
        return found;
    }
    const unsigned int count = entries.items();
    if (count >= Indexes::kLarge) {
        const auto index = indexOf(entries);
        return index ? index->find(wanted) : BADOFF;
    }
    entries.expect();
    for (unsigned int index = 0; index < count; ++index) {
        const unsigned int offset = entries.get(index);
        const auto child = access->view(offset);
        if (Record::isChildCalled({child.data, child.size}, wanted)) return offset;
    }
    return BADOFF;
}

std::vector<unsigned int> Set::indexed() const {
    return _index ? _index->offsets() : std::vector<unsigned int>();
}

}  // namespace lumivard::platform::data::Metadata
