#pragma once

#include <map>
#include <string>

#include "lumivard/platform/data/metadata/ISchema.h"
#include "lumivard/platform/data/metadata/ISchemaLocator.h"
#include "lumivard/platform/data/metadata/IStructLayout.h"
#include "lumivard/platform/data/structure/IVisitor.h"

namespace lvp::tool {

/// How the structs of a store are laid out, by the schemas that a locator knows. Each schema is looked for once.
class Layouts {
public:
    using IStructLayout = lumivard::platform::data::metadata::IStructLayout;
    using tPrimitive = lumivard::platform::data::structure::IVisitor::tPrimitive;

    /// The locator may be null, and then knows none.
    explicit Layouts(lumivard::platform::data::metadata::ISchemaLocator* locator) : _locator(locator) {}

    /// The layout of a struct, which belongs to the locator; null for what is no struct, or one whose value is not
    /// whole blocks of one schema that is known and has fields.
    IStructLayout* of(const tPrimitive& item);

private:
    lumivard::platform::data::metadata::ISchemaLocator* _locator;
    std::map<std::wstring, lumivard::platform::data::SharedPtr<lumivard::platform::data::metadata::ISchema>> _known;
};

}  // namespace lvp::tool
