#include "tests/model/PlainTree.h"

#include "tests/model/PlainObject.h"

namespace lumivard::platform::model {

namespace {

void attach(PlainItem& owner, PlainItem* child) {
    if (!owner.list) owner.list.emplace();
    owner.list->push_back(child);
    child->parent = &owner;
}

std::vector<std::wstring> pieces(const std::wstring& path) {
    std::vector<std::wstring> pieces;
    std::size_t start = 0;
    for (std::size_t dot = path.find(L'.'); dot != std::wstring::npos; dot = path.find(L'.', start)) {
        pieces.push_back(path.substr(start, dot - start));
        start = dot + 1;
    }
    pieces.push_back(path.substr(start));
    return pieces;
}

}  // namespace

PlainTree::PlainTree(const tRules& rules) : _rules(rules) {
    for (PlainItem*& root : _roots) root = make(PlainItem::kRoot, L"root");
    _schemas = make(PlainItem::kRoot, L"schemas");
    const auto add = [&](PlainItem& owner, PlainItem::tKind kind, const wchar_t* name) {
        PlainItem* item = make(kind, name);
        attach(owner, item);
        return item;
    };
    PlainItem* first = add(*_schemas, PlainItem::kTable, L"S0");
    PlainItem* a = add(*first, PlainItem::kPrimitive, L"a");
    a->valuetype = metadata::kDouble;
    const double values[] = {1, 2};
    a->value.assign(reinterpret_cast<const char*>(values), sizeof(values));
    PlainItem* b = add(*first, PlainItem::kTable, L"b");
    b->texts = std::make_shared<tTexts>(tTexts{{L"de", L"B"}});
    PlainItem* c = add(*b, PlainItem::kPrimitive, L"c");
    c->valuetype = metadata::kString;
    c->value = bytesOf(std::wstring());
    PlainItem* second = add(*_schemas, PlainItem::kTable, L"S1");
    add(*second, PlainItem::kPrimitive, L"d")->valuetype = metadata::kInt32;
    add(*second, PlainItem::kTable, L"b");
}

PlainItem* PlainTree::make(PlainItem::tKind kind, const std::wstring& name) {
    ++_alive;
    _items.push_back(std::make_unique<PlainItem>());
    _items.back()->kind = kind;
    _items.back()->number = _items.size() - 1;
    _items.back()->name = name;
    return _items.back().get();
}

TreeObject::tPtr PlainTree::toplevel(unsigned int store, const std::wstring& name) {
    if (name.empty()) return nullptr;
    PlainItem* found = root(store).child(name);
    if (!found) {
        found = make(PlainItem::kContainer, name);
        attach(root(store), found);
    }
    return found->kind == PlainItem::kContainer ? PlainObject::open(*this, found, PlainObject::kWithoutRole) : nullptr;
}

TreeObject::tPtr PlainTree::find(unsigned int store, const std::wstring& path) {
    if (path.empty()) return nullptr;
    PlainItem* found = follow(root(store), path);
    const bool container = found && found->kind == PlainItem::kContainer;
    return container ? PlainObject::open(*this, found, PlainObject::kWithoutRole) : nullptr;
}

PlainItem* PlainTree::follow(PlainItem& start, const std::wstring& path) {
    PlainItem* at = start.dead ? nullptr : &start;
    bool ended = false;
    for (const std::wstring& piece : pieces(path)) {
        if (ended || !at) return nullptr;
        ended = !at->isSet();
        if (!ended) at = at->child(piece);
    }
    return at;
}

void PlainTree::each(PlainItem& item, const std::function<void(PlainItem&)>& visit) {
    std::vector<PlainItem*> waiting{&item};
    while (!waiting.empty()) {
        PlainItem& next = *waiting.back();
        waiting.pop_back();
        const std::vector<PlainItem*> children = next.named();
        waiting.insert(waiting.end(), children.begin(), children.end());
        visit(next);
    }
}

bool PlainTree::unused(PlainItem& item) const {
    bool unused = true;
    each(item, [&](PlainItem& each) { unused = unused && each.open[_process] == 0; });
    return unused;
}

void PlainTree::destroy(PlainItem& item) {
    each(item, [this](PlainItem& each) {
        --_alive;
        each.dead = true;
        each.list.reset();
        each.texts.reset();
    });
}

PlainItem* PlainTree::copy(const PlainItem& source, std::size_t before) {
    return copy(source, {source.texts, true, true}, before);
}

PlainItem* PlainTree::copy(const PlainItem& source, const tCopied& copied, std::size_t before) {
    PlainItem* top = make(source.kind, source.name);
    std::vector<std::pair<const PlainItem*, PlainItem*>> waiting{{&source, top}};
    while (!waiting.empty()) {
        const auto [from, to] = waiting.back();
        waiting.pop_back();
        const bool first = from == &source;
        PlainItem* const parent = to->parent;
        const std::size_t number = to->number;
        *to = *from;
        to->parent = parent;
        to->number = number;
        to->open = {};
        to->list.reset();
        const std::shared_ptr<tTexts>& own = first ? copied.texts : from->texts;
        to->texts = own && !_rules.copiesShareTexts ? std::make_shared<tTexts>(*own) : own;
        if (first && !copied.defaults) to->defaults.reset();
        if (!from->list || (first && !copied.list)) continue;
        to->list.emplace();
        for (const PlainItem* child : *from->list) {
            if (child->number >= before) continue;
            attach(*to, make(child->kind, child->name));
            waiting.emplace_back(child, to->list->back());
        }
    }
    return top;
}

std::wstring PlainTree::anyPath(unsigned int store, std::mt19937_64& random) const {
    const PlainItem* at = _roots[store];
    std::wstring path;
    while (at->list && !at->list->empty()) {
        at = (*at->list)[random() % at->list->size()];
        path += (path.empty() ? L"" : L".") + at->name;
        if (random() % 3 == 0) break;
    }
    return path;
}

}  // namespace lumivard::platform::model
