#pragma once

#include "lumivard/platform/core/string/StringAlgorithm.h"
#include "lumivard/platform/data/metadata/ISchema.h"
#include "lumivard/platform/data/metadata/ISchemaLocator.h"
#include "xml/Element.h"

namespace lumivard::platform::data {

/// Lets a new container or table inherit from the schemas that its `class` attribute names; nothing happens where the
/// attribute or the locator is missing, or no schema is found.
template <class Kind>
void inheritClass(Kind& item, const char* const* attributes, metadata::ISchemaLocator* locator) {
    const char* uris = Element::find("class", attributes);
    if (!uris || !locator) return;
    const auto schema = locator->resolve(core::string::StringAlgorithm::UTF8Decode(uris).c_str());
    if (schema) item.inherit(schema.get());
}

}  // namespace lumivard::platform::data
