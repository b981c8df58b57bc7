#include "tools/diff/Comparison.h"

#include <algorithm>

#include "tools/base/Kinds.h"
#include "tools/diff/Mix.h"

// Which items of two models go together. In what they differ stands in Comparison+Differences.cpp.
namespace lvp::tool {

namespace {

using tIndex = Model::tIndex;
using tSort = Model::tSort;

/// What two items of one place have to have in common.
std::uint64_t keyOf(const Model& model, tIndex index) {
    return (std::uint64_t{model[index].name} << 2) | static_cast<std::uint64_t>(model[index].sort);
}

std::vector<tIndex> childrenFrom(const Model& model, tIndex child, tIndex end) {
    std::vector<tIndex> children;
    for (; child < end; child = model[child].end) children.push_back(child);
    return children;
}

}  // namespace

Comparison::Comparison(const Model& a, const Model& b, const TextPool& pool, const tRules& rules, tStep step)
    : _a(a),
      _b(b),
      _pool(pool),
      _rules(rules),
      _step(std::move(step)),
      _values(rules.tolerance),
      _match(a.size(), Model::kNone),
      _taken(b.size()),
      _left(a.size()),
      _come(b.size()),
      _differ(a.size()) {}

void Comparison::compare() {
    match();
    findMoved();
    for (tIndex i = 0; i < _a.size(); ++i) {
        _step();
        if (_match[i] == Model::kNone || _left[i]) {
            _equal = false;
        } else if (differ(i, _match[i], nullptr)) {
            _equal = false;
            _differ[i] = true;
        }
    }
    _equal = _equal && std::find(_taken.begin(), _taken.end(), false) == _taken.end();
}

void Comparison::match() {
    // The items that are compared go together whatever they are called, unless one is a value and the other one holds
    // some.
    if (_a[0].sort == _b[0].sort) pair(0, 0);
    for (tIndex i = 0; i < _a.size(); ++i) {
        _step();
        if (_match[i] != Model::kNone) matchChildren(i, _match[i]);
    }
}

void Comparison::matchChildren(tIndex a, tIndex b) {
    tIndex left = a + 1;
    tIndex right = b + 1;
    while (left < _a[a].end && right < _b[b].end && keyOf(_a, left) == keyOf(_b, right)) {
        pair(left, right);
        left = _a[left].end;
        right = _b[right].end;
    }
    if (left < _a[a].end && right < _b[b].end) {
        matchRest(childrenFrom(_a, left, _a[a].end), childrenFrom(_b, right, _b[b].end));
    }
}

void Comparison::matchRest(std::vector<tIndex> left, std::vector<tIndex> right) {
    const auto sort = [](const Model& model, std::vector<tIndex>& items) {
        std::stable_sort(items.begin(), items.end(),
                         [&](tIndex x, tIndex y) { return keyOf(model, x) < keyOf(model, y); });
    };
    sort(_a, left);
    sort(_b, right);
    for (std::size_t i = 0, j = 0; i < left.size() && j < right.size();) {
        const std::uint64_t x = keyOf(_a, left[i]);
        const std::uint64_t y = keyOf(_b, right[j]);
        if (x == y) pair(left[i], right[j]);
        i += x <= y ? 1 : 0;
        j += y <= x ? 1 : 0;
    }
}

void Comparison::pair(tIndex a, tIndex b) {
    _match[a] = b;
    _taken[b] = true;
}

void Comparison::findMoved() {
    std::vector<tIndex> lost;
    std::vector<tIndex> won;
    for (tIndex i = 0; i < _a.size(); i = lost.empty() || lost.back() != i ? i + 1 : _a[i].end) {
        if (_match[i] == Model::kNone) lost.push_back(i);
    }
    for (tIndex i = 0; i < _b.size(); i = won.empty() || won.back() != i ? i + 1 : _b[i].end) {
        if (!_taken[i]) won.push_back(i);
    }
    if (lost.empty() || won.empty() || lost[0] == 0) return;
    const auto from = hashes(_a, lost);
    const auto to = hashes(_b, won);
    for (std::size_t i = 0, j = 0; i < from.size() && j < to.size();) {
        const std::uint64_t x = from[i].first;
        const std::uint64_t y = to[j].first;
        if (x == y) {
            pair(from[i].second, to[j].second);
            _left[from[i].second] = true;
            _come[to[j].second] = true;
        }
        i += x <= y ? 1 : 0;
        j += y <= x ? 1 : 0;
    }
}

/// The hashes of items with all that they hold, in their order.
std::vector<std::pair<std::uint64_t, tIndex>> Comparison::hashes(const Model& model, const std::vector<tIndex>& items) {
    std::vector<std::pair<std::uint64_t, tIndex>> hashes;
    std::vector<std::uint64_t> held;  // by items below the one that is looked at: what its children have come to
    for (const tIndex top : items) {
        held.assign(model[top].end - top, 0);
        for (tIndex i = model[top].end; i-- > top;) {
            _step();
            const std::uint64_t hash = mixed(ownHash(model, i), held[i - top]);
            if (i == top) {
                hashes.emplace_back(hash, top);
            } else {
                std::uint64_t& owner = held[model[i].parent - top];
                owner = _rules.order ? mixed(owner, hash) : owner + hash;
            }
        }
    }
    std::sort(hashes.begin(), hashes.end());
    return hashes;
}

std::uint64_t Comparison::ownHash(const Model& model, tIndex index) {
    const Model::tItem& item = model[index];
    std::uint64_t hash = mixed(_pool.seed(), keyOf(model, index));
    hash = mixed(hash, (std::uint64_t{item.type} << 32) | static_cast<unsigned int>(item.unit));
    hash = mixed(hash, std::uint64_t{flags(item.flags)} | (item.flags & kExternal));
    std::uint64_t details = 0;
    model.eachDetail(index, [&](const Model::tDetail& detail) {
        const std::uint64_t key = (std::uint64_t{detail.key} << 8) | static_cast<std::uint64_t>(detail.aspect);
        details += mixed(mixed(_pool.seed(), key), detail.text);
    });
    hash = mixed(hash, details);
    if (item.sort == tSort::kPrimitive && (item.flags & kExternal) == 0) {
        hash = _values.hash(hash, model.primitive(index));
    }
    return hash;
}

/// The flags that are compared. What came from a schema is no matter of content, and whether there is a URI in place of
/// a value shows by itself.
unsigned char Comparison::flags(unsigned char bits) const {
    return static_cast<unsigned char>(bits & ~(kInherited | kExternal | (_rules.hidden ? 0 : kHidden)));
}

}  // namespace lvp::tool
