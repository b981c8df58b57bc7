#include <pthread.h>

#include <functional>

#include "tests/xml/XmlFixture.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::core::io::MemoryReader;

/// Documents that mean harm: no crash, no hang, and what is well-formed in them is read.
class HostileDocument : public XmlTest {
protected:
    tMessages broken(const std::string& document) {
        Reporter reporter;
        MemoryReader reader(document);
        IXMLFrontEnd::parse(store(), &reader, nullptr, nullptr, &reporter);
        return reporter.broken;
    }
};
LVP_ON_EACH_STORE(HostileDocument);

TEST_P(HostileDocument, MayBreakOffAnywhere) {
    const std::string document =
        "<?xml version='1.0'?><root version='3' name='r'><!-- c --><name locale='de'>\xc3\xa4</name>"
        "<group name='g' class=''><string name='s'><name>n</name><val>a</val><val>b</val></string>"
        "<binary name='b'>SGVsbG8=</binary><int32 name='i'>1 2 3</int32><x>y</x></group>"
        "<table name='t'><default unit='Meter' type='vec3'/><double name='d'>1</double></table></root>";
    EXPECT_EQ(broken(document), kNone);
    for (std::size_t length = 0; length < document.size(); ++length) {
        const auto fresh = GetParam().make();
        Reporter reporter;
        MemoryReader reader(document.substr(0, length));
        IXMLFrontEnd::parse(fresh.get(), &reader, nullptr, nullptr, &reporter);
        EXPECT_EQ(reporter.broken.size(), 1u) << length;
        const std::string kept = writtenFrom(fresh.get());
        if (fresh->extent() != 0) {
            const auto again = GetParam().make();
            EXPECT_EQ(readInto(again.get(), kept), kNone);
            EXPECT_EQ(writtenFrom(again.get()), kept) << length;
        }
    }
}

TEST_P(HostileDocument, MayNotDeclareEntities) {
    const tMessages told = broken(
        "<!DOCTYPE r [<!ENTITY a 'aaaaaaaaaa'><!ENTITY b '&a;&a;&a;&a;'>]><group name='g'><string name='s'>&b;</string>"
        "</group>");
    ASSERT_EQ(told.size(), 1u);
    EXPECT_NE(told[0].find("entity declarations are not accepted"), std::string::npos);
    EXPECT_EQ(store()->extent(), 0u);
}

TEST_P(HostileDocument, MayHaveLongNamesAndTexts) {
    const std::string longText(300'000, 'x');
    ASSERT_EQ(read("<group name='" + longText + "'><string name='s' units='" + longText + "' locale='" + longText +
                   "' dim='" + longText + "'><name locale='" + longText + "'>" + longText + "</name><val>" + longText +
                   "</val></string></group>"),
              kNone);
    EXPECT_EQ(
        written().size(),
        5 * longText.size() + std::strlen("<group name=\"\"><string name=\"s\" locale=\"\"><name locale=\"\"></name>"
                                          "<val></val></string></group>"));
}

TEST_P(HostileDocument, MayHaveATokenAsLongAsTheText) {
    const std::string digits(100'000, '9');
    ASSERT_EQ(read("<group name='g'><int32 name='i'>" + digits + " 5</int32><double name='d'>" + digits +
                   " 5</double></group>"),
              kNone);
    EXPECT_EQ(values<int>(at(L"i")), (std::vector<int>{0, 5}));
    EXPECT_EQ(values<double>(at(L"d")), (std::vector<double>{0, 5}));
}

TEST_P(HostileDocument, MayHaveManyFaults) {
    std::string document = "<group name='g'>";
    for (int i = 0; i < 5000; ++i) document += "<x/><int32/><root name='r'/>";
    EXPECT_EQ(read(document + "</group>").size(), 15'000u);
    EXPECT_EQ(written(), "<group name=\"g\"/>");
}

TEST_P(HostileDocument, MayRepeatAnItemOften) {
    std::string document = "<group name='g'>";
    for (int i = 0; i < 2000; ++i) document += "<int32 name='a'>" + std::to_string(i) + "</int32>";
    EXPECT_EQ(rewritten(document + "</group>"), "<group name=\"g\"><int32 name=\"a\">1999</int32></group>");
}

/// Runs something on a thread whose stack holds far less than a frame for each level of a deep document.
void onASmallStack(const std::function<void()>& work) {
    constexpr std::size_t kStack = 512 * 1024;
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, kStack);
    pthread_t thread;
    const auto start = [](void* argument) -> void* {
        (*static_cast<const std::function<void()>*>(argument))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, start, const_cast<std::function<void()>*>(&work)), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

std::string nested(const char* start, const char* end, int levels) {
    std::string document;
    for (int i = 0; i < levels; ++i) document += start;
    for (int i = 0; i < levels; ++i) document += end;
    return document;
}

constexpr int kLevels = 100'000;

TEST_P(HostileDocument, MayBeDeep) {
    onASmallStack([this] {
        const std::string document = nested("<group name=\"g\">", "</group>", kLevels - 1);
        const std::string whole = "<root version=\"0\" name=\"r\"><group name=\"g\">" + document + "</group></root>";
        ASSERT_EQ(read(whole), kNone);
        const std::string innermost = "<group name=\"g\"></group>";
        std::string expected = whole;
        expected.replace(expected.find(innermost), innermost.size(), "<group name=\"g\"/>");
        EXPECT_EQ(written() == expected, true);
    });
}

TEST_P(HostileDocument, MayBreakOffDeep) {
    onASmallStack([this] {
        std::string document = "<root name='r'>" + nested("<group name='g'>", "", kLevels);
        EXPECT_EQ(broken(document + "</root>").size(), 1u);
        EXPECT_EQ(stored::refs(store(), 0), 0u);
    });
}

TEST_P(HostileDocument, MayBeDeepWhereItIsSkipped) {
    onASmallStack([this] {
        EXPECT_EQ(read("<group name='g'>" + nested("<x>", "</x>", kLevels) + "<int32 name='i'>1</int32></group>"),
                  tMessages{"x : unknown element, skipping"});
        EXPECT_EQ(written(), "<group name=\"g\"><int32 name=\"i\">1</int32></group>");
    });
}

}  // namespace
