#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <iostream>
#include <ostream>
#include <string>
#include <vector>

#define XML_DTD 1  // shows what switches expat's own guard off
#include <expat.h>
#include <unistd.h>

#include "tests/fuzz/Confined.h"
#include "tests/fuzz/RoundTrip.h"
#include "tests/support/Sanitized.h"

// Documents that are made to cost more than they are worth. Each is read in a process of its own, within a bound of
// memory and of processor time; whether it is refused or read is told beside it.

namespace {

using namespace lumivard::platform;
using namespace lumivard::platform::fuzz;
using core::io::IDataReader;

/// A document that is made while it is read, so that it takes no memory itself: a text, another one over and over, and
/// an end.
class Pieces final : public core::io::IDataReader {
public:
    Pieces(std::string start, std::function<std::string(std::size_t)> piece, std::size_t count, std::string end)
        : _rest(std::move(start)), _piece(std::move(piece)), _count(count), _end(std::move(end)) {}

    bool open() override { return true; }
    void close() override {}
    unsigned long read(void* buffer, unsigned long size) override {
        while (_done == _rest.size()) {
            if (_next > _count) return 0;
            _rest = _next < _count ? _piece(_next) : _end;
            _done = 0;
            ++_next;
        }
        const std::size_t taken = std::min<std::size_t>(size, _rest.size() - _done);
        std::memcpy(buffer, _rest.data() + _done, taken);
        _done += taken;
        return taken;
    }

private:
    std::string _rest;
    std::function<std::string(std::size_t)> _piece;
    std::size_t _count;
    std::string _end;
    std::size_t _done = 0;
    std::size_t _next = 0;
};

struct Attack {
    const char* name;
    const char* outcome;  ///< what the reason of a refusal holds; empty where the document is read
    std::function<Pieces()> document;
};

void PrintTo(const Attack& attack, std::ostream* out) {
    *out << attack.name;
}

Pieces repeated(std::string start, std::string piece, std::size_t count, std::string end) {
    return {std::move(start), [piece = std::move(piece)](std::size_t) { return piece; }, count, std::move(end)};
}

std::string number(std::size_t index) {
    return std::to_string(index);
}

constexpr std::size_t kMega = 1 << 20;

const std::vector<Attack>& attacks() {
    static const std::vector<Attack> all{
        {"EntityBomb", "entity declarations are not accepted",
         [] {
             return Pieces(
                 "<!DOCTYPE r [<!ENTITY e0 'lol'>",
                 [](std::size_t i) {
                     const std::string reference = "&e" + number(i) + ";";
                     std::string entity = "<!ENTITY e" + number(i + 1) + " '";
                     for (int times = 0; times < 10; ++times) entity += reference;
                     return entity + "'>";
                 },
                 12, "]><root name='r'><name>&e12;</name></root>");
         }},
        {"QuadraticExpansion", "entity declarations are not accepted",
         [] {
             return repeated("<!DOCTYPE r [<!ENTITY e '" + std::string(100'000, 'a') + "'>]><root name='r'><name>",
                             "&e;", 100'000, "</name></root>");
         }},
        {"ExternalEntity", "entity declarations are not accepted",
         [] {
             return repeated("<!DOCTYPE r [<!ENTITY e SYSTEM 'file:///dev/zero'>]><root name='r'><name>", "&e;", 100,
                             "</name></root>");
         }},
        {"ParameterEntities", "entity declarations are not accepted",
         [] { return repeated("<!DOCTYPE r [<!ENTITY % e 'x'>", "%e;", 100'000, "]><root name='r'/>"); }},
        {"EntityChain", "entity declarations are not accepted",
         [] {
             return Pieces(
                 "<!DOCTYPE r [<!ENTITY e0 'x'>",
                 [](std::size_t i) { return "<!ENTITY e" + number(i + 1) + " '&e" + number(i) + ";'>"; }, 1'000'000,
                 "]><root name='r'><name>&e1000000;</name></root>");
         }},
        {"LongAttribute", "a tag, comment or instruction is too long",
         [] { return repeated("<root name='r'><group name='", std::string(1000, 'a'), 100'000, "'/></root>"); }},
        {"EndlessComment", "a tag, comment or instruction is too long",
         [] { return repeated("<root name='r'><!-- ", std::string(1000, 'a'), 100'000, ""); }},
        {"EndlessEntity", "a tag, comment or instruction is too long",
         [] { return repeated("<!DOCTYPE r [<!ENTITY e '", std::string(1000, 'a'), 100'000, ""); }},
        {"DeepNestingBelowTheLimit", "",
         [] {
             return Pieces(
                 "<root name='r'>", [](std::size_t i) { return i < 199'999 ? "<group name='g'>" : "</group>"; },
                 399'998, "</root>");
         }},
        {"DeepNestingOfUnknownElements", "elements stand too deep in each other",
         [] { return repeated("<root name='r'>", "<x>", 1'000'000, ""); }},
        {"DeepNesting", "elements stand too deep in each other",
         [] {
             return Pieces(
                 "<root name='r'>", [](std::size_t i) { return i < 1'000'000 ? "<group name='g'>" : "</group>"; },
                 2'000'000, "</root>");
         }},
        {"AttributeThatIsTaken", "",
         [] { return repeated("<root name='r'><group name='", std::string(1000, 'a'), 8'388, "'/></root>"); }},
        {"AttributeThatIsNotTaken", "a tag, comment or instruction is too long",
         [] { return repeated("<root name='r'><group name='", std::string(1000, 'a'), 8'389, "'/></root>"); }},
        {"EndlessTag", "a tag, comment or instruction is too long",
         [] { return repeated("<root name='r'><x ", std::string(1000, 'a'), 100'000, ""); }},
        {"ManyAttributes", "",
         [] {
             return Pieces(
                 "<root name='r'><group name='g' ", [](std::size_t i) { return "a" + number(i) + "='' "; }, 100'000,
                 "/></root>");
         }},
        {"AttributeDeclarations", "attribute declarations are not accepted",
         [] {
             return Pieces(
                 "<!DOCTYPE r [<!ATTLIST root ", [](std::size_t i) { return "a" + number(i) + " CDATA 'default' "; },
                 100'000, ">]><root name='r'/>");
         }},
        {"DeepContentModel", "",
         [] {
             return Pieces(
                 "<!DOCTYPE r [<!ELEMENT root ",
                 [](std::size_t i) { return i < 1'000'000    ? "("
                                            : i == 1'000'000 ? "a"
                                                             : ")"; }, 2'000'001,
                 ">]><root name='r'/>");
         }},
        {"HugeDimension", "",
         [] { return repeated("<group name='g'><int8 name='a' dim='4294967000'/>", "", 0, "</group>"); }},
        {"DimensionBelowTheLimit", "",
         [] { return repeated("<group name='g'><int8 name='a' dim='67108864'>1</int8>", "", 0, "</group>"); }},
        {"ManyDimensions", "",
         [] {
             return Pieces(
                 "<group name='g'>", [](std::size_t i) { return "<double name='a" + number(i) + "' dim='1000000'/>"; },
                 2000, "</group>");
         }},
        {"Comments", "",
         [] { return repeated("<root name='r'>", "<!-- " + std::string(90, 'c') + " -->", kMega, "</root>"); }},
        {"ProcessingInstructions", "",
         [] { return repeated("<root name='r'>", "<?p " + std::string(90, 'p') + "?>", kMega, "</root>"); }},
        {"CharacterDataSections", "",
         [] { return repeated("<root name='r'>", "<![CDATA[" + std::string(20, '<') + "]]>", kMega, "</root>"); }},
        {"InvalidUTF8", "not well-formed",
         [] { return repeated("<root name='r'><name>", "\xff\xfe\xc0\x80", kMega, "</name></root>"); }},
    };
    return all;
}

// Sanitizers make everything slower, and this is no measurement: the bound is there to end what would not end by
// itself.
constexpr unsigned int kSeconds = test_support::kSanitized ? 200 : 40;
constexpr std::size_t kMemory = 256 * kMega;

std::string outcomeOf(IDataReader& document) {
    const auto store = stores::memory();
    Listener listener;
    IXMLFrontEnd::parse(store.get(), &document, nullptr, nullptr, &listener);
    return listener.broken;
}

class Attacks : public testing::TestWithParam<Attack> {};

TEST_P(Attacks, EndInBoundedMemoryAndTime) {
    const Outcome outcome = confined(
        [] {
            Pieces document = GetParam().document();
            return outcomeOf(document);
        },
        kMemory, kSeconds);
    EXPECT_EQ(outcome.end, Outcome::kEnded);
    EXPECT_NE(outcome.words.find(GetParam().outcome), std::string::npos) << outcome.words;
    EXPECT_EQ(outcome.words.empty(), *GetParam().outcome == 0) << outcome.words;
    std::cout << outcome.peak / kMega << " MB at most" << std::endl;
}

INSTANTIATE_TEST_SUITE_P(Of, Attacks, testing::ValuesIn(attacks()),
                         [](const auto& attack) { return std::string(attack.param.name); });

// What measures has to notice the same attacks where nothing stands against them.

/// Expat as it comes, with its own guard against entities switched off, into a text.
std::string unguarded(IDataReader& document) {
    XML_Parser parser = XML_ParserCreate(nullptr);
    std::string text;
    XML_SetUserData(parser, &text);
    XML_SetCharacterDataHandler(parser, [](void* data, const char* piece, int length) {
        static_cast<std::string*>(data)->append(piece, static_cast<std::size_t>(length));
    });
    XML_SetBillionLaughsAttackProtectionActivationThreshold(parser, ~0ull);
    char block[4096];
    for (unsigned long size = 1; size != 0;) {
        size = document.read(block, sizeof(block));
        if (XML_Parse(parser, block, static_cast<int>(size), size == 0) != XML_STATUS_OK) break;
    }
    XML_ParserFree(parser);
    return {};
}

/// A reader that makes the places of each `dim` when it sees it.
class EagerReader final : public core::xml::XMLCallback {
public:
    void notifyStartElement(const char*, const char** attributes) override {
        for (; *attributes; attributes += 2) {
            if (std::strcmp(attributes[0], "dim") == 0) _values.emplace_back(std::stoul(attributes[1]));
        }
    }
    void notifyEndElement(const char*) override {}
    void notifyStartNamespace(const char*, const char*) override {}
    void notifyEndNamespace(const char*) override {}
    void notifyCharacterData(const char*, int) override {}

private:
    std::vector<std::vector<char>> _values;
};

std::string eager(IDataReader& document) {
    EagerReader reader;
    core::xml::XMLParser(&reader, nullptr).parseDocument(&document);
    return {};
}

Outcome::tEnd endOf(const char* name, std::string (*read)(IDataReader&), std::size_t memory) {
    const auto attack = std::find_if(attacks().begin(), attacks().end(),
                                     [&](const Attack& each) { return each.name == std::string(name); });
    return confined(
               [&] {
                   Pieces document = attack->document();
                   return read(document);
               },
               memory, kSeconds)
        .end;
}

TEST(AttackMeter, NoticesEntitiesThatAreTaken) {
    EXPECT_EQ(endOf("EntityBomb", unguarded, 16 * kMega), Outcome::kOverMemory);
    EXPECT_EQ(endOf("QuadraticExpansion", unguarded, kMemory), Outcome::kOverMemory);
}

TEST(AttackMeter, NoticesPlacesThatAreMadeUnseen) {
    EXPECT_EQ(endOf("HugeDimension", eager, kMemory), Outcome::kOverMemory);
    EXPECT_EQ(endOf("ManyDimensions", eager, kMemory), Outcome::kOverMemory);
}

TEST(AttackMeter, CountsWhatIsInUseAtOneTime) {
    const Outcome outcome = confined(
        [] {
            for (int i = 0; i < 100; ++i) std::string(kMega, 'a').push_back('b');
            return std::string("done");
        },
        4 * kMega, kSeconds);
    EXPECT_EQ(outcome.end, Outcome::kEnded);
    EXPECT_EQ(outcome.words, "done");
    EXPECT_GE(outcome.peak, kMega);
    EXPECT_LT(outcome.peak, 4 * kMega);
}

TEST(AttackMeter, NoticesWhatDoesNotEnd) {
    const auto spin = [] {
        for (volatile unsigned int i = 0;;) i = i + 1;
        return std::string();
    };
    EXPECT_EQ(confined(spin, kMemory, 1).end, Outcome::kOverTime);
}

TEST(AttackMeter, NoticesWhatDies) {
    EXPECT_EQ(confined([]() -> std::string { ::_exit(3); }, kMemory, kSeconds).end, Outcome::kDied);
}

}  // namespace
