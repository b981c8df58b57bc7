#include "lumivard/platform/core/xml/XMLParser.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "lumivard/platform/core/io/MemoryReader.h"
#include "tests/support/ContinentalLocale.h"

namespace {

using lumivard::platform::core::io::IDataReader;
using lumivard::platform::core::io::MemoryReader;
using lumivard::platform::core::xml::XMLCallback;
using lumivard::platform::core::xml::XMLParser;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

/// Notes each event as a short line; pieces of one text are joined.
class Recorder : public XMLCallback {
public:
    void notifyStartElement(const char* name, const char** attributes) override {
        std::string event = "<" + std::string(name);
        for (; *attributes; attributes += 2) {
            event.append(1, ' ').append(attributes[0]).append(1, '=').append(attributes[1]);
        }
        events.push_back(event);
    }
    void notifyEndElement(const char* name) override { events.push_back(">" + std::string(name)); }
    void notifyStartNamespace(const char* prefix, const char* uri) override {
        events.push_back("+" + std::string(prefix ? prefix : "(null)") + "=" + (uri ? uri : "(null)"));
    }
    void notifyEndNamespace(const char* prefix) override {
        events.push_back("-" + std::string(prefix ? prefix : "(null)"));
    }
    void notifyCharacterData(const char* data, int length) override {
        if (events.empty() || events.back()[0] != '\'') events.emplace_back("'");
        events.back().append(data, static_cast<unsigned long>(length));
    }

