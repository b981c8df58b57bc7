#pragma once

#include <cstdint>
#include <vector>

#include "lumivard/platform/data/metadata/ISchemaLocator.h"
#include "lumivard/platform/data/metadata/IStructLayout.h"
#include "lumivard/platform/data/structure/IVisitor.h"
#include "tools/base/JsonWriter.h"

namespace lvp::tool {

/// How much of one value goes into a page.
struct tPageLimits {
    std::uint64_t elements = 10'000;
    std::uint64_t characters = 100'000;

    static tPageLimits none() { return {0, 0}; }  ///< all of it
};

/// What has to be said of the values that were written.
struct tPageValues {
    using IStructLayout = lumivard::platform::data::metadata::IStructLayout;

    /// A value of which a part was written, and how many elements it has; blocks, of a struct that was laid out.
    struct tCut {
        std::size_t item;
        std::uint64_t total;
    };
    /// A struct that was written field by field: its layout is one of `layouts`, which belong to the locator.
    struct tLayout {
        std::size_t item;
        std::size_t layout;
    };

    std::size_t items = 0;  ///< how many values were written
    std::vector<tCut> cuts;
    std::vector<tLayout> structs;
    std::vector<IStructLayout*> layouts;
};

/// Writes the values of a store as one array, in the order of `tPageItems`, while they are read: null for what has no
/// value or no elements, one element by itself, and several as an array. Bytes are hexadecimal digits. Numbers that
/// JSON, or the page, has no number for are texts: integers beyond 2^53, "NaN", "Infinity", "-Infinity". Structs are
/// arrays of their blocks, which are arrays of their fields, where the locator, which may be null, knows a schema.
tPageValues writeValues(JsonWriter& json, lumivard::platform::data::IDataStore& store,
                        lumivard::platform::data::metadata::ISchemaLocator* locator, const tPageLimits& limits);

}  // namespace lvp::tool
