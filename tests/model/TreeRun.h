#pragma once

#include <cstdint>
#include <deque>
#include <string>

#include "tests/model/AnyOperation.h"
#include "tests/model/PlainTree.h"
#include "tests/model/TreeOperation.h"

namespace lumivard::platform::model {

/// A tree of the library and one in plain memory, under the same random operations, compared at each of them. It stops
/// at the first difference.
class TreeRun {
public:
    /// Makes the containers at the top of both.
    TreeRun(Tree& real, std::uint64_t seed, const PlainTree::tRules& rules = {});

    /// Does up to `count` operations; false when a difference was found, then or before. Fewer are done when the trees
    /// have become large.
    bool go(std::uint64_t count);

    /// Compares all that there is.
    bool compare();

    std::uint64_t done() const { return _done; }

    /// What differed and which operations led there, as lines for a person in UTF-8; empty as long as nothing did.
    const std::string& difference() const { return _difference; }

private:
    bool differs(const std::wstring& found, const std::wstring& expected);

    PlainTree _plain;
    TreeClient _realClient;
    TreeClient _plainClient;
    AnyOperation _any;
    std::uint64_t _done = 0;
    std::deque<TreeOperation> _last;
    std::string _difference;
};

}  // namespace lumivard::platform::model