    std::vector<std::string> events;
};

void parse(XMLCallback& callback, const std::string& document) {
    MemoryReader reader(document);
    ASSERT_TRUE(reader.open());
    XMLParser parser(&callback, nullptr);
    parser.parseDocument(&reader);
}

std::vector<std::string> eventsOf(const std::string& document) {
    Recorder recorder;
    parse(recorder, document);
    return recorder.events;
}

/// What the refusal of a document says; empty when it is accepted.
std::string refusal(const std::string& document) {
    try {
        Recorder recorder;
        parse(recorder, document);
        return "";
    } catch (const std::runtime_error& error) {
        return error.what();
    }
}

TEST(XMLParser, TellsEventsInTheirOrder) {
    EXPECT_THAT(eventsOf("<?xml version='1.0'?><a x='1' y=\"2\">t<b/>u<c>v</c></a>"),
                ElementsAre("<a x=1 y=2", "'t", "<b", ">b", "'u", "<c", "'v", ">c", ">a"));
}

TEST(XMLParser, PassesOverCommentsAndInstructions) {
    EXPECT_THAT(eventsOf("<!-- c --><a>t<!-- c -->u<?p i?>v</a><!-- c -->"), ElementsAre("<a", "'tuv", ">a"));
}

TEST(XMLParser, ResolvesReferencesAndMarkedSections) {
    EXPECT_THAT(eventsOf("<a x='&lt;&#9;&quot;'>&amp;&#x4E16;<![CDATA[<b>]]>&gt;</a>"),
                ElementsAre("<a x=<\t\"", "'&\xE4\xB8\x96<b>>", ">a"));
}

TEST(XMLParser, NormalisesLineEnds) {
    EXPECT_THAT(eventsOf("<a x='1\n2'>1\r\n2\r3&#13;</a>"), ElementsAre("<a x=1 2", "'1\n2\n3\r", ">a"));
}

TEST(XMLParser, NamesComeAsTheyAreSpelled) {
    EXPECT_THAT(eventsOf("<p:a q:x='1'><B/></p:a>"), ElementsAre("<p:a q:x=1", "<B", ">B", ">p:a"));
}

TEST(XMLParser, TellsNamespacesAroundTheirElementAndKeepsTheAttributes) {
    EXPECT_THAT(eventsOf("<p:a xmlns='urn:d' x='1' xmlns:p='urn:p'><b/></p:a>"),
                ElementsAre("+(null)=urn:d", "+p=urn:p", "<p:a xmlns=urn:d x=1 xmlns:p=urn:p", "<b", ">b", ">p:a", "-p",
                            "-(null)"));
}

TEST(XMLParser, TellsNestedNamespacesWithTheirOwnElements) {
    EXPECT_THAT(eventsOf("<a xmlns:p='1'><b xmlns:p='2' xmlns=''/><c/></a>"),
                ElementsAre("+p=1", "<a xmlns:p=1", "+p=2", "+(null)=(null)", "<b xmlns:p=2 xmlns=", ">b", "-(null)",
                            "-p", "<c", ">c", ">a", "-p"));
}

TEST(XMLParser, TakesNoOtherAttributeForANamespace) {
    EXPECT_THAT(eventsOf("<a xmlnsx='1' Xmlns='2' p:xmlns='3'/>"), ElementsAre("<a xmlnsx=1 Xmlns=2 p:xmlns=3", ">a"));
}

TEST(XMLParser, ReadsOtherEncodings) {
    EXPECT_THAT(eventsOf("\xEF\xBB\xBF<a>\xC3\xA9</a>"), ElementsAre("<a", "'\xC3\xA9", ">a"));
    EXPECT_THAT(eventsOf("<?xml version='1.0' encoding='ISO-8859-1'?><a x='\xE9'>\xE9</a>"),
                ElementsAre("<a x=\xC3\xA9", "'\xC3\xA9", ">a"));
    EXPECT_THAT(eventsOf("<?xml version='1.0' encoding='US-ASCII'?><a>e</a>"), ElementsAre("<a", "'e", ">a"));
    EXPECT_THAT(eventsOf(std::string("\xFF\xFE<\0a\0>\0\xE9\0<\0/\0a\0>\0", 18)), ElementsAre("<a", "'\xC3\xA9", ">a"));
    EXPECT_THAT(eventsOf(std::string("\xFE\xFF\0<\0a\0/\0>", 10)), ElementsAre("<a", ">a"));
}

TEST(XMLParser, RefusesIllFormedDocumentsWithLineColumnAndCause) {
    EXPECT_EQ(refusal("<a>\n<b>\n  </c></b></a>"), "line 3, column 5: mismatched tag");
    EXPECT_EQ(refusal(""), "line 1, column 1: no element found");
    EXPECT_EQ(refusal("<a><b>"), "line 1, column 7: no element found");
    EXPECT_EQ(refusal("<a x='"), "line 1, column 1: unclosed token");
    EXPECT_EQ(refusal("<a/><b/>"), "line 1, column 5: junk after document element");
    EXPECT_EQ(refusal("<a x='1' x='2'/>"), "line 1, column 10: duplicate attribute");
    EXPECT_EQ(refusal("<a>&x;</a>"), "line 1, column 4: undefined entity");
    EXPECT_EQ(refusal("<a x='&x;'/>"), "line 1, column 1: undefined entity");
    EXPECT_EQ(refusal("<?xml version='1.0' encoding='EBCDIC-9'?><a/>"), "line 1, column 31: unknown encoding");
}

TEST(XMLParser, RefusesBytesThatNoDocumentHas) {
    EXPECT_EQ(refusal(std::string("<a>\0</a>", 8)), "line 1, column 4: not well-formed (invalid token)");
    EXPECT_EQ(refusal("<a>\x01</a>"), "line 1, column 4: not well-formed (invalid token)");
    EXPECT_EQ(refusal("<a>\xFF</a>"), "line 1, column 4: not well-formed (invalid token)");
    EXPECT_EQ(refusal("<a>\xC3(</a>"), "line 1, column 4: not well-formed (invalid token)");
    EXPECT_EQ(refusal("<a>&#0;</a>"), "line 1, column 4: reference to invalid character number");
}

TEST(XMLParser, RefusesEachBeginningOfADocument) {
    const std::string document = "<?xml version='1.0'?><!DOCTYPE a><a x='&lt;'>t<![CDATA[u]]><!-- c --><b/></a>";
    ASSERT_EQ(refusal(document), "");
    for (unsigned long size = 0; size < document.size(); ++size)
        EXPECT_THAT(refusal(document.substr(0, size)), StartsWith("line 1, column ")) << size;
}

TEST(XMLParser, TellsTheEventsBeforeAFault) {
    Recorder recorder;
    EXPECT_THROW(parse(recorder, "<a>t<b/></c>"), std::runtime_error);
    EXPECT_THAT(recorder.events, ElementsAre("<a", "'t", "<b", ">b"));
}

TEST(XMLParser, RefusesEntityDeclarationsOfEachKind) {
    for (const char* declaration :
         {"<!ENTITY e 'text'>", "<!ENTITY e SYSTEM 'file:///etc/hostname'>", "<!ENTITY e PUBLIC 'p' 'http://h/'>",
          "<!ENTITY % e 'text'>", "<!ENTITY % e SYSTEM 'e.ent'>",
          "<!NOTATION n SYSTEM 'n'><!ENTITY e SYSTEM 'e.gif' NDATA n>"}) {
        for (const char* standalone : {"", "<?xml version='1.0' standalone='yes'?>"}) {
            const std::string document = std::string(standalone) + "<!DOCTYPE a [" + declaration + "]><a/>";
            EXPECT_THAT(refusal(document), HasSubstr(": entity declarations are not accepted")) << document;
            EXPECT_THAT(refusal(document), StartsWith("line 1, column ")) << document;
        }
    }
}

TEST(XMLParser, RefusesAnEntityBeforeItGrows) {
    std::string document = "<!DOCTYPE a [\n<!ENTITY e0 'ha'>\n";
    for (int i = 1; i < 30; ++i) {
        const std::string inner = "&e" + std::to_string(i - 1) + ";";
        document += "<!ENTITY e" + std::to_string(i) + " '" + inner + inner + "'>\n";
    }
    EXPECT_THAT(refusal(document + "]><a>&e29;</a>"), StartsWith("line 2, "));
}

TEST(XMLParser, RefusesDeclarationsThatAParameterEntityWouldHide) {
    EXPECT_THAT(refusal("<!DOCTYPE a [%p; <!ENTITY e 'text'>]><a x='&e;'/>"),
                HasSubstr("entity declarations are not accepted"));
    EXPECT_THAT(refusal("<!DOCTYPE a SYSTEM 'a.dtd' [%p; <!ENTITY e 'text'>]><a x='&e;'/>"),
                HasSubstr("entity declarations are not accepted"));
}

TEST(XMLParser, AcceptsADocumentTypeWithoutEntities) {
    EXPECT_THAT(eventsOf("<!DOCTYPE a><a/>"), ElementsAre("<a", ">a"));
    EXPECT_THAT(eventsOf("<!DOCTYPE a SYSTEM 'missing.dtd'><a/>"), ElementsAre("<a", ">a"));
    EXPECT_THAT(eventsOf("<!DOCTYPE a SYSTEM 'missing.dtd' [<!ELEMENT a ANY>]><a/>"), ElementsAre("<a", ">a"));
    EXPECT_THAT(eventsOf("<!DOCTYPE a [<!ELEMENT a ANY>]><a/>"), ElementsAre("<a", ">a"));
}

TEST(XMLParser, RefusesDeclarationsOfAttributesWhichMakeAShortDocumentCostAsMuchAsALongOne) {
    for (const char* kind : {"'d'", "#FIXED 'd'", "#IMPLIED"}) {
        EXPECT_THAT(refusal(std::string("<!DOCTYPE a [<!ATTLIST a x CDATA ") + kind + ">]><a/>"),
                    HasSubstr("attribute declarations are not accepted"));
    }
}

TEST(XMLParser, AcceptsDeclarationsOfWhatXMLDefinesItself) {
    EXPECT_THAT(eventsOf("<!DOCTYPE a [<!ENTITY lt '&#38;#60;'>]><a>&lt;</a>"), ElementsAre("<a", "'<", ">a"));
}

TEST(XMLParser, LosesNoTextToEntitiesOfADocumentThatItDoesNotRead) {
    EXPECT_EQ(refusal("<!DOCTYPE a SYSTEM 'a.dtd'><a>&e;</a>"), "line 1, column 31: undefined entity");
}

/// A recorder that throws at the n-th event.
class Thrower final : public XMLCallback {
public:
    explicit Thrower(int at) : _left(at) {}
    void notifyStartElement(const char*, const char**) override { count(); }
    void notifyEndElement(const char*) override { count(); }
    void notifyStartNamespace(const char*, const char*) override { count(); }
    void notifyEndNamespace(const char*) override { count(); }
    void notifyCharacterData(const char*, int) override { count(); }

