#include "tests/model/PlainObject.h"

namespace lumivard::platform::model {

TreeObject::tPtr PlainObject::open(PlainTree& tree, PlainItem* item, tFace face) {
    if (!item || item->dead || item->kind == PlainItem::kRoot) return nullptr;
    return std::make_unique<PlainObject>(tree, *item, face);
}

PlainObject::PlainObject(PlainTree& tree, PlainItem& item, tFace face)
    : _tree(tree),
      _item(item),
      _process(tree.process()),
      _face(face),
      _parent(item.parent),
      _tag(item.name),
      _base(item.base),
      _texts(item),
      _known(item.index()),
      _knowsList(item.list.has_value()),
      _type(item.type),
      _target(item.target),
      _valuetype(item.valuetype),
      _size(static_cast<unsigned int>(item.value.size())),
      _external((item.flags & PlainItem::kExternal) != 0),
      _valuelocale(item.valuelocale) {
    if (_external) _uri = textOf(item.value);
    loadDefaults();
    ++item.open[_process];
}

PlainObject::~PlainObject() {
    if (!_tree.leavesNothing()) _texts.keep();
    --_item.open[_process];
}

TreeObject::tKind PlainObject::kind() const {
    if (_item.kind == PlainItem::kContainer) return kContainer;
    return _item.kind == PlainItem::kTable ? kTable : kPrimitive;
}

std::wstring PlainObject::path() {
    std::wstring path = _tree.rules().renamesReachOpenObjects ? _item.name : _tag;
    for (const PlainItem* at = _item.parent; at && !at->dead && at->kind != PlainItem::kRoot; at = at->parent) {
        path.insert(0, at->name + L".");
    }
    return path;
}

TreeObject::tPtr PlainObject::parent() {
    const bool right = _parent && _parent->kind == (kind() == kContainer ? PlainItem::kContainer : PlainItem::kTable);
    return right ? open(_tree, _parent, kind() == kContainer ? kTyped : kMade) : nullptr;
}

// By the names that stand in the store now, but for its own.
bool PlainObject::rename(const std::wstring& name) {
    if (!_parent || _parent->dead || name.empty() || _parent->kind == PlainItem::kRoot) return false;
    if (kind() == kContainer && _parent->kind != PlainItem::kContainer) return false;
    PlainItem* const item = _parent->child(_tag);
    if (!item || _parent->child(name) || (item->flags & PlainItem::kInherited)) return false;
    item->name = name;
    return true;
}

PlainItem* PlainObject::known(const std::wstring& name) const {
    const auto found = _known.find(name);
    return found == _known.end() ? nullptr : found->second;
}

PlainItem* PlainObject::lookup(const std::wstring& path) const {
    if (path.empty()) return nullptr;
    const std::size_t dot = path.find(L'.');
    PlainItem* const first = known(path.substr(0, dot));
    return first && dot != std::wstring::npos ? PlainTree::follow(*first, path.substr(dot + 1)) : first;
}

bool PlainObject::add(PlainItem* child) {
    if (known(child->name)) return false;
    if (!_item.list) _item.list.emplace();
    _item.list->push_back(child);
    child->parent = &_item;
    _known[child->name] = child;
    _knowsList = true;
    return true;
}

void PlainObject::reload() {
    _known = _item.index();
    _knowsList = _item.list.has_value();
}

bool PlainObject::destroy(const std::wstring& name) {
    PlainItem* const child = known(name);
    if (!child || name.empty()) return false;
    if (!child->dead) {
        if (child->flags & PlainItem::kInherited) return false;
        if (!_tree.rules().destroyIgnoresOpenObjects && !_tree.unused(*child)) return false;
        _tree.destroy(*child);
    }
    _known.erase(name);
    std::erase(*_item.list, child);
    return true;
}

TreeObject::tPtr PlainObject::find(const std::wstring& path) {
    PlainItem* const found = lookup(path);
    if (found && kind() == kTable && found->kind == PlainItem::kContainer) return nullptr;
    return open(_tree, found);
}

// A table shows as many entries as it has names, and no containers.
std::vector<TreeObject::tPtr> PlainObject::children() {
    std::vector<tPtr> children;
    if (!_item.list) return children;
    const bool table = kind() == kTable;
    const std::size_t count = table ? _item.index().size() : _item.list->size();
    for (const bool containers : {false, true}) {
        for (std::size_t i = 0; i < count; ++i) {
            PlainItem* const child = (*_item.list)[i];
            const bool container = child->kind == PlainItem::kContainer;
            if (container == containers && !(container && table)) children.push_back(open(_tree, child));
        }
    }
    return children;
}

PlainItem* PlainObject::make(PlainItem::tKind kind, const std::wstring& name) {
    PlainItem* const made = _tree.make(kind, name);
    add(made);
    return made;
}

bool PlainObject::isFree(const std::wstring& name) const {
    return !name.empty() && !known(name) && (kind() == kContainer || !lookup(name));
}

TreeObject::tPtr PlainObject::makePrimitive(const std::wstring& name, metadata::tValue value, units::tUnit unit) {
    if (kind() == kPrimitive || !isFree(name)) return nullptr;
    PlainItem* const made = make(PlainItem::kPrimitive, name);
    made->valuetype = value;
    if (kind() == kTable) made->unit = unit;
    return open(_tree, made, kMade);
}

TreeObject::tPtr PlainObject::makeTable(const std::wstring& name, int schema) {
    if (kind() == kPrimitive || !isFree(name)) return nullptr;
    auto made = std::make_unique<PlainObject>(_tree, *make(PlainItem::kTable, name), kMade);
    made->inherit(schema);
    return made;
}

TreeObject::tPtr PlainObject::makeContainer(IContainer::tType type, const std::wstring& name, int schema) {
    if (!isFree(name)) return nullptr;
    PlainItem* const item = make(PlainItem::kContainer, name);
    item->type = type;
    auto made = std::make_unique<PlainObject>(_tree, *item, type == IContainer::kNode ? kWithoutRole : kTyped);
    made->inherit(schema);
    return made;
}

}  // namespace lumivard::platform::model
