// What a visitor is shown beside the items: the top of the store, texts, defaults.
#include <functional>
#include <string>

#include "lumivard/platform/data/structure/IVisitor.h"
#include "tests/support/ClientFixture.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::data::structure::IVisitor;
using testing::ElementsAre;
using testing::IsEmpty;

/// Notes names, and the texts and defaults that follow them.
class Telling : public IVisitor {
public:
    void root(const tRoot& item) override {
        static constexpr const wchar_t* kpKinds[] = {L"root ", L"table ", L"node ", L"group ", L"link "};
        said.push_back(kpKinds[item.kind] + std::wstring(item.name) + std::wstring(item.base) +
                       std::wstring(item.target));
    }
    void primitive(const tPrimitive& item) override { said.push_back(std::wstring(item.name)); }
    bool table(const tTable& item) override { return enterSet(item.name); }
    bool container(const tContainer& item) override { return enterSet(item.name); }
    void text(std::wstring_view locale, std::wstring_view text) override {
        said.push_back(std::wstring(locale) + L": " + std::wstring(text));
        if (act) act();
    }
    void unitDefault(units::tUnit units, metadata::tValue valuetype) override {
        said.push_back(std::to_wstring(units) + L" " + std::to_wstring(valuetype));
        if (act) act();
    }

    tNames said;
    std::wstring closed;
    std::function<void()> act;

private:
    bool enterSet(std::wstring_view name) {
        said.push_back(std::wstring(name));
        return name != closed;
    }
};

class VisitorOfTexts : public ClientTest {
protected:
    /// Items of each kind that have texts.
    void fillTexts() {
        const auto table = top()->create(L"table", kNoSchema);
        table->defaults(units::kMeter, metadata::kDouble);
        table->defaults(units::kNewton, metadata::kScalar);
        table->defaults(units::kInch, metadata::kVec3);
        table->container()->describe(L"de-de", L"Tabelle");
        table->create(L"bare", metadata::kBool, units::kNoUnit);
        const auto value = table->create(L"value", metadata::kBool, units::kNoUnit);
        value->container()->describe(L"en-us", L"Value");
        value->container()->describe(L"x", L"nowhere");
        top()->describe(L"fr-fr", L"Haut");
    }
    const std::wstring inch = std::to_wstring(units::kInch) + L" " + std::to_wstring(metadata::kVec3);
    const std::wstring newton = std::to_wstring(units::kNewton) + L" " + std::to_wstring(metadata::kScalar);
};
LVP_ON_EACH_STORE(VisitorOfTexts);

TEST_P(VisitorOfTexts, IsShownThemBehindTheItemThatTheyCallByName) {
    fillTexts();
    Telling telling;
    EXPECT_TRUE(IVisitor::visit(store(), L"top", telling));
    EXPECT_THAT(telling.said, ElementsAre(L"top", L"fr-fr: Haut", L"table", L"de-de: Tabelle", inch, newton, L"bare",
                                          L"value", L"en-us: Value", L"x: nowhere"));
}

TEST_P(VisitorOfTexts, IsNotShownThoseOfASetThatItDoesNotEnter) {
    fillTexts();
    Telling telling;
    telling.closed = L"table";
    EXPECT_TRUE(IVisitor::visit(store(), L"top", telling));
    EXPECT_THAT(telling.said, ElementsAre(L"top", L"fr-fr: Haut", L"table"));
}

TEST_P(VisitorOfTexts, IsShownWhatADocumentHasAtItsTopInPlaceOfARoot) {
    const auto shown = [&](const std::string& document) {
        const auto other = lumivard::platform::stores::memory();
        lumivard::platform::core::io::MemoryReader reader(document);
        lumivard::platform::data::format::xml::IXMLFrontEnd::parse(other.get(), &reader, nullptr, nullptr, nullptr);
        Telling telling;
        EXPECT_TRUE(IVisitor::visit(other.get(), L"", telling));
        return telling.said;
    };
    EXPECT_THAT(shown("<node name='n'><name locale='de-de'>N</name><bool name='b'/></node>"),
                ElementsAre(L"node n", L"de-de: N", L"b"));
    EXPECT_THAT(shown("<group name='g'/>"), ElementsAre(L"group g"));
    EXPECT_THAT(shown("<link name='l' to='x'/>"), ElementsAre(L"link lx"));
    EXPECT_THAT(shown("<table name='t'><default unit='Inch' type='vec3'/><bool name='b'/></table>"),
                ElementsAre(L"table t", inch, L"b"));
    EXPECT_THAT(shown("<group name='a group with a long name'/>"), ElementsAre(L"group a group with a long name"));
}

TEST_P(VisitorOfTexts, IsShownTheRootWithItsOwnWhereTheWholeStoreIsShown) {
    const std::string document =
        "<root name='model' version='3'><name locale='de-de'>Modell</name><group name='a'/></root>";
    lumivard::platform::core::io::MemoryReader reader(document);
    lumivard::platform::data::format::xml::IXMLFrontEnd::parse(store(), &reader, nullptr, nullptr, nullptr);
    Telling telling;
    EXPECT_TRUE(IVisitor::visit(store(), L"", telling));
    EXPECT_THAT(telling.said, ElementsAre(L"root model", L"de-de: Modell", L"a"));
    telling.said.clear();
    EXPECT_TRUE(IVisitor::visit(find(L"a").get(), L"", telling));
    EXPECT_THAT(telling.said, IsEmpty());
}

TEST_P(VisitorOfTexts, IsShownThemAllThoughItDoesAwayWithWhatTheyBelongTo) {
    fillTexts();
    Telling telling;
    telling.act = [this] { top()->destroy(L"table"); };
    EXPECT_TRUE(IVisitor::visit(store(), L"top.table", telling));
    EXPECT_FALSE(top()->has(L"table"));
    ASSERT_GE(telling.said.size(), 2u);
    EXPECT_EQ(telling.said[1], L"de-de: Tabelle");
    EXPECT_EQ(telling.said.size(), 2u) << "the defaults went with the table";
}

}  // namespace
