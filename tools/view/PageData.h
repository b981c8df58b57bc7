#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "lumivard/platform/data/check/Report.h"
#include "tools/schemas/Schemas.h"
#include "tools/view/PageValues.h"

namespace lvp::tool {

/// What a page is made of.
struct tPageSource {
    std::string name;  ///< of the store, as the page tells it
    lumivard::platform::data::IDataStore* store = nullptr;
    const Schemas* schemas = nullptr;                ///< those that were given
    lumivard::platform::data::check::Report report;  ///< of the checker
    tPageLimits limits;
};

/// Writes what the page shows, as one JSON object. Items are numbers from 0, the root, in the order of a walk that
/// shows a set before what it holds; texts that come often are places in `strings`, of which the first is empty.
///
///     store       text: the name of the store
///     version     of the root
///     limits      {elements, characters}: how much of one value is here; 0 for all
///     kinds       texts: the names of the kinds of values, by their numbers
///
///     level       one number for each item: how many items it stands in
///     kind        what it is: a kind of values, or -1 root, -2 node, -3 group, -4 link, -5 table, -6 another container
///     name        place of its name
///     flags       as IProperty::flags
///     unit        place of the unit's name
///     value       as writeValues has it
///
///     cut         [item, elements]: the value is longer than what is here; of texts: characters, of layouts: blocks
///     layout      [item, layout]: the struct is shown by one of `layouts`
///     layouts     [[name, kind] for each field]
///     base, target, uri, schema, locale
///                 [item, place]: the schemas inherited from, a link's target, where the value is, what lays a struct
///                 out, the language of the value
///     texts       [item, place of the locale, text]: localized names
///     defaults    [item, place of the unit, kind]: of tables
///
///     schemas     places of the URIs that were found, or null where no schemas were given
///     conformance [item, place of URIs, text]: empty for an item that has all of these schemas, otherwise what it
///                 lacks of this one; null where none were given
///     findings    [item or -1, severity, code, path, found, repair]
///     severities  {note, stale, damage, fatal}: how many findings there are of each
///     unattached  {records, bytes} that nothing reaches, of which there are no findings
///
///     strings     texts
void writePageData(std::ostream& out, const tPageSource& source);

}  // namespace lvp::tool
