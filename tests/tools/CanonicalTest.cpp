// export --canonical: equal content gives equal lines.
#include <gmock/gmock.h>

#include <string>

#include "tests/end_to_end/ToolFixture.h"

namespace {

using namespace lumivard::platform::test_support;

class Canonical : public Tool {
protected:
    std::string written(const std::string& text, const std::string& name) const {
        return run("export --canonical " + imported(text, name)).out;
    }
};

TEST_F(Canonical, DocumentsHaveItemsByNameAndOneValueALine) {
    EXPECT_EQ(written("<root name='r' version='2'><group name='b'><name locale='fr-fr'>B</name><name locale='de-de'>Be"
                      "</name></group><group name='a'><vector3 name='v' units='Meter'>1 2 3</vector3><int8 name='i'>5"
                      "</int8><string name='s'> two  words </string><table name='t'><default unit='Meter' "
                      "type='double'/></table><bool name='e'/></group></root>",
                      "a.lvp"),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<root version=\"2\" name=\"r\">\n"
              "  <group name=\"a\">\n"
              "    <bool name=\"e\"/>\n"
              "    <int8 name=\"i\">5</int8>\n"
              "    <string name=\"s\"> two  words </string>\n"
              "    <table name=\"t\">\n"
              "      <default unit=\"Meter\" type=\"double\"/>\n"
              "    </table>\n"
              "    <vector3 name=\"v\" units=\"Meter\">\n"
              "      1\n"
              "      2\n"
              "      3\n"
              "    </vector3>\n"
              "  </group>\n"
              "  <group name=\"b\">\n"
              "    <name locale=\"de-de\">Be</name>\n"
              "    <name locale=\"fr-fr\">B</name>\n"
              "  </group>\n"
              "</root>\n");
}

TEST_F(Canonical, DocumentsReadBackAsTheSame) {
    const std::string bytes(200, 'A');
    const std::string text =
        "<root name='r'><group name='z'><string name='two'><name locale='x'>n</name><val>one</val><val> two\n lines "
        "</val></string><binary name='b'>" +
        bytes +
        "</binary><int32 name='n'><name locale='x'>m</name><val>1 2 3</val></int32><uri name='u'>a b</uri>"
        "</group><group name='a'/></root>";
    const std::string first = written(text, "a.lvp");
    EXPECT_EQ(written(first, "b.lvp"), first);
    EXPECT_EQ(run("get " + path("b.lvp") + " z.two").out, "one\n two\n lines \n");
    EXPECT_EQ(run("get " + path("b.lvp") + " z.b").out, bytes + "\n");
    EXPECT_EQ(run("get " + path("b.lvp") + " z.n").out, "1 2 3\n");
    EXPECT_EQ(run("get " + path("b.lvp") + " z.u").out, "a b\n");
}

TEST_F(Canonical, DocumentsOfOneItem) {
    const std::string store = imported(
        "<root name='r'><group name='g'><int8 name='b'>1</int8><int8 name='a'>2</int8>"
        "</group></root>");
    EXPECT_EQ(run("export --canonical " + store + " g").out,
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<group name=\"g\">\n  <int8 name=\"a\">2</int8>\n  <int8 "
              "name=\"b\">1</int8>\n</group>\n");
}

TEST_F(Canonical, MaterialsReadBackAsTheSame) {
    ASSERT_EQ(run("import " + materials + " " + path("m.lvp") + " --schemas " + schemas).status, 0);
    ASSERT_EQ(run("export --canonical " + path("m.lvp") + " -o " + path("m.xml")).status, 0);
    ASSERT_EQ(run("import " + path("m.xml") + " " + path("n.lvp") + " --schemas " + schemas).status, 0);
    EXPECT_EQ(run("export --canonical " + path("n.lvp")).out, bytesOf(path("m.xml")));
}

TEST_F(Canonical, StructsReadBackAsTheSame) {
    const std::string with = " --schemas " + motionSchemas;
    ASSERT_EQ(run("import " + motion + " " + path("m.lvp") + with).status, 0);
    ASSERT_EQ(run("export --canonical " + path("m.lvp") + with + " -o " + path("m.xml")).status, 0);
    ASSERT_EQ(run("import " + path("m.xml") + " " + path("n.lvp") + with).status, 0);
    EXPECT_EQ(run("export --canonical " + path("n.lvp") + with).out, bytesOf(path("m.xml")));
    EXPECT_EQ(run("export " + path("n.lvp") + " arm.hand" + with).out,
              run("export " + path("m.lvp") + " arm.hand" + with).out);
}

}  // namespace
