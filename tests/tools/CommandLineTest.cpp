// What the tool makes of its words.
#include <gmock/gmock.h>

#include <string>

#include "tests/end_to_end/ToolFixture.h"

namespace {

using namespace lumivard::platform::test_support;
using testing::HasSubstr;

class CommandLineOf : public Tool {
protected:
    void SetUp() override {
        store = imported(
            "<root name='r'><group name='g'><double name='d'>1</double><string name='s'>a</string>"
            "<binary name='b'>AAAA</binary></group></root>");
    }
    void expectRefusal(const std::string& command, const std::string& words) const {
        const tRun refused = run(command);
        EXPECT_EQ(refused.status, 2) << command;
        EXPECT_EQ(refused.err, "lvp-data: " + words + "\n");
        EXPECT_EQ(refused.out, "");
    }
    std::string get(const std::string& path) const { return run("get " + store + " " + path).out; }

    std::string store;
};

const std::string kVerbs = ": lvp-data --help lists them, lvp-data VERB --help shows one";

TEST_F(CommandLineOf, TheToolBeginsWithAVerb) {
    expectRefusal("", "give a verb" + kVerbs);
    expectRefusal("--verison", "give a verb before --verison" + kVerbs);
    expectRefusal("help tree", "there is no verb \"help\"" + kVerbs);
    expectRefusal("imprt a b", "there is no verb \"imprt\", but import" + kVerbs);
    EXPECT_EQ(run("--version").status, 0);
}

TEST_F(CommandLineOf, AVerbTakesNoMoreThanItHas) {
    const std::string help = ": lvp-data get --help shows what it takes";
    expectRefusal("get " + store + " g.d two three", "get takes no two" + help);
    expectRefusal("get " + store + " g.d '[x]'", "get takes no [x]" + help);
    expectRefusal("get " + store + " g.d --jsn", "get takes no --jsn, but --json" + help);
    expectRefusal("get " + store, "PATH is required" + help);
}

TEST_F(CommandLineOf, WordsThatLookLikeSomethingElseAreTaken) {
    for (const std::string word : {"++", "[a]", "[a,b]", "-.5", "-inf", "-INF"}) {
        EXPECT_EQ(run("set " + store + " g.s '" + word + "'").status, 0) << word;
        EXPECT_EQ(get("g.s"), word + "\n");
    }
    EXPECT_EQ(run("set " + store + " g.d -INF").status, 0);
    EXPECT_EQ(get("g.d"), "-inf\n");
}

TEST_F(CommandLineOf, BehindTwoMinusesThereAreNoOptions) {
    EXPECT_EQ(run("set " + store + " g.s a -- -b --unit -- c").status, 0);
    EXPECT_EQ(get("g.s"), "a\n-b\n--unit\n--\nc\n");
}

TEST_F(CommandLineOf, AToleranceIsANumberFrom0On) {
    for (const std::string word : {"-1", "abc", "inf", "nan", "1x", "''"}) {
        const tRun refused = run("diff " + store + " " + store + " --tolerance " + word);
        EXPECT_EQ(refused.status, 2) << word;
        EXPECT_THAT(refused.err, HasSubstr("is no number from 0 on, such as 1e-9")) << word;
    }
    EXPECT_EQ(run("diff " + store + " " + store + " --tolerance 1e-9").status, 0);
}

TEST_F(CommandLineOf, TextIsUtf8) {
    expectRefusal("set " + store + " g.s '\xFF'", "\"\xFF\" is not text in UTF-8");
    expectRefusal("mk " + store + " 'g.n\xFF' group", "\"g.n\xFF\" is not text in UTF-8");
    EXPECT_EQ(run("set " + store + " g.s 'Höhe 𝒳 \xEF\xBF\xBD'").status, 0);
    EXPECT_EQ(get("g.s"), "Höhe 𝒳 \xEF\xBF\xBD\n");
}

TEST_F(CommandLineOf, BytesCanBeTakenAway) {
    EXPECT_EQ(run("set " + store + " g.b ''").status, 0);
    EXPECT_EQ(get("g.b"), "\n");
    EXPECT_EQ(run("set " + store + " g.d ''").status, 2);
}

TEST_F(CommandLineOf, ATruthWithAUnitIsSetAsItIsPrinted) {
    ASSERT_EQ(run("mk " + store + " g.t bool true --unit Meter").status, 0);
    EXPECT_EQ(get("g.t"), "true Meter\n");
    EXPECT_EQ(run("set " + store + " g.t false Meter").status, 0);
    EXPECT_EQ(get("g.t"), "false Meter\n");
}

TEST_F(CommandLineOf, TheOnlyTextOfAnItemIsNotSaidToBeGone) {
    ASSERT_EQ(run("set " + store + " g.s --text de=Eins --text fr=Un").status, 0);
    EXPECT_EQ(run("set " + store + " g.s --text fr=").status, 0);
    const tRun refused = run("set " + store + " g.s --text de=");
    EXPECT_EQ(refused.status, 4);
    EXPECT_EQ(
        refused.err,
        "lvp-data: what g.s is called in de is its only text, and the last text of an item cannot be removed: give "
        "another one\n");
    EXPECT_THAT(run("tree " + store + " g.s").out, HasSubstr("de \"Eins\""));
}

TEST_F(CommandLineOf, AnEmptyNameIsCalledOne) {
    EXPECT_THAT(run("ls " + store + " g.").err, HasSubstr("holds nothing at the path g.: a name in it is empty"));
    EXPECT_THAT(run("mk " + store + " .g int8 3").err, HasSubstr(": a name in it is empty"));
}

TEST_F(CommandLineOf, MissingParentsOfAMissingStoreAreNamed) {
    const tRun refused = run("mk " + path("none.lvp") + " a.b double 1");
    EXPECT_EQ(refused.status, 3);
    EXPECT_EQ(refused.err, "lvp-data: there is no store " + path("none.lvp") +
                               ": with -p it is made, with the groups on the way to a.b\n");
    EXPECT_EQ(run("mk -p " + path("none.lvp") + " a.b double 1").status, 0);
}

TEST_F(CommandLineOf, AKindThatThereIsNotIsNearToOne) {
    EXPECT_THAT(run("mk " + store + " g.x Double 1").err,
                HasSubstr("there is no kind \"Double\", but double: it is one of"));
}

TEST_F(CommandLineOf, LinksAreListedWithWhatTheyLeadTo) {
    ASSERT_EQ(run("mk " + store + " g.l link --to g.d").status, 0);
    EXPECT_THAT(run("ls -l " + store + " g").out, HasSubstr("link    l to g.d\n"));
}

TEST_F(CommandLineOf, DocumentsAreNoStores) {
    const std::string xml = document("<root name='r'/>");
    for (const std::string verb : {"tree", "ls", "check", "stat", "compact"}) {
        const tRun refused = run(verb + " " + xml);
        EXPECT_EQ(refused.status, 3) << verb;
        EXPECT_EQ(refused.err,
                  "lvp-data: " + xml + " is an XML document and no store: lvp-data import makes a store of it\n");
    }
}

}  // namespace
