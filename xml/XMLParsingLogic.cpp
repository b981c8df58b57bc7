#include "xml/XMLParsingLogic.h"

#include <cstring>

#include "lumivard/platform/core/string/StringAlgorithm.h"
#include "lumivard/platform/data/metadata/ISchema.h"
#include "lumivard/platform/data/metadata/ISchemaLocator.h"
#include "record/Base.h"
#include "xml/XMLContainer.h"
#include "xml/XMLPrimitive.h"
#include "xml/XMLRoot.h"
#include "xml/XMLTable.h"

namespace lumivard::platform::data {

using core::string::StringAlgorithm;
using Metadata::Item;
using structure::IContainer;

namespace {

// The keys that the table reserves for itself: no element is named so.
constexpr const char* kEmptyKey = "$$$$$_____empty_key";
constexpr const char* kDeletedKey = "$$$$$_____deleted_key";

constexpr std::size_t kFirstBuckets = 32;
constexpr std::size_t kLongestName = 256;

/// A name as elements are matched by it.
class FoldedName {
public:
    explicit FoldedName(const char* name) {
        std::size_t length = 0;
        for (; name[length] && length < kLongestName; ++length) _text[length] = lower(name[length]);
        _text[length] = '\0';
    }
    operator const char*() const { return _text; }

private:
    static char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

    char _text[kLongestName + 1];
};

}  // namespace

XMLParsingLogic::XMLParsingLogic(IDataStore* store, Structural::Container* target, metadata::ISchemaLocator* locator,
                                 IErrorReporter* reporter)
    : _store(store),
      _target(target),
      _locator(locator),
      _reporter(reporter),
      _parser(this, nullptr),
      _elements(kFirstBuckets) {
    _elements.set_empty_key(kEmptyKey);
    _elements.set_deleted_key(kDeletedKey);
    add(std::make_unique<XMLRoot>(store));
    add(std::make_unique<XMLTable>(store, locator));
    for (unsigned int kind = metadata::kBinary; kind < metadata::kStruct; ++kind) {
        add(std::make_unique<XMLPrimitive>(store, static_cast<metadata::tValue>(kind), nullptr, &_empty));
    }
    add(std::make_unique<XMLPrimitive>(store, metadata::kStruct, locator, &_empty));
    for (const auto type : {IContainer::kNode, IContainer::kGroup, IContainer::kLink}) {
        add(std::make_unique<XMLContainer>(store, type, locator));
    }
}

XMLParsingLogic::~XMLParsingLogic() {
    while (!_stack.empty()) {
        try {
            pop();
        } catch (...) {
            // The reading has ended already; what the store refuses of the value that it broke off in is lost.
        }
    }
}

void XMLParsingLogic::parse(core::io::IDataReader& reader) {
    _parser.parseDocument(&reader);
}

void XMLParsingLogic::notifyStartElement(const char* name, const char** attributes) {
    if (_skipping) {
        ++_skipDepth;
        return;
    }
    if (_inSub) return signal(name, L"cannot nest anything under a sub-element");
    clearText();
    if (_locator) _locator->resolve(WideString());
    const FoldedName folded(name);
    Element* element = find(folded);
    if (!element) return startSub(folded, attributes);
    std::unique_ptr<Item> item = element->open(attributes);
    if (!item) return signal(name, element->message());
    if (!_stack.empty()) return startNested(folded, *element, std::move(item));
    if (!_target) return push(*element, std::move(item));
    item.reset();
    startTarget(name);
}

void XMLParsingLogic::notifyEndElement(const char*) {
    if (_skipping) {
        if (--_skipDepth == 0) _skipping = false;
        return;
    }
    if (_stack.empty()) return;
    const tOpen& top = _stack.back();
    if (_inSub) {
        top.element->set(*top.item, _text.c_str());
        _inSub = false;
    } else {
        if (!_subSeen) top.element->set(*top.item, _text.c_str());
        _subSeen = false;
        pop();
    }
    clearText();
}

void XMLParsingLogic::notifyStartNamespace(const char*, const char*) {}

void XMLParsingLogic::notifyEndNamespace(const char*) {}

void XMLParsingLogic::notifyCharacterData(const char* data, int length) {
    if (length <= 0) return;
    _text.append(data, static_cast<std::size_t>(length));
    _textPending = true;
}

void XMLParsingLogic::startSub(const char* name, const char** attributes) {
    if (_stack.empty() || !_stack.back().element->sub(name, attributes)) {
        return signal(name, L"unknown element, skipping");
    }
    _inSub = true;
    if (_stack.back().element->type() == Record::kPrimitive) _subSeen = true;
}

void XMLParsingLogic::startTarget(const char* name) {
    if (Record::peek(_store, _target->offset()) != Record::kContainer) return signal(name, L"could not...");
    const char* targetName = XMLContainer(_store, _target->type(), nullptr).name();
    if (!targetName) targetName = XMLContainer(_store, IContainer::kGroup, nullptr).name();  // all three take the same
    _stack.push_back({_target, find(targetName), nullptr});
}

void XMLParsingLogic::startNested(const char* name, Element& element, std::unique_ptr<Item> item) {
    const tOpen& top = _stack.back();
    std::unique_ptr<Item> nested = top.element->nest(*top.item, std::move(item));
    if (!nested) return signal(name, L"could not nest the element");
    push(element, std::move(nested));
}

void XMLParsingLogic::push(Element& element, std::unique_ptr<Item> item) {
    Item* plain = item.get();
    _stack.push_back({plain, &element, std::move(item)});
}

void XMLParsingLogic::add(std::unique_ptr<Element> element) {
    if (_elements.insert(std::make_pair(element->name(), element.get())).second) _owned.push_back(std::move(element));
}

Element* XMLParsingLogic::find(const char* name) const {
    const auto found = _elements.find(name);
    return found == _elements.end() ? nullptr : found->second;
}

void XMLParsingLogic::signal(const char* element, const std::wstring& message) {
    _skipping = true;
    _skipDepth = 1;
    if (!_reporter) return;
    const std::wstring line = StringAlgorithm::UTF8Decode(element) + L" : " + message;
    _reporter->located(_parser.line(), _parser.column());
    _reporter->report(line.c_str());
}

void XMLParsingLogic::pop() {
    const tOpen top = std::move(_stack.back());
    _stack.pop_back();
    top.element->close(*top.item);
    if (top.owned) top.owned->save();  // here, since a destructor would keep to itself what the store says
}

void XMLParsingLogic::clearText() {
    if (!_textPending) return;
    _text.clear();
    _textPending = false;
}

}  // namespace lumivard::platform::data
