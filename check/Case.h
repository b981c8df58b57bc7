#pragma once

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "check/Census.h"
#include "check/Edits.h"
#include "check/Findings.h"
#include "check/SharedList.h"

namespace lumivard::platform::data::Check {

/// One store under examination: what all rules look at, and where they put what they find.
class Case {
public:
    Case(IDataStore& examined, const Options& chosen) : store(examined), options(chosen), findings(chosen) {}

    IDataStore& store;
    const Options& options;
    Findings findings;
    Census census{findings};
    Edits edits;

    /// The lists of children that have more than one owner, by the numbers of their nodes.
    std::unordered_map<unsigned int, tSharedList> sharedLists;

    /// Nodes of items in the tree, owners before what they own; the top first.
    std::vector<unsigned int> tree;

    /// Runs `work`, which reads the record of a node. What the store throws becomes a finding, and the node counts as
    /// unreadable; nothing happens for one that does already.
    template <class Work>
    void reading(unsigned int number, Work work) {
        if (!census[number].readable) return;
        if (const auto words = attempt(work)) census.refused(census[number], *words);
    }

    /// The entries of a list; none where it cannot be read.
    std::vector<unsigned int> entries(unsigned int list);

    /// The name of an item; empty where it cannot be read.
    std::wstring name(unsigned int item);

    /// What a reference leads to, in words: "record 12, a list". After the census.
    std::string describe(unsigned int offset) const;

private:
    /// Runs `work` and gives the words of what it threw; memory that ran out is nobody's finding.
    template <class Work>
    static std::optional<std::string> attempt(Work work) {
        try {
            work();
            return std::nullopt;
        } catch (const std::bad_alloc&) {
            throw;
        } catch (const std::exception& error) {
            return error.what();
        }
    }
};

/// A kind of record in words, with its article.
const char* kindName(Record::tType kind);

/// At most some 60 characters of a text; an ellipsis stands for what is left out.
std::wstring shortened(std::wstring text);

/// A text in UTF-8, at most some 60 characters of it, in quotation marks.
std::string quoted(const std::wstring& text);

}  // namespace lumivard::platform::data::Check
