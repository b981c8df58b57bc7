#include "check/LiveRules.h"

namespace lumivard::platform::data::Check {

namespace {

constexpr unsigned int kNone = tNode::kNone;

/// The walk over what nothing reaches.
class Strays {
public:
    explicit Strays(Case& subject)
        : _case(subject), _census(subject.census), _named(_census.size()), _seen(_census.size()) {}

    std::vector<unsigned int> run() {
        for (unsigned int number = 0; number < _census.size(); ++number) {
            if (isStray(number)) eachBelow(number, [this](unsigned int below) { _named[below] = true; });
        }
        // Subtrees begin with what no other stray names; what is left then are rings, which begin anywhere.
        for (const bool rings : {false, true}) {
            for (unsigned int number = 0; number < _census.size(); ++number) {
                if (isStray(number) && !_seen[number] && (rings || !_named[number])) subtree(number);
            }
        }
        return std::move(_all);
    }

private:
    /// Records that could not be read may be what a reference leads to that cannot be read either.
    bool isStray(unsigned int number) const { return !_census[number].reached && _census[number].readable; }

    /// Calls `visit(number)` for each stray that a stray names.
    template <class Visit>
    void eachBelow(unsigned int number, Visit visit) {
        const tNode& node = _census[number];
        const auto stray = [&](unsigned int other) {
            if (other != kNone && isStray(other)) visit(other);
        };
        if (node.kind == Record::kOffsets) {
            if (node.asDefaults && !node.asChildren) return;
            for (const unsigned int entry : _case.entries(number)) {
                const unsigned int item = _census.find(entry);
                if (item != kNone && _census[item].mayBeChild()) stray(item);
            }
        }
        if (!node.isEntity()) return;
        if (node.isSet()) stray(_census.find(node.children, Record::kOffsets));
        stray(_census.find(node.locale, Record::kLocale));
        stray(_census.find(node.defaults, Record::kOffsets));
    }

    void subtree(unsigned int root) {
        std::vector<unsigned int> waiting{root};
        std::uint64_t count = 0;
        std::uint64_t bytes = 0;
        _seen[root] = true;
        while (!waiting.empty()) {
            const unsigned int number = waiting.back();
            waiting.pop_back();
            ++count;
            bytes += _census[number].size;
            _all.push_back(_census[number].offset);
            eachBelow(number, [&](unsigned int below) {
                if (_seen[below]) return;
                _seen[below] = true;
                waiting.push_back(below);
            });
        }
        report(root, count, bytes);
    }

    void report(unsigned int root, std::uint64_t count, std::uint64_t bytes) {
        const tNode& node = _census[root];
        std::string found = kindName(node.kind);
        if (node.isEntity()) found.append(" ").append(quoted(_case.name(root)));
        if (count > 1) found += ", with what is below it";
        found.append(": ").append(std::to_string(count)).append(count == 1 ? " record of " : " records of ");
        found.append(std::to_string(bytes)).append(" bytes, which nothing reaches");
        const char* repair = _case.options.reclaim ? "erased by a repair that finds no damage" : "";
        _case.findings.add(kUnattached, node.offset, std::move(found), repair);
    }

    Case& _case;
    const Census& _census;
    std::vector<bool> _named;  ///< by another stray
    std::vector<bool> _seen;
    std::vector<unsigned int> _all;
};

}  // namespace

void judgeCounts(Case& subject) {
    for (unsigned int number = 0; number < subject.census.size(); ++number) {
        const tNode& node = subject.census[number];
        if (!node.isEntity() || node.refs == 0) continue;
        const std::string found = "it counts " + std::to_string(node.refs) +
                                  (node.refs == 1 ? " live object" : " live objects") +
                                  ": stale, unless somebody has it open";
        if (subject.findings.add(kStaleCount, node.offset, found, "set to 0")) subject.edits.refs(node.offset);
    }
}

std::vector<unsigned int> judgeUnattached(Case& subject) {
    return Strays(subject).run();
}

}  // namespace lumivard::platform::data::Check
