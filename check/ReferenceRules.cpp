#include "check/ReferenceRules.h"

#include "check/Units.h"
#include "design/Stride.h"

namespace lumivard::platform::data::Check {

namespace {

constexpr unsigned int kNone = tNode::kNone;
constexpr unsigned int BADOFF = tNode::BADOFF;

/// The judgement of what one item names.
class Judge {
public:
    Judge(Case& subject, unsigned int item) : _case(subject), _item(item), _node(subject.census[item]) {}

    void run() {
        if (_node.isSet()) children();
        locale();
        if (_node.kind == Record::kTable) defaults();
    }

private:
    void children() {
        const unsigned int list = named(_node.children, Record::kOffsets, kChildren, "its children are ");
        if (list == kDead) return _case.edits.children(_node.offset);
        if (list == kNone || own(list)) return;
        // One that serves as defaults too: who is wrong cannot be told.
        const bool clear = !_case.census[list].asDefaults && !leadsOn(list);
        if (shared(list, "its children are ", clear ? "set to none" : "") && clear) _case.edits.children(_node.offset);
    }

    /// Whether cursors get from here to items of another's list that they do not get to from there.
    bool leadsOn(unsigned int list) const {
        const auto shared = _case.sharedLists.find(list);
        const tNode& owner = _case.census[_case.census[list].owner];
        return shared != _case.sharedLists.end() && shared->second.needs(_node, owner);
    }

    void locale() {
        const unsigned int names = named(_node.locale, Record::kLocale, kLocale, "its localized names are ");
        if (names == kDead) return _case.edits.locale(_node.offset);
        if (names != kNone && !own(names)) shared(names, "its localized names are ", "");
    }

    void defaults() {
        const unsigned int list = named(_node.defaults, Record::kOffsets, kDefaults, "its defaults are ");
        if (list == kDead) return _case.edits.defaults(_node.offset);
        if (list == kNone) return;
        const bool alone = own(list) && !_case.census[list].asChildren;
        if (alone) {
            pairs(list);
        } else {
            shared(list, "its defaults are ", "");
        }
    }

    void pairs(unsigned int list) {
        const std::vector<unsigned int> entries = _case.entries(list);
        const unsigned int offset = _case.census[list].offset;
        if (entries.size() % 2 != 0) {
            _case.findings.add(kDefaultPairs, offset, "there are " + std::to_string(entries.size()) + " entries");
        }
        for (std::size_t i = 0; i + 1 < entries.size(); i += 2) {
            const auto kind = static_cast<metadata::tValue>(entries[i + 1]);
            if (entries[i] != 0 && isUnit(entries[i]) && Design::stride(kind) != 0) continue;
            _case.findings.add(kDefaultPairs, offset,
                               "pair " + std::to_string(i / 2) + " is the unit " + std::to_string(entries[i]) +
                                   " and the kind of value " + std::to_string(entries[i + 1]));
        }
    }

    /// What a finding with a repair gives in place of a node.
    static constexpr unsigned int kDead = kNone - 1;

    /// The node that a reference leads to; `kDead` where it leads to nothing of that kind, which was found, and `kNone`
    /// where there is no reference.
    unsigned int named(unsigned int offset, Record::tType kind, tRule rule, const char* words) {
        if (offset == BADOFF) return kNone;
        const unsigned int number = _case.census.find(offset, kind);
        if (number != kNone) return number;
        const bool found =
            _case.findings.add(rule, _node.offset, words + _case.describe(offset), "set to none", most());
        return found ? kDead : kNone;
    }

    /// Makes a record this item's, unless it has an owner; whether it is this item's.
    bool own(unsigned int number) {
        tNode& node = _case.census[number];
        if (node.owner == kNone) node.owner = _item;
        if (_node.reached) node.reached = true;
        return node.owner == _item;
    }

    bool shared(unsigned int number, const char* words, const char* repair) {
        const tNode& node = _case.census[number];
        std::string found = words + _case.describe(node.offset) + ", which ";
        found += node.owner == _item ? "serves as a list of children, too"
                                     : "record " + std::to_string(_case.census[node.owner].offset) + " has";
        return _case.findings.add(kShared, _node.offset, std::move(found), repair, most());
    }

    /// How much it matters what this item names. A removal that broke off leaves an item that names what is gone
    /// already: where nothing reaches an item, nothing is lost by it.
    tSeverity most() const { return _node.reached ? tSeverity::kFatal : tSeverity::kNote; }

    Case& _case;
    unsigned int _item;
    const tNode& _node;
};

/// What is in a list that more than one record names. What cannot be read may be anything.
tSharedList look(Case& subject, unsigned int list) {
    const Census& census = subject.census;
    tSharedList shared;
    const std::vector<unsigned int> entries = subject.entries(list);
    shared.containers = shared.primitives = !census[list].readable;
    for (const unsigned int entry : entries) {
        const unsigned int item = census.find(entry);
        if (item == kNone || !census[item].mayBeChild()) continue;
        shared.containers |= census[item].mayBe(Record::kContainer);
        shared.primitives |= census[item].mayBe(Record::kPrimitive);
        const unsigned int parent = census.find(census[item].parent);
        const bool claims = parent != kNone && census[parent].isSet() && census[parent].children == census[list].offset;
        if (claims && shared.claimed == kNone) shared.claimed = parent;
    }
    return shared;
}

}  // namespace

void noteLists(Case& subject) {
    Census& census = subject.census;
    for (unsigned int number = 0; number < census.size(); ++number) {
        const tNode& node = census[number];
        if (!node.isEntity()) continue;
        const unsigned int list = node.isSet() ? census.find(node.children, Record::kOffsets) : kNone;
        if (list != kNone) {
            census[list].shared = census[list].asChildren;
            census[list].asChildren = true;
        }
        const unsigned int pairs = census.find(node.defaults, Record::kOffsets);
        if (pairs != kNone) census[pairs].asDefaults = true;
    }
    for (unsigned int number = 0; number < census.size(); ++number) {
        if (census[number].shared) subject.sharedLists.emplace(number, look(subject, number));
    }
}

void judgeReferences(Case& subject) {
    for (const unsigned int item : subject.tree) {
        if (subject.census[item].isEntity()) Judge(subject, item).run();
    }
    for (unsigned int number = 0; number < subject.census.size(); ++number) {
        const tNode& node = subject.census[number];
        if (node.isEntity() && !node.reached) Judge(subject, number).run();
    }
}

}  // namespace lumivard::platform::data::Check
