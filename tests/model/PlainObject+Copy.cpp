#include <set>
#include <sstream>

#include "tests/model/PlainObject.h"

namespace lumivard::platform::model {

namespace {

std::vector<std::wstring> names(const std::wstring& list) {
    std::vector<std::wstring> names;
    std::wistringstream stream(list);
    for (std::wstring name; std::getline(stream, name, L';');) names.push_back(name);
    return names;
}

void mark(PlainItem& item, unsigned char bits) {
    std::vector<PlainItem*> waiting{&item};
    while (!waiting.empty()) {
        PlainItem* const next = waiting.back();
        waiting.pop_back();
        next->flags = static_cast<unsigned char>(next->flags | bits);
        if (next->list) waiting.insert(waiting.end(), next->list->begin(), next->list->end());
    }
}

}  // namespace

// The copy of an open item is of what the object knows of it: a list that was made since its opening is not seen.
bool PlainObject::clone(TreeObject& source) {
    auto& from = dynamic_cast<PlainObject&>(source);
    if (from._face == kMade || lookup(from._tag)) return false;
    add(_tree.copy(from._item, {from._texts.stored(), from._knowsList, from._knowsDefaults}, _tree.next()));
    return true;
}

// What is copied into something below the source is not copied once more.
bool PlainObject::copy(TreeObject& source) {
    auto& from = dynamic_cast<PlainObject&>(source);
    if (from.kind() != kContainer) return false;
    std::vector<PlainItem*> entries;
    if (from._knowsList) entries = *from._item.list;
    if (entries.size() > from._known.size()) entries.resize(from._known.size());
    const std::size_t before = _tree.next();
    for (const PlainItem* entry : entries) {
        if (!lookup(entry->name)) add(_tree.copy(*entry, before));
    }
    return entries.size() == from._known.size();
}

bool PlainObject::clone(const std::wstring& source, const std::wstring& destination, bool fromRoot) {
    const std::size_t dot = destination.rfind(L'.');
    const bool dotted = dot != std::wstring::npos;
    const std::wstring name = dotted ? destination.substr(dot + 1) : destination;
    if (name.empty() || source.empty()) return false;
    PlainItem* root = &_item;
    while (root->parent) root = root->parent;
    const PlainItem* const found = fromRoot ? PlainTree::follow(*root, source) : lookup(source);
    if (!found) return false;
    PlainItem* const owner = dotted ? lookup(destination.substr(0, dot)) : &_item;
    if (!owner || owner->dead || owner->kind != PlainItem::kContainer) return false;
    if (owner->child(name) || found->dead || found->kind == PlainItem::kRoot) return false;
    PlainItem* const made = _tree.copy(*found, _tree.next());
    made->name = name;
    PlainObject(_tree, *owner, kTyped).add(made);
    if (!dotted) reload();
    return true;
}

bool PlainObject::cloneTo(unsigned int store, const std::wstring& destination) {
    const std::size_t dot = destination.rfind(L'.');
    const bool dotted = dot != std::wstring::npos;
    const std::wstring name = dotted ? destination.substr(dot + 1) : destination;
    if (name.empty()) return false;
    PlainItem* const owner = PlainTree::follow(_tree.root(store), dotted ? destination.substr(0, dot) : destination);
    if (!owner || owner->kind == PlainItem::kRoot || !owner->isSet()) return false;
    PlainItem* const made = _tree.copy(_item, _tree.next());
    made->name = name;
    PlainObject(_tree, *owner, kTyped).add(made);
    return true;
}

void PlainObject::inherit(int schema) {
    if (schema < 0) return;
    for (const std::wstring& name : names(kSchemaNames[schema])) {
        _base += (_base.empty() ? L"" : L";") + name;
        for (const PlainItem* item : *_tree.schema(name)->list) {
            if (known(item->name)) continue;
            PlainItem* const made = _tree.copy(*item, _tree.next());
            add(made);
            mark(*made, PlainItem::kInherited | PlainItem::kHidden);
        }
    }
    _item.base = _base;
}

bool PlainObject::conforms(int schema) {
    const std::vector<std::wstring> mine = names(_base);
    const std::vector<std::wstring> wanted = names(kSchemaNames[schema]);
    return std::all_of(wanted.begin(), wanted.end(), [&](const std::wstring& each) {
        return std::find(mine.begin(), mine.end(), each) != mine.end();
    });
}

void PlainObject::target(const std::wstring& path) {
    if (isLink()) _item.target = _target = path;
}

TreeObject::tPtr PlainObject::follow(unsigned int store) {
    if (!isLink() || _target.empty()) return nullptr;
    PlainItem* const found = PlainTree::follow(_tree.root(store), _target);
    const bool container = found && found->kind == PlainItem::kContainer;
    return container ? open(_tree, found, kWithoutRole) : nullptr;
}

}  // namespace lumivard::platform::model
