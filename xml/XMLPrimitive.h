#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
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
/// Structs are read in XMLPrimitive+Struct.cpp. How primitives are written stands in PrimitiveWriter.h.
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

    /// The two halves of `open`: takes in the attributes, and makes the item that they tell of. False, with a message,
    /// where `open` gives null.
    bool begin(const char* const* attributes);
    std::unique_ptr<Metadata::Item> make();

    /// The name of what was begun.
    const std::wstring& begun() const { return _start.name; }

    /// Whether what was begun has values of its own and asks for no room before them, so that its record can be made
    /// with all that it has when its text is there.
    bool isPlain() const { return _type != metadata::kStruct && !_start.hasURI && _start.count == 0; }

    /// Makes the record of what was begun, which is plain, with the value of a text, and returns its offset: the same
    /// as `make`, `set` and `close` under that parent, whose list does not know of it yet. `BADOFF`, with nothing done,
    /// for a value that does not fit in a record.
    unsigned int makeWhole(unsigned int parent, const char* text);

    /// Takes in a localized name, or the value or a piece of it; the text for a value of another kind is dropped
    /// without a word, and so is any for a primitive with a URI. A list of numbers is stored by position: a piece that
    /// is no number leaves its place as it is, and nothing behind the last number is touched. A list that does not fit
    /// in the record is dropped whole.
    bool set(Metadata::Item& item, const char* text) override;

    /// Stores the value whose texts have come in: once, since each change of a value rewrites its record.
    void close(Metadata::Item& item) override;

private:
    using tPrimitive = Design::Primitive;

    /// What the attributes of a start tag tell. Their texts use the memory of those before.
    struct tStart {
        std::wstring name;
        std::wstring uri;
        std::wstring locale;
        units::tUnit unit = units::kNoUnit;
        unsigned int count = 0;        ///< of the values to make room for
        const char* schema = nullptr;  ///< of a struct: the attribute's own text, for `make` right after `begin`
        bool hasURI = false;
        bool hasLocale = false;
        bool hasUnit = false;
    };

    void makeStruct(tPrimitive& primitive);

    // A null `primitive` stands for one that is made whole.
    void take(const tPrimitive* primitive, const char* text, bool piece);
    void takeText(const tPrimitive* primitive, const char* text, bool piece);
    void takeBytes(const tPrimitive* primitive, const char* text);
    void takeNumbers(const tPrimitive* primitive, std::string_view text);
    void takeStructs(const tPrimitive& primitive, std::string_view text);

    /// Makes places for `count` values, zeros, in a primitive that has none; none where the document has no more.
    void reserve(tPrimitive& primitive, std::uint64_t count);

    /// The bytes of the open primitive's value as they will be stored, to be changed; at first those that are stored
    /// now.
    std::vector<char>& value(const tPrimitive* primitive);

    /// Puts bytes over the value from its start on; what stands behind them stays.
    void overlay(const tPrimitive* primitive, const void* data, std::size_t size);

    /// Gives back the memory that a long value has taken.
    void forgetValue();

    metadata::tValue _type;
    metadata::ISchemaLocator* _locator;
    EmptyPlaces* _empty;
    tStart _start;
    bool _changed = false;     ///< `_value` is that of the open primitive, changed by its texts
    std::vector<char> _value;  ///< otherwise memory to use again, like the next two
    std::vector<char> _record;
    std::wstring _wide;
};

}  // namespace lumivard::platform::data
