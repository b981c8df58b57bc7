#pragma once

#include <memory>
#include <sparsehash/dense_hash_map>
#include <string>
#include <vector>

#include "design/Container.h"
#include "lumivard/platform/core/hash/Compare.h"
#include "lumivard/platform/core/hash/Kernels.h"
#include "lumivard/platform/core/xml/XMLCallback.h"
#include "lumivard/platform/core/xml/XMLParser.h"
#include "lumivard/platform/data/format/xml/IXMLFrontEnd.h"
#include "metadata/MapAllocator.h"
#include "xml/Element.h"
#include "xml/EmptyPlaces.h"

namespace lumivard::platform::data {

namespace metadata {
class ISchemaLocator;
}

/// Turns the events of one document into records. A faulty element costs its own subtree and nothing more: it is
/// reported and skipped, and reading goes on.
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
        std::unique_ptr<Metadata::Item> owned;
    };

    using tAllocator = Metadata::MapAllocator<std::pair<const char* const, Element*>>;
    using tElements =
        google::dense_hash_map<const char*, Element*, core::tSFHKernel, core::tCharCompareEqual, tAllocator>;

    void add(std::unique_ptr<Element> element);
    Element* find(const char* name) const;

    /// Reports what is wrong with the element whose start tag is being told, and skips it.
    void signal(const char* element, const std::wstring& message);

    void startSub(const char* name, const char** attributes);
    void startTarget(const char* name);
    void startNested(const char* name, Element& element, std::unique_ptr<Metadata::Item> item);
    void push(Element& element, std::unique_ptr<Metadata::Item> item);
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
    tElements _elements;
    std::vector<tOpen> _stack;
    std::string _text;
    bool _textPending = false;
    /// The open primitive has had a sub-element: its own text is no value.
    bool _subSeen = false;
    bool _inSub = false;
    bool _skipping = false;
    unsigned long _skipDepth = 0;
};

}  // namespace lumivard::platform::data
