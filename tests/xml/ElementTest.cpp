#include "xml/Element.h"

#include <gtest/gtest.h>

#include "tests/xml/XmlFixture.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::data::Element;

constexpr const char* kNoAttributes[] = {nullptr};

/// An element that is none of the known ones, over an item at the top of a store.
class ElementWithoutName : public XmlTest {
protected:
    ElementWithoutName() : item(store(), Structural::Container::tType::kGroup, L"a"), element(store()) {}

    Structural::Container item;
    Element element;
};
LVP_ON_EACH_STORE(ElementWithoutName);

TEST(ElementFind, GivesTheFirstAttributeOfExactlyThatName) {
    const char* attributes[] = {"name", "a", "Name", "b", "name", "c", "locale", "", nullptr};
    EXPECT_STREQ(Element::find("name", attributes), "a");
    EXPECT_STREQ(Element::find("Name", attributes), "b");
    EXPECT_STREQ(Element::find("locale", attributes), "");
    EXPECT_EQ(Element::find("nam", attributes), nullptr);
    EXPECT_EQ(Element::find("NAME", attributes), nullptr);
}

TEST(ElementFind, DoesNotTakeAValueForAName) {
    const char* attributes[] = {"a", "name", nullptr};
    EXPECT_EQ(Element::find("name", attributes), nullptr);
}

TEST(ElementFind, GivesNullWithoutAttributes) {
    EXPECT_EQ(Element::find("name", kNoAttributes), nullptr);
}

TEST(ElementUnits, KnowTheUnits) {
    EXPECT_EQ(Element::units().unit("Meter"), units::kMeter);
    EXPECT_EQ(&Element::units(), &Element::units());
}

TEST_P(ElementWithoutName, HasATypeAboveAllKindsOfRecords) {
    EXPECT_EQ(element.type(), 6u);
    EXPECT_EQ(element.name(), nullptr);
    EXPECT_EQ(element.wname(), nullptr);
}

TEST_P(ElementWithoutName, RefusesToOpenNestAndSerialize) {
    EXPECT_EQ(element.message(), L"");
    EXPECT_EQ(element.open(kNoAttributes), nullptr);
    EXPECT_EQ(element.message(), L"unknown element, skipping");
    auto child = std::make_unique<Design::Table>(store(), L"t");
    EXPECT_EQ(element.nest(item, std::move(child)), nullptr);
    EXPECT_EQ(element.message(), L"unable to nest");
    lumivard::platform::core::LVPUUID id;
    lumivard::platform::core::xml::XMLSerializer serializer(id);
    EXPECT_FALSE(element.serialize(item, serializer));
}

TEST_P(ElementWithoutName, TakesNamesOneAfterTheOther) {
    const char* german[] = {"locale", "de-de", nullptr};
    EXPECT_TRUE(element.sub("name", german));
    EXPECT_FALSE(element.sub("name", german)) << "one is open";
    EXPECT_FALSE(element.sub("val", kNoAttributes)) << "one is open";
    EXPECT_TRUE(element.set(item, "Gr\xc3\xbc\xc3\x9f"));
    EXPECT_TRUE(element.sub("name", kNoAttributes));
    EXPECT_TRUE(element.set(item, "Greeting"));
    EXPECT_EQ(item.localize(L"x", L"de-de"), 0u);
    EXPECT_EQ(item.localize(L"x", L"en-us"), 1u);
}

TEST_P(ElementWithoutName, RefusesOtherSubElements) {
    for (const char* name : {"default", "names", "", "Name", "group"}) EXPECT_FALSE(element.sub(name, kNoAttributes));
}

TEST_P(ElementWithoutName, SetsNothingWithoutAnOpenName) {
    EXPECT_FALSE(element.set(item, "x"));
    EXPECT_TRUE(element.sub("name", kNoAttributes));
}

TEST_P(ElementWithoutName, StaysStuckInAVal) {
    EXPECT_TRUE(element.sub("val", kNoAttributes));
    EXPECT_FALSE(element.set(item, "x"));
    EXPECT_FALSE(element.sub("name", kNoAttributes));
    EXPECT_FALSE(element.sub("val", kNoAttributes));
}

}  // namespace
