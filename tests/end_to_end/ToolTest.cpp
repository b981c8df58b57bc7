#include <gtest/gtest.h>

#include <string>

#include "lumivard/platform/data.h"
#include "lumivard/platform/stores.h"
#include "tests/end_to_end/ToolFixture.h"

// The command-line tool, run as a user runs it.

namespace {

using namespace lumivard::platform::test_support;
namespace data = lumivard::platform::data;
namespace stores = lumivard::platform::stores;

TEST_F(Tool, ImportsExportsAndImportsTheSame) {
    ASSERT_EQ(run("import " + materials + " " + path("a.lvp")).status, 0);
    ASSERT_EQ(run("export " + path("a.lvp") + " -o " + path("a.xml")).status, 0);
    ASSERT_EQ(run("import " + path("a.xml") + " " + path("b.lvp")).status, 0);
    const tRun exported = run("export " + path("b.lvp"));
    EXPECT_EQ(exported.status, 0);
    EXPECT_EQ(exported.err, "");
    EXPECT_EQ(exported.out, bytesOf(path("a.xml")));
}

TEST_F(Tool, PrintsFaultsWithTheirPlaceAndGoesOn) {
    const std::string faulty = document("<root name=\"r\">\n  <nonsense/>\n  <group name=\"g\"/>\n</root>");
    const tRun import = run("import " + faulty + " " + path("store.lvp"));
    EXPECT_EQ(import.status, 1);
    EXPECT_EQ(import.out, "");
    EXPECT_EQ(import.err.rfind(faulty + ":2:3: nonsense : unknown element, skipping\n1 item, 1 fault, ", 0), 0u)
        << import.err;
    EXPECT_EQ(run("tree " + path("store.lvp")).out, "r  [root]\n└─ g  [group]\n");
}

TEST_F(Tool, TellsWhereADocumentBreaksOff) {
    const std::string broken = document("<root name=\"r\">\n<group name=\"g\"></root>");
    const tRun import = run("import " + broken + " " + path("store.lvp"));
    EXPECT_EQ(import.status, 1);
    EXPECT_NE(import.err.find(broken + ":2:19: "), std::string::npos) << import.err;
    EXPECT_EQ(run("tree " + path("store.lvp")).out, "r  [root]\n└─ g  [group]\n");
}

TEST_F(Tool, ShowsNamesKindsValuesAndUnits) {
    const std::string store = imported(
        "<root name=\"r\"><group name=\"g\"><name locale=\"de-de\">Gruppe</name>"
        "<double name=\"length\" units=\"Meter\">2.5 3</double>"
        "<string name=\"text\"><val>a</val><val>b</val></string></group>"
        "<link name=\"l\" to=\"g\"/></root>");
    EXPECT_EQ(run("tree " + store).out,
              "r  [root]\n"
              "├─ g  [group]  de-de \"Gruppe\"\n"
              "│  ├─ length = 2.5 3 Meter  [double]\n"
              "│  └─ text = a | b  [string]\n"
              "└─ l  [link]  to g\n");
    EXPECT_EQ(run("tree " + store + " g.length").out, "length = 2.5 3 Meter  [double]\n");
}

TEST_F(Tool, ShowsInTreesWhatDocumentsCannotCarry) {
    data::structure::IContainerFrontEnd::toplevel(stores::file(path("odd.lvp"), stores::tMode::kWrite).get(), L"a\x01");
    EXPECT_EQ(run("tree " + path("odd.lvp") + " 'a\x01'").out, "a\\x01  [group]\n");
}

TEST_F(Tool, ShowsInTreesAndJsonWhatStandsAtTheTopHiddenOrNot) {
    const std::string whole = path("whole.lvp");
    ASSERT_EQ(run("import " + materials + " " + whole + " --schemas " + schemas).status, 0);
    ASSERT_EQ(run("export " + whole + " Carbon.Graphite -o " + path("part.xml")).status, 0);
    const std::string part = path("part.lvp");
    ASSERT_EQ(run("import " + path("part.xml") + " " + part + " --schemas " + schemas).status, 0);
    EXPECT_EQ(run("tree " + part).out.substr(0, 8), "Graphite");
    EXPECT_EQ(run("tree " + part).out.find("ShearModulus"), std::string::npos);
    EXPECT_NE(run("tree --hidden " + part).out.find("ShearModulus"), std::string::npos);
    EXPECT_EQ(run("tree --json " + part).out.find("ShearModulus"), std::string::npos);
    EXPECT_NE(run("tree --json --hidden " + part).out.find("ShearModulus"), std::string::npos);
    EXPECT_EQ(run("ls --json " + part).out.find("ShearModulus"), std::string::npos);
}

TEST_F(Tool, SaysThatNoPathLeadsToAValueAtTheTop) {
    const tRun shown = run("tree " + imported("<int8 name='v'>5</int8>"));
    EXPECT_EQ(shown.status, 3);
    EXPECT_EQ(shown.err, "lvp-data: at the top of the store " + path("store.lvp") +
                             " there is a value, which no path leads to; lvp-data export shows it\n");
}

TEST_F(Tool, ShowsTreesOfManyLevelsWithoutTheirFirstBranches) {
    std::string items = "<int8 name='x'/>";
    for (int level = 0; level < 103; ++level) items = "<node name='n'>" + items + "<node name='m'/></node>";
    const std::string out = run("tree " + imported("<root name='r'>" + items + "</root>")).out;
    EXPECT_NE(out.find("\n(4 levels) │  "), std::string::npos) << out;
    EXPECT_EQ(out.find("(5 levels)"), std::string::npos);
}

TEST_F(Tool, ExportsOneItemByItsPath) {
    const std::string store = imported(
        "<root name=\"r\"><group name=\"a\"><group name=\"a\"><int8 name=\"x\">5</int8></group></group></root>");
    EXPECT_EQ(run("export " + store + " a.a").out,
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<group name=\"a\"><int8 name=\"x\">5</int8></group>");
    EXPECT_EQ(run("export " + store + " a.x").status, 3);
}

TEST_F(Tool, WritesHostileTextAsText) {
    const std::string store = imported("<node name=\"n\xC2\x9B\"><string name=\"s\">a&#10;b</string></node>");
    EXPECT_EQ(run("tree " + store).out, "n\\x9b  [node]\n└─ s = a\\nb  [string]\n");
}

TEST_F(Tool, NamesWhatItCannotOpen) {
    const tRun noDocument = run("import " + path("no.xml") + " " + path("store.lvp"));
    EXPECT_EQ(noDocument.status, 3);
    EXPECT_NE(noDocument.err.find(path("no.xml") + ": No such file or directory"), std::string::npos) << noDocument.err;
    EXPECT_FALSE(std::filesystem::exists(path("store.lvp"))) << "nothing is made for a document that is not there";

    const tRun noStore = run("tree " + path("no.lvp"));
    EXPECT_EQ(noStore.status, 3);
    EXPECT_NE(noStore.err.find("no.lvp"), std::string::npos) << noStore.err;

    const tRun noPath = run("tree " + imported("<root name=\"r\"/>") + " a.b");
    EXPECT_EQ(noPath.status, 3);
    EXPECT_NE(noPath.err.find("a.b"), std::string::npos) << noPath.err;
}

TEST_F(Tool, DoesNotImportOverAStoreThatHoldsData) {
    const std::string store = imported("<root name=\"r\"/>");
    const tRun again = run("import " + materials + " " + store);
    EXPECT_EQ(again.status, 3);
    EXPECT_NE(again.err.find(store), std::string::npos) << again.err;
    EXPECT_EQ(run("tree " + store).out, "r  [root]\n");
}

TEST_F(Tool, DoesNotReplaceAStoreByItsOwnDocument) {
    const std::string store = imported("<root name=\"r\"/>");
    const tRun refused = run("export " + store + " -o " + store);
    EXPECT_EQ(refused.status, 3);
    EXPECT_EQ(refused.err, "lvp-data: the document " + store + " would replace " + store + ", which it is made from\n");
    EXPECT_EQ(run("tree " + store).out, "r  [root]\n");
}

TEST_F(Tool, TellsWhatToDoWithADocumentInTheStoresPlace) {
    const std::string text = document("<root name=\"r\"/>");
    const tRun refused = run("tree " + text);
    EXPECT_EQ(refused.status, 3);
    EXPECT_EQ(refused.err,
              "lvp-data: " + text + " is an XML document and no store: lvp-data import makes a store of it\n");
    const std::string help = "lvp-data --help lists them, lvp-data VERB --help shows one\n";
    EXPECT_EQ(run("").err, "lvp-data: give a verb: " + help);
    EXPECT_EQ(run("exprt a").err, "lvp-data: there is no verb \"exprt\", but export: " + help);
    EXPECT_EQ(run("frobnicate").err, "lvp-data: there is no verb \"frobnicate\": " + help);
}

TEST_F(Tool, RefusesAStoreThatWouldBeGoneAtItsEnd) {
    EXPECT_EQ(run("import " + document("<root name=\"r\"/>") + " memory:").status, 3);
}

TEST_F(Tool, TellsWrongUsage) {
    EXPECT_EQ(run("").status, 2);
    EXPECT_EQ(run("import onlyone").status, 2);
    EXPECT_EQ(run("nonsense").status, 2);
    EXPECT_EQ(run("export a.lvp -o ''").status, 2);
    EXPECT_EQ(run("cp a.lvp b c.d --to ''").status, 2);
    EXPECT_EQ(run("--help").status, 0);
    EXPECT_EQ(run("tree --help").status, 0);
}

}  // namespace
