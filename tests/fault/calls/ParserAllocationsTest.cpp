#include <gtest/gtest.h>

#include <string>

#include "lumivard/platform/core.h"
#include "tests/fault/calls/EachRequest.h"

namespace {

using namespace lumivard::platform::test_support::fault;
using lumivard::platform::core::io::MemoryReader;
using lumivard::platform::core::xml::XMLCallback;
using lumivard::platform::core::xml::XMLParser;

/// Keeps all that it is told, and so asks for memory in the middle of the parser.
class Recorder final : public XMLCallback {
public:
    void notifyStartElement(const char* name, const char** attributes) override {
        told += std::string("<") + name;
        for (; *attributes; attributes += 2) told += std::string(" ") + attributes[0] + "=" + attributes[1];
    }
    void notifyEndElement(const char* name) override { told += std::string(">") + name; }
    void notifyStartNamespace(const char*, const char* uri) override { told += std::string("+") + (uri ? uri : ""); }
    void notifyEndNamespace(const char* prefix) override { told += std::string("-") + (prefix ? prefix : ""); }
    void notifyCharacterData(const char* data, int length) override { told.append(data, std::size_t(length)); }

    std::string told;
};

/// Each kind of event, and names and texts that take memory of the parser's.
std::string document() {
    std::string text =
        "<?xml version='1.0' encoding='ISO-8859-1'?><!DOCTYPE a [<!ENTITY lt '&#38;#60;'>]>"
        "<a xmlns='urn:one' xmlns:p='urn:two' name='" +
        std::string(300, 'n') + "'>\xE4&amp;";
    for (int i = 0; i < 40; ++i) text += "<p:element" + std::to_string(i) + " x='1'><![CDATA[<]]>";
    for (int i = 39; i >= 0; --i) text += "</p:element" + std::to_string(i) + ">";
    return text + "<!-- " + std::string(3000, '-').replace(1, 2998, 2998, 'c').substr(1, 2000) + " --></a>";
}

struct tReading {
    Recorder recorder;
    XMLParser parser{&recorder, nullptr};
    MemoryReader reader{document()};

    void read() {
        recorder.told.clear();
        reader.open();
        parser.parseDocument(&reader);
    }
};

std::string wholeText() {
    tReading reading;
    reading.read();
    return reading.recorder.told;
}

/// What the callback throws, and what the parser itself lacks, comes out as an exception, and the parser lives on.
class ParserAllocations : public testing::TestWithParam<bool> {};

TEST_P(ParserAllocations, LeaveAParserThatReadsTheNextDocument) {
    const std::string whole = wholeText();
    atEachRequest(
        GetParam(), 1, [] { return std::make_unique<tReading>(); }, [](const auto& reading) { reading->read(); },
        [&](const auto& reading, const std::exception_ptr& thrown) {
            if (!thrown) {
                EXPECT_EQ(reading->recorder.told, whole);
            }
            reading->read();
            EXPECT_EQ(reading->recorder.told, whole);
        });
}

INSTANTIATE_TEST_SUITE_P(That, ParserAllocations, testing::Bool(),
                         [](const auto& which) { return which.param ? "FailOnce" : "FailForEver"; });

}  // namespace
