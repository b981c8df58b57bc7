#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "lumivard/platform/core.h"
#include "tests/fault/calls/EachRequest.h"
#include "tests/support/Failures.h"

namespace {

using namespace lumivard::platform::test_support::fault;
using lumivard::platform::core::io::MemoryReader;
using lumivard::platform::core::xml::XMLCallback;
using lumivard::platform::core::xml::XMLParser;
using lumivard::platform::test_support::failuresOf;
using testing::Contains;
using testing::HasSubstr;

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
    explicit tReading(const std::string& text) : reader(text) {}

    Recorder recorder;
    XMLParser parser{&recorder, nullptr};
    MemoryReader reader;

    void read() {
        recorder.told.clear();
        reader.open();
        parser.parseDocument(&reader);
    }
};

std::string wholeText() {
    tReading reading(document());
    reading.read();
    return reading.recorder.told;
}

using tReadingPtr = std::unique_ptr<tReading>;

void read(const tReadingPtr& reading) {
    reading->read();
}

/// What the callback throws, and what the parser itself lacks, comes out as an exception, and the parser lives on.
class ParserAllocations : public testing::TestWithParam<bool> {
protected:
    template <class Act>
    void leaveAParserThatReadsOn(Act act) const {
        const std::string whole = wholeText();
        atEachRequest(
            GetParam(), 1, [] { return std::make_unique<tReading>(document()); }, act,
            [&](const tReadingPtr& reading, const std::exception_ptr& thrown) {
                if (!thrown) {
                    EXPECT_EQ(reading->recorder.told, whole) << "as nothing was thrown";
                }
                reading->read();
                EXPECT_EQ(reading->recorder.told, whole) << "by the next document";
            });
    }
};

TEST_P(ParserAllocations, LeaveAParserThatReadsTheNextDocument) {
    leaveAParserThatReadsOn(read);
}

TEST_P(ParserAllocations, WouldBeSeenToLeakToBeHiddenOrToLeaveAParserThatIsBroken) {
    Leaks leaks;
    EXPECT_THAT(failuresOf([&] { leaveAParserThatReadsOn(leaks.in(read)); }),
                Contains(HasSubstr("allocations::blocks()")));
    EXPECT_THAT(failuresOf([&] { leaveAParserThatReadsOn(hiding(read)); }),
                Contains(HasSubstr("as nothing was thrown")));
    const auto breaking = harming(read, [](tReadingPtr& reading) { reading = std::make_unique<tReading>("<a/>"); });
    EXPECT_THAT(failuresOf([&] { leaveAParserThatReadsOn(breaking); }), Contains(HasSubstr("by the next document")));
}

INSTANTIATE_TEST_SUITE_P(That, ParserAllocations, testing::Bool(),
                         [](const auto& which) { return which.param ? "FailOnce" : "FailForEver"; });

}  // namespace
