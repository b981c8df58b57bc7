// import: what is said at its end, and what --strict and --json do.
#include <gmock/gmock.h>

#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "lumivard/platform/stores.h"
#include "tests/end_to_end/ToolFixture.h"

namespace {

using namespace lumivard::platform::test_support;
using testing::HasSubstr;
using testing::MatchesRegex;

constexpr const char* kFaulty =
    "<root name='r'>\n  <nonsense/>\n  <group name='g'><int8 name='x'>5</int8></group></root>";

using ImportVerb = Tool;

TEST_F(ImportVerb, EndsWithOneLineThatTellsWhatWasDone) {
    const tRun run = this->run("import " + document("<root name='r'><group name='g'><int8 name='x'/></group></root>") +
                               " " + path("a.lvp"));
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "");
    EXPECT_THAT(run.err, MatchesRegex("2 items, 0 faults, 62 bytes read in [0-9]+ ms\n"));
}

TEST_F(ImportVerb, TellsFaultsBeforeThatLine) {
    const std::string faulty = document(kFaulty);
    const tRun run = this->run("import " + faulty + " " + path("a.lvp"));
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err,
                testing::StartsWith(faulty + ":2:3: nonsense : unknown element, skipping\n2 items, 1 fault, "));
}

TEST_F(ImportVerb, KeepsNothingOfAFaultyDocumentWhenItIsStrict) {
    const tRun run = this->run("import --strict " + document(kFaulty) + " " + path("a.lvp"));
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr("nothing was kept, since --strict takes no document with faults\n"));
    EXPECT_FALSE(std::filesystem::exists(path("a.lvp")));
    EXPECT_FALSE(std::filesystem::exists(path("a.lvp-lock")));
}

TEST_F(ImportVerb, LeavesAnEmptyStoreAsItWasWhenItIsStrict) {
    const std::string store = path("a.lvp");
    lumivard::platform::stores::file(store, lumivard::platform::stores::tMode::kWrite).reset();
    const std::string before = bytesOf(store);
    EXPECT_EQ(run("import --strict " + document(kFaulty) + " " + store).status, 1);
    EXPECT_EQ(bytesOf(store), before);
    EXPECT_EQ(run("import " + document("<root name='r'><group name='g'/></root>") + " " + store).status, 0);
    EXPECT_EQ(run("ls " + store).out, "g\n");
}

TEST_F(ImportVerb, KeepsNothingOfADocumentWithoutItems) {
    const tRun run = this->run("import " + document("no document") + " " + path("a.lvp"));
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr("nothing was kept, since the document breaks off before its first item\n"));
    EXPECT_FALSE(std::filesystem::exists(path("a.lvp")));
}

TEST_F(ImportVerb, TellsThatATopElementBesideTheRootLosesItsName) {
    EXPECT_THAT(run("import " + document("<double name='x'>4</double>") + " " + path("a.lvp")).err,
                HasSubstr("; the top element is no <root>: "));
    EXPECT_EQ(run("import " + document("<root name='r'/>") + " " + path("b.lvp")).err.find("top element"),
              std::string::npos);
}

TEST_F(ImportVerb, KeepsNothingOfADocumentThatHasNoItemAtItsTop) {
    const tRun run = this->run("import " + document("<html><body/></html>") + " " + path("a.lvp"));
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.err, HasSubstr("; nothing was kept, since the document has no item at its top\n"));
    EXPECT_FALSE(std::filesystem::exists(path("a.lvp")));
}

TEST_F(ImportVerb, TellsOfSchemasThatWerePassedOver) {
    const std::string named = document("<root name='r'><node name='n' class='Nope;Mechanical'/></root>");
    const tRun without = run("import " + named + " " + path("a.lvp"));
    EXPECT_EQ(without.status, 0);
    EXPECT_THAT(without.err, HasSubstr("; the schemas that the document names were passed over: give --schemas"));
    const tRun with = run("import " + named + " " + path("b.lvp") + " --schemas " + schemas);
    EXPECT_EQ(with.status, 1);
    EXPECT_THAT(with.err, testing::StartsWith(named + ": no schema \"Nope\" was found\n"));
    EXPECT_THAT(run("tree " + path("b.lvp") + " n").out, testing::StartsWith("n  [node]  class Mechanical\n"));
    EXPECT_EQ(run("import --strict " + named + " " + path("c.lvp") + " --schemas " + schemas).status, 1);
    EXPECT_FALSE(std::filesystem::exists(path("c.lvp")));
}

