#include "check/Tree.h"

namespace lumivard::platform::data::Check {

void Tree::grow(unsigned int top) {
    place(top, top);
    for (;;) {
        if (_expanded < _case.tree.size()) {
            expand(_case.tree[_expanded++]);
        } else if (!_deferred.empty()) {
            const tDeferred next = _deferred.front();
            _deferred.pop_front();
            follow(next);
        } else {
            return;
        }
    }
}

void Tree::place(unsigned int item, unsigned int owner) {
    tNode& node = _census[item];
    node.owner = owner;
    node.reached = true;
    _case.tree.push_back(item);
}

void Tree::expand(unsigned int item) {
    const tNode& node = _census[item];
    if (!node.isSet()) return;
    const unsigned int list = _census.find(node.children, Record::kOffsets);
    if (list == kNone || _census[list].owner != kNone) return;
    if (isForeign(item, list)) {
        _deferred.push_back({item, kNone});
    } else {
        take(item, list);
    }
}

bool Tree::isForeign(unsigned int owner, unsigned int list) {
    if (!_census[list].shared) return false;
    const unsigned int named = _census[list].offset;
    for (const unsigned int entry : _case.entries(list)) {
        const unsigned int item = _census.find(entry);
        if (item == kNone || !_census[item].readable || !Record::isChild(_census[item].kind)) continue;
        const unsigned int parent = _census.find(_census[item].parent);
        if (parent != kNone && _census[parent].isSet() && _census[parent].children == named) return parent != owner;
    }
    return false;
}

void Tree::take(unsigned int owner, unsigned int list) {
    _census[list].owner = owner;
    _census[list].reached = true;
    for (const unsigned int entry : _case.entries(list)) {
        const unsigned int item = _census.find(entry);
        if (item == kNone || !_census[item].mayBeChild() || _census[item].owner != kNone) continue;
        if (_census[item].parent == _census[owner].offset) {
            place(item, owner);
        } else {
            _deferred.push_back({owner, item});
        }
    }
}

void Tree::follow(const tDeferred& deferred) {
    if (deferred.item != kNone) {
        if (_census[deferred.item].owner == kNone) place(deferred.item, deferred.owner);
        return;
    }
    const unsigned int list = _census.find(_census[deferred.owner].children, Record::kOffsets);
    if (_census[list].owner == kNone) take(deferred.owner, list);
}

}  // namespace lumivard::platform::data::Check
