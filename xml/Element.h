#pragma once

#include <memory>
#include <string>

#include "lumivard/platform/core/xml/XMLSerializer.h"
#include "metadata/Item.h"
#include "units/UnitsDictionary.h"

namespace lumivard::platform::data {

using core::storage::datastore::IDataStore;

/// Knows how the items of one kind stand in a document: how an element is opened, filled and nested, and how an item's
/// head is written. It walks no tree: that is done by `XMLParsingLogic` and `XMLRenderingLogic`.
///
/// While a document is read there is one object for all elements of its name, one after the other and nested, and what
/// it remembers of a sub-element (`_mode`) reaches the next of them. Texts are UTF-8. Attributes come as an array of
/// names and values in turn, ended by a null name.
///
/// One thread at a time. Exceptions of the store pass through.
class Element {
public:
    explicit Element(IDataStore* store) : _store(store) {}
    virtual ~Element() = default;
    Element(const Element&) = delete;
    Element& operator=(const Element&) = delete;

    /// The element's name, for reading and for writing; null when it has none, and is not written then.
    virtual const char* name() const { return nullptr; }
    virtual const wchar_t* wname() const { return nullptr; }

    /// The kind of the records behind these elements, a `Record::tType`; a number above all kinds here.
    virtual unsigned int type() const { return 6; }

    /// Makes the item of a start tag, in the store and attached to nothing. Null when the attributes do not suffice;
    /// `message` then says why.
    virtual std::unique_ptr<Metadata::Item> open(const char* const* attributes);

    /// Puts an item that was just made under an open item of this element. Returns the item that takes in the content
    /// of the new element: the new one, or the one that is there already; null when the new one may not stand there. An
    /// item that is not returned is destroyed, and its record stays in the store, attached to nothing.
    virtual std::unique_ptr<Metadata::Item> nest(Metadata::Item& parent, std::unique_ptr<Metadata::Item> child);

    /// Takes in a text at the end tag of a sub-element of `item`, or of `item` itself. True when a localized name was
    /// set.
    virtual bool set(Metadata::Item& item, const char* text);

    /// The end of `item`, after its last text: what was gathered of it goes into the store.
    virtual void close(Metadata::Item& item);

    /// Opens a sub-element. False when there is none of that name, or when one is still taken for open.
    virtual bool sub(const char* name, const char* const* attributes);

    /// Writes the start tag, the attributes, what stands before the children and the value; the element stays open.
    /// False when it cannot be written.
    virtual bool serialize(Metadata::Item& item, core::xml::XMLSerializer& serializer);

    /// What was wrong last; it stays when something succeeds.
    const std::wstring& message() const { return _message; }

    /// The value of an attribute of exactly that name, the first if there are several; null when there is none.
    static const char* find(const char* name, const char* const* attributes);

    /// Writes the localized names of an item; false when it has none.
    static bool writeNames(Metadata::Item& item, core::xml::XMLSerializer& serializer);

    /// The units by name, the same object for all; it never changes.
    static const UnitsDictionary& units();

protected:
    /// The sub-element that is open.
    enum class tMode { kNone, kName, kVal, kDefault };

    /// Notes what is wrong, and gives the null that goes with it.
    std::unique_ptr<Metadata::Item> refuse(std::wstring message);

    /// Whether the attributes say that the item is optional.
    static bool isOptional(const char* const* attributes);

    /// Opens the sub-element for the localized name whose locale the attributes tell.
    void openName(const char* const* attributes);

    /// Gives an item the localized name whose sub-element ends.
    void closeName(Metadata::Item& item, const char* text);

    static constexpr const wchar_t* kMissingName = L"missing mandatory 'id' attribute";

    IDataStore* _store;
    std::wstring _message;
    tMode _mode = tMode::kNone;
    std::string _locale;
};

}  // namespace lumivard::platform::data
