#include "lumivard/platform/core/xml/XMLParser.h"

#include <algorithm>
#include <exception>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <expat.h>

namespace lumivard::platform::core::xml {

namespace {

constexpr XML_Index kLeastBlock = 65536;

/// The longest tag, comment or processing instruction, in bytes. Expat holds it whole, several times over, and so does
/// whoever makes something of it.
constexpr XML_Index kLongestTag = (8 << 20) - 1;

/// What is read before the first of it is parsed. Expat counts the lines of each block but the last, a fifth of its
/// work; most documents are one block so.
constexpr int kFirstBlock = kLongestTag;

/// How deep elements may stand in each other. What is open takes memory, here and in whoever makes something of it.
constexpr unsigned long kDeepest = 200'000;

/// Fills `buffer` from the reader, and returns less than `size` only at the reader's end, or where it throws.
int fill(io::IDataReader& reader, char* buffer, int size, std::exception_ptr& thrown) {
    int filled = 0;
    try {
        while (filled < size) {
            const auto room = static_cast<unsigned long>(size - filled);
            const unsigned long count = reader.read(buffer + filled, room);
            // A reader that takes a failed system call's -1 for a count must not make us believe it.
            if (count > room) throw std::length_error("a reader returned more than it was asked for");
            if (count == 0) break;
            filled += static_cast<int>(count);
        }
    } catch (...) {
        thrown = std::current_exception();
    }
    return filled;
}

/// What an attribute that declares a namespace is called, for the default one and, with the prefix behind it, for
/// others.
constexpr std::string_view kDeclaration = "xmlns";
constexpr std::string_view kPrefixedDeclaration = "xmlns:";

bool isDeclaration(const char* attribute) {
    if (*attribute != kDeclaration.front()) return false;  // as nearly all of them
    const std::string_view name(attribute);
    return name == kDeclaration || name.substr(0, kPrefixedDeclaration.size()) == kPrefixedDeclaration;
}

/// The prefix that such an attribute declares; null for the default namespace.
const char* declaredPrefix(const std::string& attribute) {
    return attribute == kDeclaration ? nullptr : attribute.c_str() + kPrefixedDeclaration.size();
}

}  // namespace

/// One document at a time, between the reader, expat and the callback.
///
/// Expat is C: no exception may pass through it. Whatever is thrown below it is kept, expat is told to stop, and
/// `feed` throws it again when expat has returned. Expat may call some handlers after it was told to stop; they do
/// nothing then.
class XMLParser::State {
public:
    explicit State(XMLCallback* callback) : _callback(callback) {}

    void parse(io::IDataReader& reader) {
        start();
        try {
            while (feed(reader)) {
            }
        } catch (...) {
            if (!std::exchange(_thrown, nullptr)) notePlace();
            _parser.reset();
            throw;
        }
    }

    unsigned long line() const { return _parser ? XML_GetCurrentLineNumber(_parser.get()) : _line; }
    unsigned long column() const { return _parser ? XML_GetCurrentColumnNumber(_parser.get()) + 1 : _column; }

private:
    struct Free {
        void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
    };

    /// A namespace declaration in force: the attribute that made it, and the depth of its element, from 1.
    struct Namespace {
        unsigned long depth;
        std::string attribute;
    };

    void start() {
        std::unique_ptr<XML_ParserStruct, Free> parser(XML_ParserCreate(nullptr));
        if (!parser) throw std::bad_alloc();
        _parser = std::move(parser);
        _fed = 0;
        _depth = 0;
        _namespaces.clear();
        _seenDocumentType = false;
        XML_SetUserData(_parser.get(), this);
        XML_SetElementHandler(_parser.get(), &State::onStartElement, &State::onEndElement);
        XML_SetCharacterDataHandler(_parser.get(), &State::onCharacterData);
        XML_SetStartDoctypeDeclHandler(_parser.get(), &State::onStartDocumentType);
        XML_SetEntityDeclHandler(_parser.get(), &State::onEntityDeclaration);
        XML_SetAttlistDeclHandler(_parser.get(), &State::onAttributeDeclaration);
        XML_SetSkippedEntityHandler(_parser.get(), &State::onSkippedEntity);
        XML_SetNotStandaloneHandler(_parser.get(), &State::onNotStandalone);
    }

    void notePlace() {
        _line = line();
        _column = column();
    }

    /// Hands the next block of the document to expat; false after the last one. What came before a failure of the
    /// reader is parsed.
    bool feed(io::IDataReader& reader) {
        int size = blockSize();
        std::exception_ptr failed;
        char* block = buffer(size);
        int filled = fill(reader, block, size, failed);
        if (_fed == 0 && filled == size) {
            const std::string head(block, static_cast<std::size_t>(filled));
            size = kFirstBlock;
            block = buffer(size);
            head.copy(block, head.size());
            filled += fill(reader, block + filled, size - filled, failed);
        }
        const bool last = filled < size && !failed;
        const XML_Status status = XML_ParseBuffer(_parser.get(), filled, last);
        if (_thrown) std::rethrow_exception(_thrown);
        if (status != XML_STATUS_OK) failParsing();
        if (failed) std::rethrow_exception(failed);
        _fed += filled;
        return !last;
    }

