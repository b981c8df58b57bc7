#pragma once

#include "xml/Element.h"

namespace lumivard::platform::data {

/// The element of a store's root.
class XMLRoot final : public Element {
public:
    using Element::Element;

    const char* name() const override { return "root"; }
    const wchar_t* wname() const override { return L"root"; }
    unsigned int type() const override;

    /// Sets the store's version too, when the attributes tell one.
    std::unique_ptr<Metadata::Item> open(const char* const* attributes) override;
    /// Takes tables and containers whose names are free.
    std::unique_ptr<Metadata::Item> nest(Metadata::Item& parent, std::unique_ptr<Metadata::Item> child) override;
    bool serialize(Metadata::Item& item, core::xml::XMLSerializer& serializer) override;
};

}  // namespace lumivard::platform::data
