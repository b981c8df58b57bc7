#pragma once

#include <memory>
#include <string>
#include <vector>

#include "design/Container.h"
#include "lumivard/platform/core/xml/XMLCallback.h"
#include "lumivard/platform/core/xml/XMLParser.h"
#include "lumivard/platform/data/format/xml/IXMLFrontEnd.h"
#include "xml/Element.h"
#include "xml/ElementTable.h"
#include "xml/EmptyPlaces.h"
#include "xml/OpenChildren.h"

namespace lumivard::platform::data {

namespace metadata {
class ISchemaLocator;
}

class XMLPrimitive;

/// Turns the events of one document into records. A faulty element costs its own subtree and nothing more: it is
/// reported and skipped, and reading goes on.
///
/// Most elements are primitives with nothing in them but a text. So a primitive that its parent will take in is held
/// back after its start tag: when its end tag comes next, its record is made with all that it has; when anything else
/// comes, it is made and opened as other items are. Nobody is told of anything in between, and the records come to lie
/// in the same order.
///
/// Elements are matched by their names, folded to lower case (ASCII) and cut at 256 bytes. Each open item is an object
/// over its record, on a stack; when the reading ends early, those that are left are closed, innermost first.
///
/// One thread, one document. Other documents may be read at the same time, also by the reporter of this one.
class XMLParsingLogic final : public core::xml::XMLCallback {
public:
    using IErrorReporter = format::xml::IXMLFrontEnd::IErrorReporter;

    /// With a `target` the document fills that container, whatever its top element says, and without one it makes what
    /// it says. Nothing is owned; the last three may be null.
    XMLParsingLogic(IDataStore* store, Structural::Container* target, metadata::ISchemaLocator* locator,
                    IErrorReporter* reporter);
    ~XMLParsingLogic() override;

    /// Reads the document of an opened reader. Throws what `XMLParser::parseDocument` throws, and what the store, the
    /// locator and the reporter throw; items may be open then.
    void parse(core::io::IDataReader& reader);

    void notifyStartElement(const char* name, const char** attributes) override;
    void notifyEndElement(const char* name) override;
    void notifyStartNamespace(const char* prefix, const char* uri) override;
    void notifyEndNamespace(const char* prefix) override;
    void notifyCharacterData(const char* data, int length) override;

private:
    /// An item between its tags. The target of the reading is on the stack without being owned.
    struct tOpen {
        Metadata::Item* item;
        Element* element;
        OpenChildren children;  ///< of a set that takes in primitives, else of none
        std::unique_ptr<Metadata::Item> owned;
    };

    void add(std::unique_ptr<Element> element);

    /// Reports what is wrong with the element whose start tag is being told, and skips it.
    void signal(const char* element, const std::wstring& message);

    /// Opens an item, or holds a primitive back. Null, with a fault reported for an item that cannot be opened.
    std::unique_ptr<Metadata::Item> open(const char* name, Element& element, const char** attributes);
    /// False where the primitive has to be opened.
    bool holdBack(XMLPrimitive& element);
    /// Makes the primitive that was held back: with the text that has come in, or as an open item.
    void finishHeld();
    void openHeld();

    /// Lets all open sets know their children: the reporter may do as it likes with the store.
    void settle();

    void startSub(const char* name, const char** attributes);
    void startTarget(const char* name);
    void startNested(Element& element, std::unique_ptr<Metadata::Item> item);
    /// Puts a set under a parent that may hold it and has no child of its name; false, with nothing done, otherwise.
    static bool takesNew(tOpen& parent, const Element& element, const Metadata::Item& item);
    tOpen& push(Element& element, Metadata::Item& item, bool isNew);
    void push(Element& element, std::unique_ptr<Metadata::Item> item, bool isNew);
    /// Closes the innermost open item.
    void pop();
    void clearText();

    IDataStore* _store;
    Structural::Container* _target;
    metadata::ISchemaLocator* _locator;
    IErrorReporter* _reporter;
    core::xml::XMLParser _parser;
    EmptyPlaces _empty;
    std::vector<std::unique_ptr<Element>> _owned;
    ElementTable _elements;
    std::vector<tOpen> _stack;
    std::size_t _settled = 0;       ///< so many at the bottom of the stack know their children, whatever comes
    XMLPrimitive* _held = nullptr;  ///< the element of the primitive that is held back
    std::string _text;
    bool _textPending = false;
    /// The open primitive has had a sub-element: its own text is no value.
    bool _subSeen = false;
    bool _inSub = false;
    bool _skipping = false;
    unsigned long _skipDepth = 0;
};

}  // namespace lumivard::platform::data