    int calls = 0;

private:
    void count() {
        ++calls;
        if (--_left == 0) throw std::string("a thing of the callback's own");
    }

    int _left;
};

TEST(XMLParser, LetsExceptionsOfTheCallbackPassAndTellsNothingAfter) {
    const std::string document = "<a xmlns='d'>t<b xmlns:p='p'/></a>";
    Thrower counter(0);
    parse(counter, document);
    ASSERT_EQ(counter.calls, 9);
    for (int at = 1; at <= 9; ++at) {
        Thrower thrower(at);
        EXPECT_THROW(parse(thrower, document), std::string) << at;
        EXPECT_EQ(thrower.calls, at);
    }
}

/// Gives a document in pieces of a size, and then throws or ends.
class PieceReader final : public IDataReader {
public:
    PieceReader(std::string bytes, unsigned long piece, bool fails)
        : _bytes(std::move(bytes)), _piece(piece), _fails(fails) {}
    bool open() override { return true; }
    void close() override {}
    unsigned long read(void* buffer, unsigned long size) override {
        ++calls;
        longest = std::max(longest, size);
        const unsigned long count = std::min({size, _piece, _bytes.size() - _position});
        if (count == 0 && _fails) throw std::range_error("the disk is gone");
        std::memcpy(buffer, _bytes.data() + _position, count);
        _position += count;
        return count;
    }

