#include "xml/XMLParsingLogic.h"

#include <algorithm>
#include <utility>

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
    : _store(store), _target(target), _locator(locator), _reporter(reporter), _parser(this, nullptr) {
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
    // The reading has ended already; what the store refuses of the value that it broke off in is lost.
    try {
        if (_held) openHeld();
    } catch (...) {
    }
    while (!_stack.empty()) {
        try {
            pop();
        } catch (...) {
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
    if (_held) openHeld();
    clearText();
    if (_locator) _locator->resolve(WideString());
    Element* element = _elements.find(name);
    if (!element) {  // as it is spelled, which nearly always is in lower case
        const FoldedName folded(name);
        element = _elements.find(static_cast<const char*>(folded));
        if (!element) return startSub(folded, attributes);
    }
    std::unique_ptr<Item> item = open(name, *element, attributes);
    if (!item) return;
    if (!_stack.empty()) return startNested(*element, std::move(item));
    if (!_target) return push(*element, std::move(item), true);
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
    if (_held) {
        finishHeld();
    } else if (_inSub) {
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

std::unique_ptr<Item> XMLParsingLogic::open(const char* name, Element& element, const char** attributes) {
    std::unique_ptr<Item> item;
    if (element.type() == Record::kPrimitive) {
        auto& primitive = static_cast<XMLPrimitive&>(element);
        const bool begun = primitive.begin(attributes);
        if (begun && holdBack(primitive)) return nullptr;
        if (begun) item = primitive.make();
    } else {
        item = element.open(attributes);
    }
    if (!item) signal(name, element.message());
    return item;
}

bool XMLParsingLogic::holdBack(XMLPrimitive& element) {
    if (_stack.empty() || !element.isPlain()) return false;
    OpenChildren& siblings = _stack.back().children;
    if (!siblings.set() || !siblings.claim(element.begun().c_str())) return false;
    _held = &element;
    return true;
}

void XMLParsingLogic::finishHeld() {
    XMLPrimitive& element = *std::exchange(_held, nullptr);
    OpenChildren& siblings = _stack.back().children;
    const unsigned int offset = element.makeWhole(siblings.set()->offset(), _text.c_str());
    if (offset != Item::BADOFF) return siblings.add(offset);
    _held = &element;
    openHeld();
    element.set(*_stack.back().item, _text.c_str());
    pop();
}

void XMLParsingLogic::openHeld() {
    XMLPrimitive& element = *std::exchange(_held, nullptr);
    std::unique_ptr<Item> item = element.make();
    _stack.back().children.settle().add(item->offset());
    push(element, std::move(item), true);
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
    push(*_elements.find(targetName), *_target, false);
}

void XMLParsingLogic::startNested(Element& element, std::unique_ptr<Item> item) {
    tOpen& top = _stack.back();
    if (takesNew(top, element, *item)) return push(element, std::move(item), true);
    if (top.children.set()) top.children.settle();
    const Item* made = item.get();
    std::unique_ptr<Item> nested = top.element->nest(*top.item, std::move(item));
    if (!nested) return signal(element.name(), L"could not nest the element");
    const bool isNew = nested.get() == made;
    push(element, std::move(nested), isNew);
}

bool XMLParsingLogic::takesNew(tOpen& parent, const Element& element, const Item& item) {
    const unsigned int kind = element.type();
    const bool fits = kind == Record::kTable || (kind == Record::kContainer && parent.element->type() == kind);
    if (!parent.children.set() || !fits || !parent.children.claim(item.tag())) return false;
    parent.children.adopt(item.offset());
    return true;
}

XMLParsingLogic::tOpen& XMLParsingLogic::push(Element& element, Item& item, bool isNew) {
    const unsigned int type = element.type();
    const bool takes = type == Record::kTable || type == Record::kContainer;
    auto* set = takes ? static_cast<Metadata::Set*>(&item) : nullptr;
    OpenChildren children(set, isNew && set && set->items() == 0);  // what a schema has put there is in the index alone
    return _stack.emplace_back(tOpen{&item, &element, std::move(children), nullptr});
}

void XMLParsingLogic::push(Element& element, std::unique_ptr<Item> item, bool isNew) {
    push(element, *item, isNew).owned = std::move(item);
}

void XMLParsingLogic::add(std::unique_ptr<Element> element) {
    _owned.push_back(std::move(element));
    _elements.add(*_owned.back());
}

void XMLParsingLogic::signal(const char* element, const std::wstring& message) {
    _skipping = true;
    _skipDepth = 1;
    if (!_reporter) return;
    settle();
    const std::wstring line = StringAlgorithm::UTF8Decode(element) + L" : " + message;
    _reporter->located(_parser.line(), _parser.column());
    _reporter->report(line.c_str());
}

void XMLParsingLogic::settle() {
    for (; _settled < _stack.size(); ++_settled) {
        OpenChildren& children = _stack[_settled].children;
        if (children.set()) children.settle();
    }
}

void XMLParsingLogic::pop() {
    const tOpen top = std::move(_stack.back());
    _stack.pop_back();
    _settled = std::min(_settled, _stack.size());
    top.element->close(*top.item);
    if (top.owned) top.owned->save();  // here, since a destructor would keep to itself what the store says
}

void XMLParsingLogic::clearText() {
    if (!_textPending) return;
    _text.clear();
    _textPending = false;
}

}  // namespace lumivard::platform::data
