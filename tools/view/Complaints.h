#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "lumivard/platform/data/check/Report.h"
#include "tools/schemas/Schemas.h"
#include "tools/view/PageItems.h"

namespace lvp::tool {

/// For each finding the item that it is about; `kNoItem` where none is known. What is found in a list, or in localized
/// names, is about their owner. Of that the checker tells a path of names, in which long ones are cut, so of several
/// items of one name in one place the first is taken.
inline constexpr std::size_t kNoItem = static_cast<std::size_t>(-1);
std::vector<std::size_t> itemsOf(const std::vector<data::check::Finding>& findings, const tPageItems& items);

/// Whether an item still has what the schemas have that it was made with.
struct tConformance {
    std::size_t item;
    std::size_t uris;        ///< in the pool: the schemas that it has all of, or the first that it has not
    std::string difference;  ///< the first one, behind the schema's name; empty where there is none
};

/// Holds all items that name schemas against those of them that are among `schemas`; of the others nothing is said.
/// `found` takes the places in the pool of the URIs that are, those of schemas that lay out structs too. Tables at the
/// top of the store, what stands there in place of a root, and items with a dot in their path cannot be opened and are
/// passed over.
std::vector<tConformance> conformance(data::IDataStore& store, const Schemas& schemas, tPageItems& items,
                                      std::vector<std::size_t>& found);

}  // namespace lvp::tool
