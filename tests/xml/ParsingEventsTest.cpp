#include "lumivard/platform/store_contract/ForwardingStore.h"
#include "tests/xml/XmlFixture.h"
#include "xml/XMLParsingLogic.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::data::XMLParsingLogic;
using lumivard::platform::store_contract::ForwardingStore;

/// Events as a parser tells them, and some that no parser would tell.
class ParsingEvents : public XmlTest {
protected:
    ParsingEvents() : logic(store(), nullptr, nullptr, &reporter) {}

    void start(const char* name, const char* tag = nullptr) {
        const char* attributes[] = {tag ? "name" : nullptr, tag, nullptr};
        logic.notifyStartElement(name, attributes);
    }
    void end() { logic.notifyEndElement(nullptr); }
    void text(const char* text) { logic.notifyCharacterData(text, static_cast<int>(std::strlen(text))); }

    Reporter reporter;
    XMLParsingLogic logic;
};
LVP_ON_EACH_STORE(ParsingEvents);

TEST_P(ParsingEvents, OfNamespacesDoNothing) {
    logic.notifyStartNamespace("p", "urn:p");
    logic.notifyEndNamespace("p");
    EXPECT_EQ(store()->extent(), 0u);
    EXPECT_EQ(reporter.messages(), kNone);
}

TEST_P(ParsingEvents, OfNoTextDoNotBeginAText) {
    start("string", "s");
    logic.notifyCharacterData("xyz", 2);
    logic.notifyCharacterData("xyz", 0);
    logic.notifyCharacterData(nullptr, 0);
    end();
    EXPECT_EQ(XmlTest::text(0), L"xy|");
}

TEST_P(ParsingEvents, WithTheReservedKeysOfTheTableAreUnknownElements) {
    for (const char* key : {"$$$$$_____empty_key", "$$$$$_____deleted_key"}) {
        start(key, "a");
        end();
    }
    EXPECT_EQ(reporter.messages(), (tMessages{"$$$$$_____empty_key : unknown element, skipping",
                                              "$$$$$_____deleted_key : unknown element, skipping"}));
    start("group", "g");
    end();
    EXPECT_STREQ(Structural::Container(store(), 0, false).tag(), L"g");
}

TEST_P(ParsingEvents, WithAnEmptyNameAreUnknownElements) {
    start("", "a");
    EXPECT_EQ(reporter.messages(), tMessages{" : unknown element, skipping"});
}

TEST_P(ParsingEvents, ThatEndMoreThanWasOpenedDoNothing) {
    end();
    start("group", "g");
    end();
    end();
    start("group", "h");
    end();
    EXPECT_EQ(reporter.messages(), kNone);
}

TEST_P(ParsingEvents, FoldOnlyLettersOfASCII) {
    // The Kelvin sign and the dotted capital I fold to "k" and "i" in some locales.
    start("lin\xe2\x84\xaa", "a");
    end();
    start("l\xc4\xb0nk", "a");
    end();
    EXPECT_EQ(reporter.reports.size(), 2u);
    start("LiNk", "a");
    end();
    EXPECT_EQ(reporter.reports.size(), 2u);
}

TEST_P(ParsingEvents, MatchALongNameByItsFirst256Bytes) {
    // No element has so long a name: what can be seen is the cut.
    for (const std::size_t length : {255u, 256u, 257u, 300u}) {
        reporter.reports.clear();
        start(std::string(length, 'Z').c_str(), "a");
        end();
        EXPECT_EQ(reporter.messages(),
                  tMessages{std::string(std::min<std::size_t>(length, 256), 'z') + " : unknown element, skipping"});
    }
}

TEST_P(ParsingEvents, LeaveOpenItemsOpenUntilTheEnd) {
    start("root", "r");
    start("group", "g");
    EXPECT_EQ(stored::refs(store(), 0), 1u);
    const unsigned int group = stored::children(store(), 0).at(0);
    EXPECT_EQ(stored::refs(store(), group), 1u);
    end();
    EXPECT_EQ(stored::refs(store(), group), 0u);
    EXPECT_EQ(stored::refs(store(), 0), 1u);
    end();
    EXPECT_EQ(stored::refs(store(), 0), 0u);
}

/// Ends the reading in the middle, and watches in which order the items are closed.
class ClosingOrder : public StoreTest {};
LVP_ON_EACH_STORE(ClosingOrder);

TEST_P(ClosingOrder, IsInnermostFirst) {
    class Watching : public ForwardingStore {
    public:
        using ForwardingStore::ForwardingStore;
        void update(unsigned int offset, const void* data, unsigned int size, bool changed) override {
            if (!changed) updates.push_back(offset);
            ForwardingStore::update(offset, data, size, changed);
        }
        std::vector<unsigned int> updates;
    } watching(*store());

    std::vector<unsigned int> opened;
    {
        XMLParsingLogic logic(&watching, nullptr, nullptr, nullptr);
        for (const char* name : {"root", "group", "table"}) {
            const char* attributes[] = {"name", name, nullptr};
            logic.notifyStartElement(name, attributes);
            opened.push_back(watching.updates.back());
        }
        const char* attributes[] = {"name", "int32", nullptr};
        logic.notifyStartElement("int32", attributes);
        logic.notifyStartElement("name", attributes + 2);  // with which the primitive is opened
        opened.push_back(watching.updates.back());
        watching.updates.clear();
    }
    EXPECT_EQ(watching.updates, std::vector<unsigned int>(opened.rbegin(), opened.rend()));
}

}  // namespace
