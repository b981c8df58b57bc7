#pragma once

#include "lumivard/platform/data/structure/IContainer.h"
#include "xml/Element.h"

namespace lumivard::platform::data {

namespace metadata {
class ISchemaLocator;
}

/// The element of the containers of one type: node, group or link.
class XMLContainer final : public Element {
public:
    using tType = structure::IContainer::tType;

    /// `locator` is not owned and may be null.
    XMLContainer(IDataStore* store, tType type, metadata::ISchemaLocator* locator)
        : Element(store), _type(type), _locator(locator) {}

    /// Null for a type that does not exist.
    const char* name() const override;
    const wchar_t* wname() const override;
    unsigned int type() const override;

    std::unique_ptr<Metadata::Item> open(const char* const* attributes) override;
    /// Takes containers whose names are free, and primitives and tables as `addOrMerge` does.
    std::unique_ptr<Metadata::Item> nest(Metadata::Item& parent, std::unique_ptr<Metadata::Item> child) override;
    bool serialize(Metadata::Item& item, core::xml::XMLSerializer& serializer) override;

private:
    tType _type;
    metadata::ISchemaLocator* _locator;
};

}  // namespace lumivard::platform::data