    int calls = 0;
    unsigned long longest = 0;

private:
    std::string _bytes;
    unsigned long _piece;
    unsigned long _position = 0;
    bool _fails;
};

TEST(XMLParser, ReadsThroughShortPieces) {
    PieceReader reader("<a x='\xC3\xA9'>\xE4\xB8\x96<b/></a>", 1, false);
    Recorder recorder;
    XMLParser(&recorder, nullptr).parseDocument(&reader);
    EXPECT_THAT(recorder.events, ElementsAre("<a x=\xC3\xA9", "'\xE4\xB8\x96", "<b", ">b", ">a"));
}

TEST(XMLParser, LetsExceptionsOfTheReaderPass) {
    for (const char* document : {"", "<a>", "<a/>"}) {
        PieceReader reader(document, 100, true);
        Recorder recorder;
        XMLParser parser(&recorder, nullptr);
        EXPECT_THROW(parser.parseDocument(&reader), std::range_error) << document;
    }
}

/// Says of each read that it failed, as the system call does.
class LyingReader final : public IDataReader {
public:
    bool open() override { return true; }
    void close() override {}
    unsigned long read(void*, unsigned long) override { return ~0ul; }
};

TEST(XMLParser, BelievesNoReaderThatGivesMoreThanItWasAskedFor) {
    LyingReader reader;
    Recorder recorder;
    XMLParser parser(&recorder, nullptr);
    EXPECT_THROW(parser.parseDocument(&reader), std::length_error);
}

TEST(XMLParser, ReadsDocumentsOfEachLengthAroundABlock) {
    for (unsigned long size = 65536 - 3; size <= 65536 + 3; ++size) {
        const std::string text(size - std::strlen("<a></a>"), 't');
        EXPECT_THAT(eventsOf("<a>" + text + "</a>"), ElementsAre("<a", "'" + text, ">a"));
    }
}

TEST(XMLParser, JoinsCharactersThatABlockCuts) {
    for (unsigned long shift = 0; shift < 4; ++shift) {
        std::string text(65536 - 5 + shift, 't');
        text += "\xF0\x9F\x98\x80";
        EXPECT_THAT(eventsOf("<a>" + text + "</a>"), ElementsAre("<a", "'" + text, ">a"));
    }
}

TEST(XMLParser, ReadsLongTexts) {
    const std::string text(20000000, 't');
    EXPECT_THAT(eventsOf("<a>" + text + "</a>"), ElementsAre("<a", "'" + text, ">a"));
}

TEST(XMLParser, ReadsALongTagInBlocksThatGrowWithIt) {
    // In blocks of one size expat would look at the tag's beginning hundreds of times.
    const std::string value(8000000, 'v');
    PieceReader reader("<a x='" + value + "'/>", ~0ul, false);
    Recorder recorder;
    XMLParser(&recorder, nullptr).parseDocument(&reader);
    EXPECT_THAT(recorder.events, ElementsAre("<a x=" + value, ">a"));
    EXPECT_LT(reader.calls, 20);
}

// Whatever is before it, and in whatever blocks it comes.
TEST(XMLParser, ReadsATagThatIsShorterThanEightMebibytesAndNoOther) {
    constexpr std::size_t kRest = sizeof("<a x=''/>") - 1;
    for (const std::size_t before : {0ul, 1ul, 65536ul, 3000000ul}) {
        const std::string start = "<r>" + std::string(before, ' ');
        const std::string value((8 << 20) - kRest - 1, 'v');
        Recorder recorder;
        PieceReader longest(start + "<a x='" + value + "'/></r>", ~0ul, false);
        EXPECT_NO_THROW(XMLParser(&recorder, nullptr).parseDocument(&longest)) << before;
        PieceReader tooLong(start + "<a x='v" + value + "'/></r>", ~0ul, false);
        EXPECT_THROW(XMLParser(&recorder, nullptr).parseDocument(&tooLong), std::runtime_error) << before;
    }
}

TEST(XMLParser, ReadsEightMebibytesAtOnceAndWhatFollowsInBlocksOfOneSize) {
    std::string document = "<a>";
    for (int i = 0; i < 200000; ++i) document += "<b/>";
    document += "<!--" + std::string((8 << 20) - document.size() - 8, 'c') + "-->";
    const std::size_t first = document.size();
    for (int i = 0; i < 200000; ++i) document += "<b/>";
    PieceReader reader(document + "</a>", ~0ul, false);
    Recorder recorder;
    XMLParser(&recorder, nullptr).parseDocument(&reader);
    EXPECT_EQ(recorder.events.size(), 800002u);
    EXPECT_EQ(reader.longest, (8u << 20) - 1 - 65536);
    EXPECT_LE(reader.calls, 4 + static_cast<int>((document.size() - first) / 65536));
}

TEST(XMLParser, TellsWhatWasReadBeforeItsReaderFails) {
    for (const std::size_t whole : {10000ul, 65536ul, 300000ul, 9000000ul}) {
        std::string document = "<a>";
        while (document.size() < whole) document += "<b>" + std::string(4000, 't') + "</b>";
        PieceReader reader(document, ~0ul, true);
        Recorder recorder;
        EXPECT_THROW(XMLParser(&recorder, nullptr).parseDocument(&reader), std::range_error);
        const auto told = std::count(recorder.events.begin(), recorder.events.end(), "<b");
        EXPECT_GE(told, static_cast<long>(document.size() / 4007) - 1) << whole;
    }
}

TEST(XMLParser, TellsOfAFaultThatComesBeforeItsReaderFails) {
    PieceReader reader("<a>" + std::string(100000, 't') + "</b>", ~0ul, true);
    Recorder recorder;
    try {
        XMLParser(&recorder, nullptr).parseDocument(&reader);
        FAIL() << "nothing was thrown";
    } catch (const std::runtime_error& error) {
        EXPECT_THAT(error.what(), testing::EndsWith("mismatched tag"));
    }
}

/// Follows the depth of a document.
class DepthCallback final : public XMLCallback {
public:
    void notifyStartElement(const char*, const char**) override { deepest = std::max(deepest, ++depth); }
    void notifyEndElement(const char*) override { --depth; }
    void notifyStartNamespace(const char*, const char*) override { ++namespaces; }
    void notifyEndNamespace(const char*) override { --namespaces; }
    void notifyCharacterData(const char*, int) override {}

