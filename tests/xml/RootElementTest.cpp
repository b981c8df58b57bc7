#include "tests/xml/XmlFixture.h"

namespace {

using namespace lumivard::platform::test_support;

class RootElement : public XmlTest {};
LVP_ON_EACH_STORE(RootElement);

TEST_P(RootElement, BecomesTheRootOfAnEmptyStore) {
    ASSERT_EQ(read("<root name='Top' version='3'/>"), kNone);
    EXPECT_EQ(stored::byte(store(), 0, 0), 0);
    EXPECT_STREQ(lumivard::platform::data::Metadata::Root(store(), 0u).tag(), L"Top");
    EXPECT_EQ(stored::word(store(), 0, stored::kParent), kNoItem);
    EXPECT_EQ(written(), "<root version=\"3\" name=\"Top\"/>");
}

TEST_P(RootElement, SetsTheVersionOfTheStore) {
    const std::pair<const char*, unsigned int> kVersions[] = {
        {"3", 3},
        {"0", 0},
        {"x", 0},
        {"", 0},
        {"12a", 12},
        {" 7", 7},
        {"-1", 4294967295u},
        {"99999999999", 4294967295u},
    };
    for (const auto& [version, number] : kVersions) {
        store()->version(42);
        ASSERT_EQ(read(std::string("<root name='r' version='") + version + "'/>"), kNone);
        EXPECT_EQ(store()->version(), number) << version;
    }
}

TEST_P(RootElement, LeavesTheVersionWithoutAnAttribute) {
    store()->version(42);
    EXPECT_EQ(rewritten("<root name='r'/>"), "<root version=\"42\" name=\"r\"/>");
}

TEST_P(RootElement, LeavesTheVersionWithoutAName) {
    store()->version(42);
    ASSERT_EQ(read("<root version='3'/>"), tMessages{"root : missing mandatory 'id' attribute"});
    EXPECT_EQ(store()->version(), 42u);
    EXPECT_EQ(store()->extent(), 0u);
}

TEST_P(RootElement, ReadsNoClassNoOptionalAndNoTarget) {
    ASSERT_EQ(read("<root name='r' class='c' optional='true' to='t'/>"), kNone);
    EXPECT_EQ(stored::byte(store(), 0, stored::kFlags), 0);
    EXPECT_EQ(written(), "<root version=\"0\" name=\"r\"/>");
}

TEST_P(RootElement, WritesItsNamesBeforeItsChildren) {
    EXPECT_EQ(
        rewritten("<root name='r'><group name='g'/><name>a</name><node name='n'/><name locale='de'>b</name></root>"),
        "<root version=\"0\" name=\"r\"><name locale=\"en-us\">a</name><name locale=\"de\">b</name>"
        "<group name=\"g\"/><node name=\"n\"/></root>");
}

TEST_P(RootElement, MergesNothing) {
    EXPECT_EQ(read("<root name='r'><table name='t'/><table name='t'/><node name='n'/><node name='n'/></root>"),
              (tMessages{"table : could not nest the element", "node : could not nest the element"}));
    EXPECT_EQ(written(), "<root version=\"0\" name=\"r\"><table name=\"t\"/><node name=\"n\"/></root>");
}

TEST_P(RootElement, MakesASecondRootInAStoreThatHasOne) {
    ASSERT_EQ(read("<root name='a' version='1'><group name='g'/></root>"), kNone);
    ASSERT_EQ(read("<root name='b' version='2'><group name='h'/></root>"), kNone);
    EXPECT_EQ(written(), "<root version=\"2\" name=\"a\"><group name=\"g\"/></root>");
    EXPECT_EQ(at(L"h"), kNoItem);
}

TEST_P(RootElement, SetsTheVersionEvenWhereItIsRefused) {
    EXPECT_EQ(read("<root name='a' version='1'><root name='b' version='2'/></root>"),
              tMessages{"root : could not nest the element"});
    EXPECT_EQ(store()->version(), 2u);
}

TEST_P(RootElement, IsStuckAfterAVal) {
    EXPECT_EQ(read("<root name='a'><val/><name>n</name><val/></root>"),
              (tMessages{"name : unknown element, skipping", "val : unknown element, skipping"}));
}

}  // namespace
