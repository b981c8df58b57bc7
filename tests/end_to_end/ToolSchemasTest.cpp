#include <gtest/gtest.h>

#include <string>

#include "tests/end_to_end/ToolFixture.h"

// The commands of the tool that know schemas.

namespace {

using namespace lumivard::platform::test_support;

/// A store of one group "g" without a class, and a document with the schema that it is held against: "S" wants a, an
/// int32, then t, a table of b, a double, then c, a string.
class ToolValidation : public Tool {
protected:
    tRun validate(const std::string& content, const std::string& uri = "S") const {
        const std::string schema = path("schema.xml");
        std::ofstream(schema) << "<root name='s'><table name='S'><int32 name='a'/><table name='t'><double name='b'/>"
                                 "</table><string name='c'/></table><table name='Empty'/></root>";
        std::filesystem::remove(path("store.lvp"));
        imported("<root name='r'><group name='g'>" + content + "</group></root>");
        return run("validate " + path("store.lvp") + " g \"" + uri + "\" --schemas " + schema);
    }
};

constexpr const char* kTable = "<table name='t'><double name='b'/></table>";

TEST_F(ToolValidation, SaysYes) {
    const tRun yes = validate("<int8 name='x'/><int32 name='a'/>" + std::string(kTable) + "<string name='c'/>");
    EXPECT_EQ(yes.out, "g conforms to S\n");
    EXPECT_EQ(yes.status, 0);
}

TEST_F(ToolValidation, NamesTheFirstItemThatIsMissing) {
    const tRun no = validate("<int32 name='a'/><string name='c'/>");
    EXPECT_EQ(no.out, "g does not conform to S: 't' (table) is missing\n");
    EXPECT_EQ(no.status, 1);
    EXPECT_EQ(validate("").out, "g does not conform to S: 'a' (int32) is missing\n");
    EXPECT_EQ(validate("<int32 name='a'/><table name='t'/><string name='c'/>").out,
              "g does not conform to S: 't.b' (double) is missing\n");
}

TEST_F(ToolValidation, NamesTheFirstItemOfAnotherKind) {
    EXPECT_EQ(validate("<int64 name='a'/>" + std::string(kTable) + "<string name='c'/>").out,
              "g does not conform to S: 'a' is of the kind int64, and in the schema of the kind int32\n");
    EXPECT_EQ(validate("<int32 name='a'/><int8 name='t'/><string name='c'/>").out,
              "g does not conform to S: 't' is of the kind int8, and in the schema a table\n");
    EXPECT_EQ(validate("<int32 name='a'/><table name='t'><table name='b'/></table><string name='c'/>").out,
              "g does not conform to S: 't.b' is a table, and in the schema of the kind double\n");
}

TEST_F(ToolValidation, NamesTheFirstItemOutOfOrder) {
    EXPECT_EQ(validate(std::string(kTable) + "<int32 name='a'/><string name='c'/>").out,
              "g does not conform to S: 't' stands before 'a', and in the schema behind it\n");
    EXPECT_EQ(validate("<int32 name='a'/><string name='c'/>" + std::string(kTable)).out,
              "g does not conform to S: 'c' stands before 't', and in the schema behind it\n");
}

TEST_F(ToolValidation, TellsAnEmptySchemaFromItems) {
    const tRun no = validate("<int32 name='a'/>", "Empty");
    EXPECT_EQ(no.out, "g does not conform to Empty: there are no items in it, and it is not named in a class\n");
    EXPECT_EQ(no.status, 1);
}

TEST_F(ToolValidation, NamesASchemaThatIsNotThere) {
    const tRun none = validate("", "S;Nope");
    EXPECT_EQ(none.status, 3);
    EXPECT_EQ(none.out, "");
    EXPECT_EQ(none.err, "lvp-data: no schema \"Nope\" in " + path("schema.xml") + "; there are such as S, Empty\n");
}

TEST_F(ToolValidation, LooksAtTablesInContainersToo) {
    validate(kTable);
    const std::string command = "validate " + path("store.lvp") + " g.t S --schemas " + path("schema.xml");
    EXPECT_EQ(run(command).out, "g.t does not conform to S: 'a' (int32) is missing\n");
}

TEST_F(ToolValidation, NamesAPathWithoutContainerOrTable) {
    validate("<int32 name='a'/>");
    const tRun none = run("validate " + path("store.lvp") + " g.a S --schemas " + path("schema.xml"));
    EXPECT_EQ(none.status, 3);
    EXPECT_EQ(none.err, "lvp-data: the store " + path("store.lvp") +
                            " holds no container, and no table in one, at the path g.a\n");
}

TEST_F(Tool, ImportsMaterialsWithTheirSchemas) {
    ASSERT_EQ(run("import " + materials + " " + path("m.lvp") + " --schemas " + schemas).status, 0);
    const tRun valid =
        run("validate " + path("m.lvp") + " Carbon.Graphite \"Mechanical;Thermal\" --schemas " + schemas);
    EXPECT_EQ(valid.out, "Carbon.Graphite conforms to Mechanical;Thermal\n");
    EXPECT_NE(run("tree " + path("m.lvp") + " Carbon").out.find("class Mechanical;Thermal"), std::string::npos);
    EXPECT_EQ(run("tree " + path("m.lvp") + " Carbon").out.find("YieldStrength"), std::string::npos) << "it is hidden";
    EXPECT_NE(run("tree --hidden " + path("m.lvp") + " Carbon").out.find("YieldStrength"), std::string::npos);
}

TEST_F(Tool, TakesSchemasFromSeveralStoresAndDocuments) {
    ASSERT_EQ(run("import " + schemas + " " + path("s.lvp")).status, 0);
    const std::string both = " --schemas " + path("s.lvp") + " --schemas " + motionSchemas;
    EXPECT_EQ(run("schema Thermal" + both).status, 0);
    EXPECT_EQ(run("schema Pose" + both).status, 0);
    EXPECT_EQ(run("schema Thermal --schemas " + motionSchemas).status, 3);
}

TEST_F(Tool, ShowsTheFieldsOfASchema) {
    const tRun shown = run("schema \"Gripper;Pose\" --schemas " + motionSchemas);
    EXPECT_EQ(shown.status, 0);
    EXPECT_EQ(shown.out,
              "Gripper: 10 fields, 25 values, 145 bytes\n"
              "  field               kind    count  offset  size\n"
              "  palm.position       double      3       0    24\n"
              "  palm.rotation       scalar      4      24    16\n"
              "  palm.time           int64       1      40     8\n"
              "  finger[0].position  double      3      48    24\n"
              "  finger[0].rotation  scalar      4      72    16\n"
              "  finger[0].time      int64       1      88     8\n"
              "  finger[1].position  double      3      96    24\n"
              "  finger[1].rotation  scalar      4     120    16\n"
              "  finger[1].time      int64       1     136     8\n"
              "  closed              bool        1     144     1\n"
              "Pose: 3 fields, 8 values, 48 bytes\n"
              "  field     kind    count  offset  size\n"
              "  position  double      3       0    24\n"
              "  rotation  scalar      4      24    16\n"
              "  time      int64       1      40     8\n");
}

TEST_F(Tool, ReadsAndWritesStructsWithTheirSchemas) {
    const std::string with = " --schemas " + motionSchemas;
    ASSERT_EQ(run("import " + motion + " " + path("a.lvp") + with).status, 0);
    ASSERT_EQ(run("export " + path("a.lvp") + " -o " + path("a.xml") + with).status, 0);
    ASSERT_EQ(run("import " + path("a.xml") + " " + path("b.lvp") + with).status, 0);
    EXPECT_EQ(run("export " + path("b.lvp") + with).out, bytesOf(path("a.xml")));
    EXPECT_EQ(run("tree " + path("b.lvp") + " arm.path" + with).out,
              "path = 0 0 0.5 0 0 0 1 0 0.25 0 0.5 0 0 0.7071068 0.7071068 400 0.2…  [struct]  type Pose\n");
}

TEST_F(Tool, RefusesStructsWithoutSchemas) {
    const tRun import = run("import " + motion + " " + path("a.lvp"));
    EXPECT_EQ(import.status, 1);
    EXPECT_NE(import.err.find("struct : missing locator to resolve the 'type' attribute"), std::string::npos);
}

TEST_F(Tool, PrintsTheFaultsOfSchemaDocuments) {
    const std::string faulty = document("<root name='s'><table name='S'><nonsense/></table></root>");
    const tRun shown = run("schema S --schemas " + faulty);
    EXPECT_EQ(shown.status, 1);
    EXPECT_EQ(shown.err, faulty + ":1:32: nonsense : unknown element, skipping\n");
    EXPECT_EQ(shown.out.substr(0, 2), "S:");
}

TEST_F(Tool, NamesSchemasThatAreNearToOneThatThereIsNot) {
    const auto refusal = [&](const std::string& uri, const std::string& document) {
        const tRun refused = run("schema " + uri + " --schemas " + document);
        EXPECT_EQ(refused.status, 3);
        const std::string begin = "lvp-data: no schema \"" + uri + "\" in " + document;
        EXPECT_EQ(refused.err.substr(0, begin.size()), begin);
        return refused.err.substr(std::min(begin.size(), refused.err.size()));
    };
    const std::string some =
        document("<root name='s'><table name='Thermal'/><group name='g'><table name='Pose'/></group></root>");
    EXPECT_EQ(refusal("thermall", some), "; near to it: Thermal\n");
    EXPECT_EQ(refusal("g.pose", some), "; near to it: g.Pose\n");
    EXPECT_EQ(refusal("zzz", some), "; there are such as Thermal, g.Pose\n");
    EXPECT_EQ(refusal("Pose", document("<root name='s'/>")), ": a schema is a table, and there is none\n");
}

TEST_F(Tool, NamesSchemasThatItCannotOpen) {
    const tRun none = run("schema S --schemas " + path("no.xml"));
    EXPECT_EQ(none.status, 3);
    EXPECT_NE(none.err.find(path("no.xml")), std::string::npos) << none.err;
}

TEST_F(Tool, HoldsAStoreAgainstSchemasOfItsOwn) {
    const std::string store = imported(
        "<root name='r'><table name='S'><int8 name='x'/></table><group name='g'><int8 name='x'/></group></root>");
    EXPECT_EQ(run("validate " + store + " g S --schemas " + store + " --schemas " + store).out, "g conforms to S\n");
}

TEST_F(Tool, DoesNotUseSchemasOfADocumentThatBreaksOff) {
    const std::string broken = document("<root name='s'><table name='S'><int8 name='x'/></table>");
    const tRun shown = run("schema S --schemas " + broken);
    EXPECT_EQ(shown.status, 3);
    EXPECT_EQ(shown.out, "");
    EXPECT_NE(shown.err.find("lvp-data: the schemas in " + broken + " cannot be used\n"), std::string::npos)
        << shown.err;
}

TEST_F(Tool, ReadsSchemaDocumentsInOtherEncodings) {
    std::string wide;
    for (const char each : std::string("<root name='s'><table name='S'/></root>")) wide += std::string(1, '\0') + each;
    EXPECT_EQ(run("schema S --schemas " + document("\xFE\xFF" + wide)).out,
              "S: 0 fields, 0 values, 0 bytes\n  field  kind  count  offset  size\n");
}

TEST_F(Tool, TellsWhenItsAnswerCannotBeWritten) {
    const std::string store = imported("<root name='r'><table name='S'/><group name='g'/></root>");
    for (const std::string& command : {std::string("schema S"), "validate " + store + " g S"}) {
        const std::string whole = LVP_TOOL " " + command + " --schemas " + store + " >/dev/full";
        EXPECT_EQ(runProgram("sh -c '" + whole + "'", "").status, 4) << command;
    }
}

TEST_F(Tool, WantsSchemasWhereItCannotDoWithout) {
    EXPECT_EQ(run("schema S").status, 2);
    EXPECT_EQ(run("validate a.lvp b S").status, 2);
}

}  // namespace
