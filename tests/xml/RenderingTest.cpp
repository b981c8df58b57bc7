#include "tests/xml/XmlFixture.h"

namespace {

using namespace lumivard::platform::test_support;

/// What is written of a store, and in which order.
class Rendering : public XmlTest {
protected:
    static constexpr unsigned char kHidden = 4;

    void hide(unsigned int offset) {
        const auto flags = stored::byte(store(), offset, stored::kFlags);
        stored::putByte(store(), offset, stored::kFlags, static_cast<unsigned char>(flags | kHidden));
    }
};
LVP_ON_EACH_STORE(Rendering);

const char* const kTree =
    "<root version=\"0\" name=\"r\">"
    "<group name=\"a\"><int32 name=\"i\">1</int32><group name=\"b\"><string name=\"s\">x</string></group>"
    "<double name=\"d\">2</double></group>"
    "<table name=\"t\"><table name=\"u\"><bool name=\"o\">1</bool></table><uuid name=\"v\">y</uuid></table>"
    "<link name=\"l\" to=\"a\"/></root>";

TEST_P(Rendering, GoesDepthFirstInTheOrderOfTheChildren) {
    EXPECT_EQ(rewritten(kTree), kTree);
}

TEST_P(Rendering, BeginsAtAnyItem) {
    read(kTree);
    EXPECT_EQ(written(at(L"a.b")), "<group name=\"b\"><string name=\"s\">x</string></group>");
    EXPECT_EQ(written(at(L"a.i")), "<int32 name=\"i\">1</int32>");
    EXPECT_EQ(written(at(L"t.u")), "<table name=\"u\"><bool name=\"o\">1</bool></table>");
    EXPECT_EQ(written(at(L"l")), "<link name=\"l\" to=\"a\"/>");
}

TEST_P(Rendering, WritesNothingForNoItem) {
    EXPECT_EQ(written(kNoItem), "");
    EXPECT_EQ(written(0), "") << "in an empty store";
    read(kTree);
    EXPECT_EQ(written(kNoItem), "");
    EXPECT_EQ(written(12345), "");
    EXPECT_EQ(written(stored::word(store(), 0, stored::kChildren)), "") << "a list of offsets";
}

TEST_P(Rendering, WritesNothingForAnErasedItem) {
    read(kTree);
    const unsigned int erased = at(L"a.i");
    store()->erase(erased);
    EXPECT_EQ(written(erased), "");
    EXPECT_EQ(written(at(L"a")).find("name=\"i\""), std::string::npos);
}

TEST_P(Rendering, LeavesOutWhatIsHiddenWithAllBelow) {
    read(kTree);
    hide(at(L"a.b"));
    hide(at(L"t.u.o"));
    hide(at(L"l"));
    EXPECT_EQ(
        written(),
        "<root version=\"0\" name=\"r\"><group name=\"a\"><int32 name=\"i\">1</int32><double name=\"d\">2</double>"
        "</group><table name=\"t\"><table name=\"u\"/><uuid name=\"v\">y</uuid></table></root>");
}

TEST_P(Rendering, WritesNothingWhereItBeginsAtSomethingHidden) {
    read(kTree);
    for (const wchar_t* path : {L"a", L"a.i", L"t"}) {
        hide(at(path));
        EXPECT_EQ(written(at(path)), "");
    }
    hide(0);
    EXPECT_EQ(written(), "");
}

TEST_P(Rendering, WritesWhatHasOtherFlags) {
    read(kTree);
    for (const wchar_t* path : {L"a", L"a.b", L"t"}) stored::putByte(store(), at(path), stored::kFlags, 3);
    EXPECT_EQ(written(), kTree);
}

TEST_P(Rendering, LeavesOutContainersOfATypeThatDoesNotExistWithAllBelow) {
    read(kTree);
    for (const int type : {3, 255}) {
        stored::putByte(store(), at(L"a.b"), stored::kContainerType, static_cast<unsigned char>(type));
        EXPECT_EQ(written(at(L"a")),
                  "<group name=\"a\"><int32 name=\"i\">1</int32><double name=\"d\">2</double></group>");
        EXPECT_EQ(written(at(L"a.b")), "");
    }
}

TEST_P(Rendering, LeavesOutValuesOfAKindThatDoesNotExist) {
    constexpr unsigned int kKind = 22;
    read(kTree);
    for (const unsigned int kind : {0u, 25u, 0xFFFFFFFFu}) {
        stored::putWord(store(), at(L"a.i"), kKind, kind);
        EXPECT_EQ(
            written(at(L"a")),
            "<group name=\"a\"><group name=\"b\"><string name=\"s\">x</string></group><double name=\"d\">2</double>"
            "</group>");
    }
}

TEST_P(Rendering, WritesAStructWithoutALocatorAsAnEmptyElement) {
    {
        Design::Primitive pose(store(), metadata::kStruct, L"pose");
        pose.base(L"Pose");
        pose.set("12345678", 0, 8);
    }
    EXPECT_EQ(written(), "<struct name=\"pose\" type=\"Pose\"/>");
    {
        Design::Primitive pose(store(), 0);
        pose.localize(L"Lage", L"de");
    }
    EXPECT_EQ(written(), "<struct name=\"pose\" type=\"Pose\"><name locale=\"de\">Lage</name></struct>");
}

}  // namespace
