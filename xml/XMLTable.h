#pragma once

#include <string>

#include "xml/Element.h"

namespace lumivard::platform::data {

namespace metadata {
class ISchemaLocator;
}

/// The element of a table. Besides localized names it takes sub-elements for the defaults of unit groups.
class XMLTable final : public Element {
public:
    /// `locator` is not owned and may be null.
    XMLTable(IDataStore* store, metadata::ISchemaLocator* locator) : Element(store), _locator(locator) {}

    const char* name() const override { return "table"; }
    const wchar_t* wname() const override { return L"table"; }
    unsigned int type() const override;

    std::unique_ptr<Metadata::Item> open(const char* const* attributes) override;
    /// Takes primitives and tables as `addOrMerge` does.
    std::unique_ptr<Metadata::Item> nest(Metadata::Item& parent, std::unique_ptr<Metadata::Item> child) override;
    /// At the end of a default of a type that does not exist, that default stays open: from there on no table of the
    /// document takes a sub-element.
    bool set(Metadata::Item& item, const char* text) override;
    bool sub(const char* name, const char* const* attributes) override;
    /// The defaults stand before the names.
    bool serialize(Metadata::Item& item, core::xml::XMLSerializer& serializer) override;

private:
    std::string _unit;
    std::string _typeName;
    metadata::ISchemaLocator* _locator;
};

}  // namespace lumivard::platform::data
