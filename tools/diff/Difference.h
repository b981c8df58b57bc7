#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "tools/base/Values.h"
#include "tools/diff/Model.h"

namespace lvp::tool {

/// What one side has where the two differ.
struct tSide {
    enum class tSort : unsigned char { kNothing, kText, kUri, kValues };

    tSort sort = tSort::kNothing;
    tForm form = tForm::kNothing;     ///< of values
    std::vector<std::string> values;  ///< the text, or those of the values that are shown
    std::uint64_t start = 0;          ///< the index of the first one that is shown
    std::uint64_t count = 0;          ///< of all values; of bytes, all of which that are shown are one text

    bool whole = true;  ///< all that there is is shown
};

enum class tWhat : unsigned char { kAdded, kRemoved, kChanged, kMoved };

/// The name of what has become of an item: "added".
inline const char* nameOf(tWhat what) {
    static constexpr std::array kpNames{"added", "removed", "changed", "moved"};
    return kpNames[static_cast<std::size_t>(what)];
}

/// One difference. Paths and texts are as they stand in the store.
struct tDifference {
    tWhat what = tWhat::kChanged;
    std::string owner;       ///< the path of what holds the item
    std::string path;        ///< in A; in B of what was added, and the new one of what was moved
    std::string from;        ///< in A, of what was moved
    std::string kind;        ///< in A; in B of what was added
    bool isSet = false;      ///< it may hold items
    std::uint64_t held = 0;  ///< how many items a set holds that was added, removed or moved

    tAspect aspect = tAspect::kValue;  ///< of what was changed
    std::string key;                   ///< the language of a text, the group of a default
    tSide a;
    tSide b;
    std::string unit;             ///< of values, where it is the same on both sides
    std::uint64_t first = 0;      ///< of values that were changed, the index of the first one that differs
    std::uint64_t differing = 0;  ///< and how many do
};

/// How many differences there are.
using tCounts = std::array<std::uint64_t, 4>;

/// Is told one difference after the other.
class IReport {
public:
    virtual ~IReport() = default;
    virtual void tell(const tDifference& difference) = 0;
};

}  // namespace lvp::tool
