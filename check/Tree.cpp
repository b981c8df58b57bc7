#include "check/Tree.h"

namespace lumivard::platform::data::Check {

void Tree::grow(unsigned int top) {
    place(top, top);
    while (step()) {
    }
}

bool Tree::step() {
    if (_expanded < _case.tree.size()) {
        expand(_case.tree[_expanded++]);
        return true;
    }
    for (auto& waiting : _deferred) {
        if (waiting.empty()) continue;
        const tDeferred next = waiting.front();
        waiting.pop_front();
        follow(next);
        return true;
    }
    return false;
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
    const auto shared = _case.sharedLists.find(list);
    if (shared == _case.sharedLists.end()) {
        take(item, list);
    } else if (shared->second.misplacesIn(node)) {
        defer(kThird, {item, kNone});
    } else if (shared->second.claimed != kNone && shared->second.claimed != item) {
        defer(kSecond, {item, kNone});
    } else {
        take(item, list);
    }
}

void Tree::take(unsigned int owner, unsigned int list) {
    _census[list].owner = owner;
    _census[list].reached = true;
    for (const unsigned int entry : _case.entries(list)) {
        const unsigned int item = _census.find(entry);
        if (item == kNone || !_census[item].mayBeChild() || _census[item].owner != kNone) continue;
        if (isMisplaced(_census[item], _census[owner])) {
            defer(kLast, {owner, item});
        } else if (_census[item].parent == _census[owner].offset) {
            place(item, owner);
        } else {
            defer(kSecond, {owner, item});
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
