#include "check/GraphRules.h"

#include "check/SetRules.h"
#include "record/Container.h"
#include "record/Root.h"

namespace lumivard::platform::data::Check {

namespace {

constexpr unsigned int kNone = tNode::kNone;
constexpr unsigned int BADOFF = tNode::BADOFF;

/// Tells who stands below whom: each item's number when the tree is walked, and how many stand at and below it.
class Descent {
public:
    explicit Descent(const Case& subject) : _number(subject.census.size()), _below(subject.census.size()) {
        const auto& tree = subject.tree;
        const Census& census = subject.census;
        for (const unsigned int item : tree) _below[item] = 1;
        for (std::size_t i = tree.size(); i-- > 1;) _below[census[tree[i]].owner] += _below[tree[i]];
        std::vector<unsigned int> next(census.size());  // the number that the next item below gets
        for (std::size_t i = 0; i < tree.size(); ++i) {
            const unsigned int item = tree[i];
            if (i != 0) {
                unsigned int& free = next[census[item].owner];
                _number[item] = free;
                free += _below[item];
            }
            next[item] = _number[item] + 1;
        }
    }

    /// Whether an item of the tree is another one, or stands below it.
    bool standsBelow(unsigned int item, unsigned int above) const {
        return _number[item] >= _number[above] && _number[item] - _number[above] < _below[above];
    }

private:
    std::vector<unsigned int> _number;
    std::vector<unsigned int> _below;
};

/// The judgement of the lists of the tree.
class Judge {
public:
    explicit Judge(Case& subject) : _case(subject), _census(subject.census) {}

    void list(unsigned int owner, unsigned int list) {
        _list = list;
        _owner = owner;
        std::vector<unsigned int> items;
        std::size_t index = 0;
        for (const unsigned int offset : _case.entries(list)) {
            const unsigned int item = _census.find(offset);
            if (item == kNone || !_census[item].mayBeChild()) {
                drop(kEntry, index, "entry " + std::to_string(index) + " names " + _case.describe(offset));
            } else if (_census[item].owner == kNone) {
                // The list had no such entry a moment ago: whoever owns this store has changed it meanwhile.
            } else if (_census[item].owner != owner || _census[item].listed || item == owner) {
                again(item, index);
            } else {
                _census[item].listed = true;
                here(item);
                items.push_back(item);
            }
            ++index;
        }
        judgeNames(_case, items);
    }

    /// A set that has to keep a list in which another set's items have their places.
    void kept(unsigned int set, unsigned int list) {
        const unsigned int owner = _census[list].owner;
        if (!descent().standsBelow(set, owner)) return;
        _case.findings.add(kCycle, _census[set].offset,
                           "its children are " + _case.describe(_census[list].offset) + ", which record " +
                               std::to_string(_census[owner].offset) + " has, below which it stands");
    }

private:
    const Descent& descent() {
        if (!_descent) _descent.emplace(_case);
        return *_descent;
    }

    /// An item that has its place here.
    void here(unsigned int item) {
        const tNode& node = _census[item];
        const tNode& owner = _census[_owner];
        if (!node.readable) return;
        if (isMisplaced(node, owner)) {
            _case.findings.add(kMisplaced, node.offset,
                               std::string(kindName(node.kind)) + " in " + kindName(owner.kind));
        }
        if (!node.whole || node.parent == owner.offset) return;
        const std::string to = std::to_string(owner.offset);
        const std::string found = "listed by record " + to + ", its parent is " + _case.describe(node.parent);
        if (_case.findings.add(kParentDiffers, node.offset, found, "set to " + to)) {
            _case.edits.parent(node.offset, owner.offset);
        }
    }

    /// An item that has its place elsewhere, or had it before in this list.
    void again(unsigned int item, std::size_t index) {
        const std::string found = "entry " + std::to_string(index) + " names " + _case.describe(_census[item].offset);
        if (descent().standsBelow(_owner, item)) {
            drop(kCycle, index, found + ", which it stands below");
        } else {
            drop(kListedTwice, index,
                 found + ", which record " + std::to_string(_census[_census[item].owner].offset) + " has");
        }
    }

    /// Drops an entry, unless the list may not be one of children at all.
    void drop(tRule rule, std::size_t index, std::string found) {
        const tNode& list = _census[_list];
        const char* repair = list.asDefaults ? "" : "the entry is dropped";
        if (_case.findings.add(rule, list.offset, std::move(found), repair) && !list.asDefaults) {
            _case.edits.drop(list.offset, index);
        }
    }

    Case& _case;
    Census& _census;
    unsigned int _list = kNone;
    unsigned int _owner = kNone;
    std::optional<Descent> _descent;
};

}  // namespace

bool judgeTop(Case& subject, unsigned int top) {
    const auto fail = [&](const std::string& found) {
        subject.findings.add(kTop, 0, found);
        return false;
    };
    if (top == kNone) return fail("there is no record at offset 0");
    const tNode& node = subject.census[top];
    if (!node.readable) return fail("the record at offset 0 cannot be read");
    if (!node.isEntity()) return fail(std::string("the record at offset 0 is ") + kindName(node.kind));
    const unsigned int least =
        node.kind == Record::kRoot ? Record::Root::kName : Record::Entity::kChildren + sizeof(unsigned int);
    if (node.isSet() && node.size < least) return fail("the record at offset 0 is too short to hold anything");
    if (node.whole && node.parent != BADOFF) {
        const std::string found = "the top's parent is " + subject.describe(node.parent);
        if (subject.findings.add(kParentDiffers, node.offset, found, "set to none")) {
            subject.edits.parent(node.offset, BADOFF);
        }
    }
    return true;
}

std::uint64_t judgeTree(Case& subject) {
    Census& census = subject.census;
    Judge judge(subject);
    std::vector<unsigned int> level(census.size());
    unsigned int deepest = 0;
    for (const unsigned int item : subject.tree) {
        const tNode& node = census[item];
        if (node.owner != item) level[item] = level[node.owner] + 1;
        deepest = std::max(deepest, level[item]);
        const unsigned int list = node.isSet() ? census.find(node.children, Record::kOffsets) : kNone;
        if (list == kNone) continue;
        if (census[list].owner == item) {
            judge.list(item, list);
        } else if (!subject.edits.losesChildren(node.offset)) {
            judge.kept(item, list);
        }
    }
    return deepest;
}

}  // namespace lumivard::platform::data::Check