    char* buffer(int size) const {
        void* const block = XML_GetBuffer(_parser.get(), size);
        if (!block) throw std::bad_alloc();
        return static_cast<char*>(block);
    }

    /// Expat looks at a tag or comment that is not whole again from its beginning with each block. So that a long one
    /// costs time in proportion to its length, a block is as long as what waits to become whole, up to the length that
    /// is accepted.
    int blockSize() const {
        const XML_Index done = XML_GetCurrentByteIndex(_parser.get());
        const XML_Index waiting = done < 0 ? 0 : _fed - done;
        if (waiting >= kLongestTag) fail("a tag, comment or instruction is too long");
        return static_cast<int>(std::min(std::max(waiting, kLeastBlock), kLongestTag - waiting));
    }

    [[noreturn]] void failParsing() const {
        const XML_Error error = XML_GetErrorCode(_parser.get());
        if (error == XML_ERROR_NO_MEMORY) throw std::bad_alloc();
        fail(XML_ErrorString(error));
    }

    [[noreturn]] void fail(const std::string& cause) const {
        throw std::runtime_error("line " + std::to_string(line()) + ", column " + std::to_string(column()) + ": " +
                                 cause);
    }

    /// Runs `action`, unless something was thrown before; keeps what it throws and where, for expat may go on a little.
    template <class Action>
    void guarded(Action action) noexcept {
        if (_thrown) return;
        try {
            action();
        } catch (...) {
            _thrown = std::current_exception();
            notePlace();
            XML_StopParser(_parser.get(), XML_FALSE);
        }
    }

    void startElement(const char* name, const char** attributes) {
        if (++_depth > kDeepest) fail("elements stand too deep in each other");
        for (const char** attribute = attributes; *attribute; attribute += 2) {
            if (!isDeclaration(attribute[0])) continue;
            const auto& declared = _namespaces.emplace_back(Namespace{_depth, attribute[0]});
            _callback->notifyStartNamespace(declaredPrefix(declared.attribute), *attribute[1] ? attribute[1] : nullptr);
        }
        _callback->notifyStartElement(name, attributes);
    }

    void endElement(const char* name) {
        _callback->notifyEndElement(name);
        for (; !_namespaces.empty() && _namespaces.back().depth == _depth; _namespaces.pop_back())
            _callback->notifyEndNamespace(declaredPrefix(_namespaces.back().attribute));
        --_depth;
    }

    static State& of(void* self) { return *static_cast<State*>(self); }

    static void onStartElement(void* self, const char* name, const char** attributes) {
        of(self).guarded([&] { of(self).startElement(name, attributes); });
    }

    static void onEndElement(void* self, const char* name) {
        of(self).guarded([&] { of(self).endElement(name); });
    }

    static void onCharacterData(void* self, const char* data, int length) {
        of(self).guarded([&] { of(self)._callback->notifyCharacterData(data, length); });
    }

    static void onStartDocumentType(void* self, const char*, const char*, const char*, int) {
        of(self)._seenDocumentType = true;
    }

    static void onEntityDeclaration(void* self, const char*, int, const char*, int, const char*, const char*,
                                    const char*, const char*) {
        of(self).guarded([&] { of(self).fail("entity declarations are not accepted"); });
    }

    /// A default would stand in every element that leaves the attribute out, and expat goes through the declarations at
    /// each start tag: either way a short document costs as much as a long one.
    static void onAttributeDeclaration(void* self, const char*, const char*, const char*, const char*, int) {
        of(self).guarded([&] { of(self).fail("attribute declarations are not accepted"); });
    }

    /// A reference in a text to something that a document type elsewhere may declare: passing over it would lose text.
    static void onSkippedEntity(void* self, const char*, int) {
        of(self).guarded([&] { of(self).fail(XML_ErrorString(XML_ERROR_UNDEFINED_ENTITY)); });
    }

    /// Called where a document type names another document, which is passed over, and at a reference to a parameter
    /// entity inside it, after which expat would no longer tell of entity declarations.
    static int onNotStandalone(void* self) {
        of(self).guarded([&] {
            if (of(self)._seenDocumentType) of(self).fail("entity declarations are not accepted");
        });
        return of(self)._thrown ? XML_STATUS_ERROR : XML_STATUS_OK;
    }

    XMLCallback* _callback;
    std::unique_ptr<XML_ParserStruct, Free> _parser;
    XML_Index _fed = 0;
    unsigned long _depth = 0;
    std::vector<Namespace> _namespaces;
    bool _seenDocumentType = false;
    std::exception_ptr _thrown;
    unsigned long _line = 0;
    unsigned long _column = 0;
};

XMLParser::XMLParser(XMLCallback* callback, tracer::ISink* /*sink*/) : _state(std::make_unique<State>(callback)) {}

XMLParser::~XMLParser() = default;

void XMLParser::parseDocument(io::IDataReader* reader) {
    _state->parse(*reader);
}

unsigned long XMLParser::line() const {
    return _state->line();
}

unsigned long XMLParser::column() const {
    return _state->column();
}

}  // namespace lumivard::platform::core::xml
