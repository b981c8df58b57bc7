#include "metadata/Set.h"

#include <unordered_set>
#include <utility>

#include "record/Entity.h"
#include "record/Offsets.h"

namespace lumivard::platform::data::Metadata {

using Record::Entity;
using Record::Offsets;

namespace {

/// Calls `visit(offset, name)` for each entry of a list that can be a child, in order, until it returns false.
template <class Visit>
void eachChild(IDataStore* store, unsigned int list, Visit visit) {
    if (list == IDataStore::BADOFF) return;
    const std::vector<unsigned int> entries = Offsets(store, list).get();
    // A record that is listed twice is the same child; a damaged list may name a long one thousands of times.
    std::unordered_set<unsigned int> seen(entries.size());
    for (const unsigned int offset : entries) {
        if (!seen.insert(offset).second) continue;
        const Entity child(store, offset);
        if (child.whole() && Record::isChild(child.type()) && !visit(offset, child.name())) return;
    }
}

}  // namespace

Set::~Set() {
    forgetAll();
}

void Set::update() {
    const unsigned int list = Entity(_store, _offset).children();
    TextMap<tEntry*> before = std::exchange(_names, {});
    const unsigned int listBefore = std::exchange(_children, list);
    try {
        populate();
    } catch (...) {
        forgetAll();
        _names = std::move(before);
        _children = listBefore;
        throw;
    }
    before.each([](const wchar_t*, tEntry* entry) { delete entry; });
}

void Set::populate() {
    eachChild(_store, _children, [this](unsigned int offset, std::wstring name) {
        index(offset, std::move(name));
        return true;
    });
}

unsigned int Set::find(const wchar_t* name) const {
    if (!name) return BADOFF;
    const auto* entry = _names.find(name);
    return entry ? (*entry)->offset : BADOFF;
}

bool Set::add(unsigned int offset) {
    Entity child(_store, offset);
    if (!child.whole() || !Record::isChild(child.type())) return false;
    const std::wstring name = child.name();
    if (_names.find(name.c_str())) return false;
    child.parent(_offset);
    index(offset, name);
    try {
        child.update(true);
        append(offset);
    } catch (...) {
        forget(name.c_str());
        throw;
    }
    return true;
}

void Set::append(unsigned int offset) {
    const auto listed = [this] { return Record::peek(_store, _children) == Record::kOffsets; };
    // Another object may have made the list since this one was opened, or another one in its place.
    if (!listed()) _children = Entity(_store, _offset).children();
    if (listed()) {
        _store->append(_children, &offset, sizeof(offset));
        return;
    }
    Offsets list(_store);
    list.add(offset);
    Entity record(_store, _offset);
    record.children(list.offset());
    record.update(true);
    _children = list.offset();
}

unsigned int Set::at(unsigned int index) const {
    return _children == BADOFF ? BADOFF : Offsets::at(_store, _children, index);
}

std::vector<unsigned int> Set::entries() const {
    return entries(_store, _children, items());
}

std::vector<unsigned int> Set::entries(IDataStore* store, unsigned int list) {
    return entries(store, list, children(store, list).size());
}

std::vector<unsigned int> Set::entries(IDataStore* store, unsigned int list, std::size_t most) {
    if (list == BADOFF) return {};
    std::vector<unsigned int> entries = Offsets(store, list).get();
    if (entries.size() > most) entries.resize(most);
    return entries;
}

std::vector<unsigned int> Set::children(IDataStore* store, unsigned int list) {
    std::vector<unsigned int> children;
    std::unordered_set<std::wstring> names;
    eachChild(store, list, [&](unsigned int offset, std::wstring name) {
        if (names.insert(std::move(name)).second) children.push_back(offset);
        return true;
    });
    return children;
}

unsigned int Set::search(IDataStore* store, unsigned int list, const wchar_t* name) {
    unsigned int found = BADOFF;
    eachChild(store, list, [&](unsigned int offset, const std::wstring& each) {
        if (each == name) found = offset;
        return found == BADOFF;
    });
    return found;
}

std::vector<unsigned int> Set::indexed() const {
    std::vector<unsigned int> offsets;
    offsets.reserve(items());
    _names.each([&](const wchar_t*, const tEntry* entry) { offsets.push_back(entry->offset); });
    return offsets;
}

void Set::index(unsigned int offset, std::wstring name) {
    auto entry = std::make_unique<tEntry>();
    entry->offset = offset;
    entry->name = std::move(name);
    if (_names.insert(entry->name.c_str(), entry.get())) entry.release();
}

void Set::forget(const wchar_t* name) {
    const auto* found = _names.find(name);
    if (!found) return;
    const std::unique_ptr<tEntry> entry(*found);
    _names.erase(entry->name.c_str());
}

void Set::forgetAll() {
    _names.each([](const wchar_t*, tEntry* entry) { delete entry; });
    _names.clear();
}

}  // namespace lumivard::platform::data::Metadata
