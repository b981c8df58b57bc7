#include <algorithm>

#include "lumivard/platform/data/units/tUnitGroup.h"
#include "tools/base/Kinds.h"
#include "tools/base/Units.h"
#include "tools/diff/Comparison.h"

// In what two items differ that go together.
namespace lvp::tool {

namespace units = lumivard::platform::data::units;

namespace {

using tIndex = Model::tIndex;
using tSort = Model::tSort;

tSide textSide(const std::string& text) {
    return {.sort = text.empty() ? tSide::tSort::kNothing : tSide::tSort::kText, .values = {text}};
}

tSide flagsSide(unsigned char flags) {
    std::string text;
    for (unsigned int bit = 1; bit < 0x100; bit <<= 1) {
        if ((flags & bit) == 0) continue;
        if (!text.empty()) text += ' ';
        if (bit == kOptional) {
            text += "optional";
        } else if (bit == kHidden) {
            text += "hidden";
        } else {
            text += "0x";
            text += "0123456789abcdef"[bit >> 4];
            text += "0123456789abcdef"[bit & 15];
        }
    }
    return textSide(text);
}

/// What a primitive has: values, or a URI in place of them.
tSide contentSide(const Model& model, tIndex index, std::uint64_t first, std::uint64_t most) {
    if ((model[index].flags & kExternal) == 0) return ValueComparison::shown(model.primitive(index), first, most);
    return {.sort = tSide::tSort::kUri, .values = {model.text(model.detail(index, tAspect::kUri))}};
}

/// The details of an item in an order of their own. What has the same key stays as it stands.
std::vector<Model::tDetail> sortedDetails(const Model& model, tIndex index) {
    std::vector<Model::tDetail> details;
    model.eachDetail(index, [&](const Model::tDetail& detail) {
        if (detail.aspect != tAspect::kUri) details.push_back(detail);
    });
    std::stable_sort(details.begin(), details.end(), [](const Model::tDetail& x, const Model::tDetail& y) {
        return x.aspect != y.aspect ? x.aspect < y.aspect : x.key < y.key;
    });
    return details;
}

/// Goes through two sorted lists of details and calls `work` with those that go together, or null for one that is not
/// there, until it gives false.
template <class Work>
void eachPair(const std::vector<Model::tDetail>& left, const std::vector<Model::tDetail>& right, Work work) {
    auto a = left.begin();
    auto b = right.begin();
    const auto place = [](const Model::tDetail& detail) {
        return (std::uint64_t{static_cast<unsigned char>(detail.aspect)} << 32) | detail.key;
    };
    while (a != left.end() || b != right.end()) {
        const bool onlyA = b == right.end() || (a != left.end() && place(*a) < place(*b));
        const bool onlyB = a == left.end() || (b != right.end() && place(*b) < place(*a));
        if (!work(onlyB ? nullptr : &*a, onlyA ? nullptr : &*b)) return;
        if (!onlyB) ++a;
        if (!onlyA) ++b;
    }
}

}  // namespace

tCounts Comparison::tell(IReport& report, std::uint64_t most) {
    tCounts counts{};
    _most = most;
    const tTold told = [&](tDifference& difference) {
        _step();
        ++counts[static_cast<std::size_t>(difference.what)];
        report.tell(difference);
    };
    for (tIndex i = 0; i < _a.size();) {
        if (_match[i] != Model::kNone && !_left[i]) {
            if (_differ[i]) differ(i, _match[i], &told);
            ++i;
            continue;
        }
        tDifference gone = whole(tWhat::kRemoved, _a, i);
        if (_left[i]) {
            gone.what = tWhat::kMoved;
            gone.from = gone.path;
            gone.path = _b.path(_match[i]);
            gone.a = {};
            gone.unit.clear();
        }
        told(gone);
        i = _a[i].end;
    }
    for (tIndex i = 0; i < _b.size(); i = _taken[i] && !_come[i] ? i + 1 : _b[i].end) {
        if (_taken[i]) continue;
        tDifference come = whole(tWhat::kAdded, _b, i);
        std::swap(come.a, come.b);
        told(come);
    }
    return counts;
}

tDifference Comparison::about(const Model& model, tIndex index) const {
    tDifference difference;
    difference.owner = index == 0 ? std::string() : model.path(model[index].parent);
    difference.path = index == 0 ? model.path(0) : difference.owner;
    if (!difference.path.empty() && index != 0) difference.path += '.';
    if (index != 0) difference.path += model.name(index);
    difference.kind = model.kind(index);
    difference.isSet = model[index].sort != tSort::kPrimitive;
    return difference;
}

/// An item that stands on one side only.
tDifference Comparison::whole(tWhat what, const Model& model, tIndex index) const {
    tDifference difference = about(model, index);
    difference.what = what;
    if (difference.isSet) {
        difference.held = model.below(index);
    } else {
        difference.a = contentSide(model, index, 0, _most);
        difference.unit = unitName(model[index].unit);
    }
    return difference;
}

bool Comparison::differ(tIndex a, tIndex b, const tTold* told) {
    const Model::tItem& left = _a[a];
    const Model::tItem& right = _b[b];
    bool any = false;
    const auto note = [&](tAspect aspect, auto side) {
        any = true;
        if (!told) return;
        tDifference difference = about(_a, a);
        difference.aspect = aspect;
        difference.a = side(_a, a);
        difference.b = side(_b, b);
        (*told)(difference);
    };
    if (left.sort == tSort::kRoot && _rules.wholeStores && left.name != right.name) {
        note(tAspect::kName, [](const Model& model, tIndex i) { return textSide(model.name(i)); });
    }
    if (left.type != right.type) {
        note(tAspect::kKind, [](const Model& model, tIndex i) { return textSide(model.kind(i)); });
    }
    if (flags(left.flags) != flags(right.flags)) {
        note(tAspect::kFlags, [this](const Model& model, tIndex i) { return flagsSide(flags(model[i].flags)); });
    }
    if (left.unit != right.unit) {
        note(tAspect::kUnit, [](const Model& model, tIndex i) { return textSide(unitName(model[i].unit)); });
    }
    if (any && !told) return true;
    if (left.sort == tSort::kPrimitive && valuesDiffer(a, b, told)) any = true;
    if (any && !told) return true;
    if (detailsDiffer(a, b, told)) any = true;
    if (any && !told) return true;
    return (_rules.order && orderDiffers(a, told)) || any;
}

bool Comparison::valuesDiffer(tIndex a, tIndex b, const tTold* told) {
    const bool leftUri = (_a[a].flags & kExternal) != 0;
    const bool rightUri = (_b[b].flags & kExternal) != 0;
    bool same = leftUri == rightUri;
    if (same && leftUri) same = _a.detail(a, tAspect::kUri) == _b.detail(b, tAspect::kUri);
    if (same && !leftUri) same = _values.equal(_a.primitive(a), _b.primitive(b));
    if (!same && told) tellValues(a, b, *told);
    return !same;
}

void Comparison::tellValues(tIndex a, tIndex b, const tTold& told) {
    const bool uri = ((_a[a].flags | _b[b].flags) & kExternal) != 0;
    tDifference difference = about(_a, a);
    difference.aspect = uri ? tAspect::kUri : tAspect::kValue;
    if (!uri) {
        const auto unlike = _values.unlike(_a.primitive(a), _b.primitive(b));
        difference.first = unlike.first;
        difference.differing = unlike.differing;
    }
    if (_a[a].unit == _b[b].unit) difference.unit = unitName(_a[a].unit);
    difference.a = contentSide(_a, a, difference.first, _most);
    difference.b = contentSide(_b, b, difference.first, _most);
    told(difference);
}

/// Whether the details are the same and stand in the same order, which is what one most often finds.
bool Comparison::sameDetails(tIndex a, tIndex b) const {
    std::size_t left = _a[a].details;
    std::size_t right = _b[b].details;
    for (;; ++left, ++right) {
        const Model::tDetail* const x = _a.detailAt(left, a);
        const Model::tDetail* const y = _b.detailAt(right, b);
        if (!x || !y) return !x && !y;
        if (x->aspect != y->aspect || x->key != y->key || x->text != y->text) return false;
    }
}

bool Comparison::detailsDiffer(tIndex a, tIndex b, const tTold* told) {
    if (sameDetails(a, b)) return false;
    bool any = false;
    eachPair(sortedDetails(_a, a), sortedDetails(_b, b), [&](const Model::tDetail* x, const Model::tDetail* y) {
        if (x && y && x->text == y->text) return true;
        any = true;
        if (!told) return false;
        const Model::tDetail& either = x ? *x : *y;
        tDifference difference = about(_a, a);
        difference.aspect = either.aspect;
        if (either.aspect == tAspect::kText) difference.key = _a.text(either.key);
        if (either.aspect == tAspect::kDefault) {
            difference.key = groupName(static_cast<tUnitGroup>(either.key));
        }
        difference.a = textSide(x ? _a.text(x->text) : std::string());
        difference.b = textSide(y ? _b.text(y->text) : std::string());
        (*told)(difference);
        return true;
    });
    return any;
}

bool Comparison::orderDiffers(tIndex a, const tTold* told) {
    std::vector<tIndex> held;  // by A; what is on both sides
    for (tIndex i = a + 1; i < _a[a].end; i = _a[i].end) {
        if (_match[i] != Model::kNone && !_left[i]) held.push_back(i);
    }
    const auto before = [this](tIndex x, tIndex y) { return _match[x] < _match[y]; };
    if (std::is_sorted(held.begin(), held.end(), before)) return false;
    if (!told) return true;
    std::vector<tIndex> other = held;
    std::sort(other.begin(), other.end(), before);
    tDifference difference = about(_a, a);
    difference.aspect = tAspect::kOrder;
    difference.first = held.size();
    for (std::size_t i = held.size(); i-- > 0;) {
        if (held[i] == other[i]) continue;
        difference.first = i;
        ++difference.differing;
    }
    const auto side = [&](const std::vector<tIndex>& items) {
        std::vector<std::string> names;
        const std::uint64_t start = ValueComparison::startOf(items.size(), difference.first, _most);
        const std::uint64_t end = std::min<std::uint64_t>(items.size(), start + _most);
        for (std::uint64_t i = start; i < end; ++i) names.push_back(_a.name(items[i]));
        return tSide{.sort = tSide::tSort::kValues,
                     .form = tForm::kTexts,
                     .values = std::move(names),
                     .start = start,
                     .count = items.size(),
                     .whole = end - start == items.size()};
    };
    difference.a = side(held);
    difference.b = side(other);
    (*told)(difference);
    return true;
}

}  // namespace lvp::tool