    int depth = 0;
    int deepest = 0;
    int namespaces = 0;
};

TEST(XMLParser, ReadsElementsNestedDeep) {
    constexpr int kDepth = 200000;
    std::string document;
    for (int i = 0; i < kDepth; ++i) document += "<a xmlns='u'>";
    for (int i = 0; i < kDepth; ++i) document += "</a>";
    DepthCallback callback;
    parse(callback, document);
    EXPECT_EQ(callback.deepest, kDepth);
    EXPECT_EQ(callback.depth, 0);
    EXPECT_EQ(callback.namespaces, 0);
}

TEST(XMLParser, RefusesDeepElementsThatAreNotClosed) {
    std::string document;
    for (int i = 0; i < 200000; ++i) document += "<a>";
    EXPECT_EQ(refusal(document), "line 1, column 600001: no element found");
}

TEST(XMLParser, ReadsOneDocumentAfterTheOther) {
    Recorder recorder;
    XMLParser parser(&recorder, nullptr);
    for (const char* document :
         {"<a xmlns:p='1'>", "<!DOCTYPE b [<!ENTITY e 'x'>]><b/>", "<!DOCTYPE c SYSTEM 's'><c/>"}) {
        MemoryReader reader(document);
        ASSERT_TRUE(reader.open());
        try {
            parser.parseDocument(&reader);
        } catch (const std::runtime_error&) {
            recorder.events.emplace_back("fault");
        }
    }
    EXPECT_THAT(recorder.events, ElementsAre("+p=1", "<a xmlns:p=1", "fault", "fault", "<c", ">c"));
}

/// Notes where the parser is at each event.
class PlaceCallback final : public XMLCallback {
public:
    void notifyStartElement(const char* name, const char**) override { note(name); }
    void notifyEndElement(const char* name) override { note("/" + std::string(name)); }
    void notifyStartNamespace(const char*, const char*) override {}
    void notifyEndNamespace(const char*) override {}
    void notifyCharacterData(const char*, int) override { note("'"); }

