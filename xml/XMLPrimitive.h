#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "design/Primitive.h"
#include "xml/Element.h"
#include "xml/EmptyPlaces.h"

namespace lumivard::platform::data {

namespace metadata {
class ISchemaLocator;
}

/// The element of the primitives of one value kind.
///
/// Defined by aspect: reading in XMLPrimitive.cpp, writing in XMLPrimitive+Writing.cpp, both for structs in
/// XMLPrimitive+Struct.cpp.
class XMLPrimitive final : public Element {
public:
    /// `locator` is for structs alone. `empty` is what the document that is read may reserve; without it there is no
    /// bound. Neither is owned, both may be null.
    XMLPrimitive(IDataStore* store, metadata::tValue kind, metadata::ISchemaLocator* locator,
                 EmptyPlaces* empty = nullptr)
        : Element(store), _type(kind), _locator(locator), _empty(empty) {}

    /// Null for a kind that does not exist.
    const char* name() const override;
    const wchar_t* wname() const override;
    unsigned int type() const override;

    std::unique_ptr<Metadata::Item> open(const char* const* attributes) override;

    /// Takes in a localized name, or the value or a piece of it; the text for a value of another kind is dropped
    /// without a word, and so is any for a primitive with a URI. A list of numbers is stored by position: a piece that
    /// is no number leaves its place as it is, and nothing behind the last number is touched. A list that does not fit
    /// in the record is dropped whole.
    bool set(Metadata::Item& item, const char* text) override;

    /// Stores the value whose texts have come in: once, since each change of a value rewrites its record.
    void close(Metadata::Item& item) override;

    bool serialize(Metadata::Item& item, core::xml::XMLSerializer& serializer) override;

private:
    using tPrimitive = Design::Primitive;
    using tSerializer = core::xml::XMLSerializer;

    void openStruct(tPrimitive& primitive, const char* schema, unsigned int count);
    void setText(const tPrimitive& primitive, const char* text, bool piece);
    void setBytes(const tPrimitive& primitive, const char* text);
    void setNumbers(const tPrimitive& primitive, std::string_view text);
    void setStructs(const tPrimitive& primitive, std::string_view text);

    /// Makes places for `count` values, zeros, in a primitive that has none; none where the document has no more.
    void reserve(tPrimitive& primitive, std::uint64_t count);

    /// The bytes of the open primitive's value as they will be stored, to be changed; at first those that are stored
    /// now.
    std::vector<char>& value(const tPrimitive& primitive);

    /// Puts bytes over the value from its start on; what stands behind them stays.
    void overlay(const tPrimitive& primitive, const void* data, std::size_t size);

    void writeValue(const tPrimitive& primitive, bool named, tSerializer& serializer) const;
    void writeNumbers(const tPrimitive& primitive, tSerializer& serializer) const;
    void writeStructs(const tPrimitive& primitive, tSerializer& serializer) const;

    metadata::tValue _type;
    metadata::ISchemaLocator* _locator;
    EmptyPlaces* _empty;
    std::optional<std::vector<char>> _value;  ///< of the open primitive, once a text has changed it
};

}  // namespace lumivard::platform::data