TEST_F(ImportVerb, CountsWhatSchemasHaveGiven) {
    EXPECT_THAT(run("import " + materials + " " + path("a.lvp") + " --schemas " + schemas).err,
                testing::StartsWith("1720 items, 394 of them hidden, 0 faults, "));
}

TEST_F(ImportVerb, TellsAsJsonWhatSurprises) {
    const tRun broken = run("import --json " + document("<root name='r'><group name='g'/>") + " " + path("a.lvp"));
    EXPECT_THAT(broken.out, HasSubstr("\"messages\":[{\"line\":1,\"column\":"));
    EXPECT_THAT(broken.out,
                HasSubstr("\"kept\":true,\"remark\":\"the store holds what came before the document broke off\"}"));
    EXPECT_THAT(run("import --json " + document("<html/>") + " " + path("b.lvp")).out,
                HasSubstr("\"kept\":false,\"remark\":\"nothing was kept, since "));
}

TEST_F(ImportVerb, ReadsPipesAndStandardInput) {
    const std::string text = document("<root name='r'><group name='g'/></root>");
    const std::string pipe = path("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(runProgram("bash", "-c 'cat " + text + " > " + pipe + " & " LVP_TOOL " import " + pipe + " " +
                                     path("a.lvp") + "'")
                  .status,
              0);
    EXPECT_EQ(run("ls " + path("a.lvp")).out, "g\n");
    EXPECT_EQ(runProgram("cat", text + " | " LVP_TOOL " import - " + path("b.lvp")).status, 0);
    EXPECT_EQ(run("ls " + path("b.lvp")).out, "g\n");
    EXPECT_EQ(runProgram("bash", "-c '" LVP_TOOL " diff " + text + " <(cat " + text + ")'").status, 0);
}

TEST_F(ImportVerb, IsInterruptedWhileItWaitsForAPipe) {
    const std::string pipe = path("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    // The end that is open for writing says nothing. Whoever is asked to end as soon as the reader is there finds him
    // waiting.
    const tRun run = runProgram("bash", "-c 'set -m; " LVP_TOOL " import " + pipe + " " + path("a.lvp") +
                                            " & exec 3> " + pipe + "; kill -INT $!; wait $!'");
    EXPECT_EQ(run.status, 4) << run.err;
    EXPECT_THAT(run.err, HasSubstr("lvp-data: import was interrupted, and nothing was changed"));
    EXPECT_FALSE(std::filesystem::exists(path("a.lvp")));
}

TEST_F(ImportVerb, DoesNotTakeTheStoreForAStreamThatIsClosed) {
    const std::string store = path("a.lvp");
    const tRun run = runProgram("bash", "-c 'exec 2>&-; " LVP_TOOL " import " + document(kFaulty) + " " + store + "'");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(this->run("ls " + store).out, "g\n") << "no message stands in it";
    EXPECT_EQ(this->run("check " + store).status, 0);
}

TEST_F(ImportVerb, PrintsAWholeObjectOrNone) {
    const std::string store = imported("<root name='r'><group name='g'/></root>", "a.lvp");
    const tRun refused = run("import --json " + document(kFaulty) + " " + store);
    EXPECT_EQ(refused.status, 3);
    EXPECT_EQ(refused.out, "");
}

TEST_F(ImportVerb, KeepsAFaultlessDocumentWhenItIsStrict) {
    ASSERT_EQ(
        run("import --strict " + document("<root name='r'><group name='g'/></root>") + " " + path("a.lvp")).status, 0);
    EXPECT_EQ(run("ls " + path("a.lvp")).out, "g\n");
}

TEST_F(ImportVerb, KeepsNothingWithFaultySchemasWhenItIsStrict) {
    const std::string faulty = path("schemas.xml");
    std::filesystem::copy_file(document(kFaulty), faulty);
    EXPECT_EQ(
        run("import --strict " + document("<root name='r'/>") + " " + path("a.lvp") + " --schemas " + faulty).status,
        1);
    EXPECT_FALSE(std::filesystem::exists(path("a.lvp")));
}

TEST_F(ImportVerb, TellsTheSameAsJson) {
    const std::string faulty = document(kFaulty);
    const tRun run = this->run("import --json " + faulty + " " + path("a.lvp"));
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err, "");
    EXPECT_THAT(run.out,
                testing::StartsWith("{\"document\":\"" + faulty + "\",\"store\":\"" + path("a.lvp") +
                                    "\",\"messages\":[{\"line\":2,\"column\":3,\"message\":\"nonsense : unknown "
                                    "element, skipping\"}],\"items\":2,\"hidden\":0,\"faults\":1,\"bytes\":"));
    EXPECT_THAT(run.out, HasSubstr(",\"kept\":true}\n"));
}

}  // namespace