    const XMLParser* parser = nullptr;
    std::vector<std::string> places;

private:
    void note(const std::string& what) {
        places.push_back(what + " " + std::to_string(parser->line()) + ":" + std::to_string(parser->column()));
    }
};

TEST(XMLParser, KnowsThePlaceOfEachEventAndOfTheEnd) {
    PlaceCallback callback;
    XMLParser parser(&callback, nullptr);
    callback.parser = &parser;
    EXPECT_EQ(parser.line(), 0u);
    EXPECT_EQ(parser.column(), 0u);
    MemoryReader reader("<a>\n\t<b/>\xC3\xA9<c\n></c></a>\n ");
    ASSERT_TRUE(reader.open());
    parser.parseDocument(&reader);
    EXPECT_THAT(callback.places,
                ElementsAre("a 1:1", "' 1:4", "' 2:1", "b 2:2", "/b 2:6", "' 2:6", "c 2:7", "/c 3:2", "/a 3:6"));
    EXPECT_EQ(parser.line(), 4u);
    EXPECT_EQ(parser.column(), 2u);
}

TEST(XMLParser, KnowsThePlaceBeyondTheFirstBlock) {
    PlaceCallback callback;
    XMLParser parser(&callback, nullptr);
    callback.parser = &parser;
    std::string document = "<a";
    for (int i = 0; i < 70000; ++i) document += "\n";
    MemoryReader reader(document + " ><b/></a>");
    ASSERT_TRUE(reader.open());
    parser.parseDocument(&reader);
    EXPECT_THAT(callback.places, ElementsAre("a 1:1", "b 70001:3", "/b 70001:7", "/a 70001:7"));
}

TEST(XMLParser, KeepsThePlaceOfAFault) {
    Recorder recorder;
    XMLParser parser(&recorder, nullptr);
    MemoryReader reader("<a>\n <b></a>");
    ASSERT_TRUE(reader.open());
    EXPECT_THROW(parser.parseDocument(&reader), std::runtime_error);
    EXPECT_EQ(parser.line(), 2u);
    EXPECT_EQ(parser.column(), 7u);
}

TEST(XMLParser, KeepsThePlaceOfAnExceptionOfTheCallback) {
    Thrower thrower(2);
    XMLParser parser(&thrower, nullptr);
    MemoryReader reader("<a\n><b/></a>");
    ASSERT_TRUE(reader.open());
    EXPECT_THROW(parser.parseDocument(&reader), std::string);
    EXPECT_EQ(parser.line(), 2u);
    EXPECT_EQ(parser.column(), 2u);
}

TEST(XMLParser, DoesNotLookAtTheLocale) {
    const lumivard::platform::test_support::ContinentalLocale locale;
    EXPECT_EQ(refusal(std::string(1233, '\n') + "<a></b>"), "line 1234, column 6: mismatched tag");
}

TEST(XMLParser, SeveralRunAtOnce) {
    std::vector<std::thread> threads;
    std::vector<DepthCallback> callbacks(4);
    for (auto& callback : callbacks) {
        threads.emplace_back([&callback] {
            for (int i = 0; i < 50; ++i) parse(callback, "<a><b><c/></b></a>");
        });
    }
    for (auto& thread : threads) thread.join();
    for (const auto& callback : callbacks) EXPECT_EQ(callback.deepest, 3);
}

}  // namespace
