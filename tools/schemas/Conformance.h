#pragma once

#include <string>

#include "lumivard/platform/data/metadata/ISchema.h"
#include "lumivard/platform/data/metadata/ITable.h"
#include "lumivard/platform/data/structure/IContainer.h"

namespace lvp::tool {

// Why items do not conform to a schema: the first of the schema's items that is not there, is of another kind, or
// stands out of order, in a sentence for a person. Empty when all are found.
//
// `schema` resolved to one table. The library answers yes or no; this walks the same way, through the public
// interfaces alone.

std::string firstDifference(lumivard::platform::data::structure::IContainer& container,
                            lumivard::platform::data::metadata::ISchema* schema);
std::string firstDifference(lumivard::platform::data::metadata::ITable& table,
                            lumivard::platform::data::metadata::ISchema* schema);

}  // namespace lvp::tool
