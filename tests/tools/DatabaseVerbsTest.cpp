// The verbs on stores in a database. Without a server, which LVP_POSTGRES names, they are skipped.
#include <gmock/gmock.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "tests/end_to_end/ToolFixture.h"

namespace {

using namespace lumivard::platform::test_support;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class DatabaseVerbs : public Tool {
protected:
    void SetUp() override {
        const char* const server = std::getenv("LVP_POSTGRES");
        if (!server) GTEST_SKIP() << "no server was named by LVP_POSTGRES: see scripts/test-postgres.sh";
        std::istringstream words(server);
        for (std::string word; words >> word;) {
            const auto equals = word.find('=');
            _server[word.substr(0, equals)] = word.substr(equals + 1);
        }
        one = newStore();
    }
    void TearDown() override {
        for (const std::string& name : _names) run("store drop " + location(name));
    }

    /// A password, which a server that trusts everybody does not look at.
    std::string database() const {
        return "postgresql://" + _server.at("user") + ":secret@" + _server.at("host") + ":" + _server.at("port") + "/" +
               _server.at("dbname");
    }
    std::string location(const std::string& name) const { return "'" + database() + "?store=" + name + "'"; }

    std::string newName() {
        static int number = 0;
        _names.push_back("tool " + std::to_string(::getpid()) + " " + std::to_string(++number));
        return _names.back();
    }
    std::string newStore() {
        const std::string store = location(newName());
        const tRun made = run("store create " + store);
        EXPECT_EQ(made.status, 0) << made.err;
        return store;
    }
    const std::string& nameOfLast() const { return _names.back(); }

    tRun done(const std::string& arguments) const {
        tRun run = this->run(arguments);
        EXPECT_EQ(run.status, 0) << arguments << '\n' << run.err;
        EXPECT_THAT(run.err + run.out, Not(HasSubstr("secret"))) << arguments;
        return run;
    }
    tRun refused(const std::string& arguments, int status) const {
        tRun run = this->run(arguments);
        EXPECT_EQ(run.status, status) << arguments << '\n' << run.err;
        EXPECT_THAT(run.err + run.out, Not(HasSubstr("secret"))) << arguments;
        return run;
    }
    void fill(const std::string& store) const {
        done("import " +
             document("<root name='r'><group name='g'><double name='d'>1</double>"
                      "<string name='s'>a</string></group></root>") +
             " " + store);
    }
    /// What the list tells of a store: "extent":0,"version":0,"epoch":0
    std::string told(const std::string& name) const {
        const std::string all = done("store list --json '" + database() + "'").out;
        const std::string head = "{\"name\":\"" + name + "\",";
        const auto begin = all.find(head);
        if (begin == std::string::npos) return {};
        return all.substr(begin + head.size(), all.find('}', begin) - begin - head.size());
    }
    /// How often something was stored in a store.
    std::string epoch(const std::string& name) const {
        const std::string all = told(name);
        return all.substr(all.rfind(':') + 1);
    }

    std::string one;

private:
    std::map<std::string, std::string> _server;
    std::vector<std::string> _names;
};

TEST_F(DatabaseVerbs, AStoreIsMadeListedAndDeleted) {
    const std::string name = newName();
    EXPECT_EQ(told(name), "");
    EXPECT_THAT(done("store create " + location(name)).err,
                StartsWith("made the store \"" + name + "\" in postgresql"));
    EXPECT_EQ(told(name), R"("extent":0,"version":0,"epoch":0)");
    EXPECT_THAT(refused("store create " + location(name), 3).err, HasSubstr("there is a store of that name already"));
    done("mk " + location(name) + " g group");
    EXPECT_THAT(done("store list '" + database() + "'").out, HasSubstr("  1  " + name + "\n"));
    EXPECT_THAT(done("store drop " + location(name)).err, StartsWith("deleted the store \"" + name + "\""));
    EXPECT_EQ(told(name), "");
    EXPECT_THAT(refused("store drop " + location(name), 3).err, HasSubstr("there is no store \"" + name + "\""));
}

TEST_F(DatabaseVerbs, AStoreThatThereIsNotIsNotMadeInPassing) {
    const std::string name = newName();
    for (const std::string command : {"mk -p ", "set ", "ls "}) {
        const tRun none = refused(command + location(name) + " a.b" + (command == "ls " ? "" : " double 1"), 3);
        EXPECT_THAT(none.err, HasSubstr("there is no store \"" + name + "\""));
        EXPECT_THAT(none.err, HasSubstr("lvp-data store create makes one"));
    }
    EXPECT_EQ(told(name), "");
}

TEST_F(DatabaseVerbs, RolesAreLetIn) {
    EXPECT_THAT(refused("store grants " + one + " --role 'tool nobody'", 3).err, HasSubstr("does not exist"));
    EXPECT_THAT(done("store grants " + one + " --role public --print").out, HasSubstr("GRANT"));
}

TEST_F(DatabaseVerbs, EachVerbIsStoredOnceAndAsAWhole) {
    const std::string name = nameOfLast();
    fill(one);
    EXPECT_EQ(epoch(name), "1");
    done("mk -p " + one + " h.i.j int32 1 2 3 --text de=Drei");
    EXPECT_EQ(epoch(name), "2");
    done("set " + one + " g.d 2 --text de=Zwei");
    EXPECT_EQ(epoch(name), "3");
    done("cp " + one + " g h.g");
    EXPECT_EQ(epoch(name), "4");
    done("mv " + one + " h.g h.i.g");
    EXPECT_EQ(epoch(name), "5");
    done("rm -r " + one + " h.i.g h.i.j");
    EXPECT_EQ(epoch(name), "6");
    EXPECT_EQ(done("get " + one + " g.d").out, "2\n");
    EXPECT_EQ(epoch(name), "6") << "reading stores nothing";
}

TEST_F(DatabaseVerbs, WhatFailsHasChangedNothing) {
    const std::string name = nameOfLast();
    fill(one);
    const std::string before = told(name);
    refused("rm " + one + " g.d g.none", 3);
    refused("mk -p " + one + " a.b.c int8 300", 2);
    refused("set " + one + " g.d 3 --text 'de'", 2);
    EXPECT_EQ(told(name), before);
    EXPECT_EQ(done("get " + one + " g.d").out, "1\n");
    EXPECT_EQ(done("ls " + one).out, "g\n");

    const std::string empty = newStore();
    refused("import --strict " + document("<root name='r'><group name='g'/><nonsense/></root>") + " " + empty, 1);
    EXPECT_EQ(told(nameOfLast()), R"("extent":0,"version":0,"epoch":0)");
}

// The first part of the document is more than the pipe and the reader keep back, so some of it is in the store when the
// second one comes.
TEST_F(DatabaseVerbs, NobodySeesAHalf) {
    const std::string name = nameOfLast();
    std::string items;
    for (int i = 0; i < 20'000; ++i) items += "<int32 name='v" + std::to_string(i) + "'>1 2 3</int32>\n";
    std::ofstream(path("first")) << "<root name='r'><group name='g'>" << items;
    std::ofstream(path("rest")) << "</group></root>";
    std::ofstream(path("script")) << "cat first; $TOOL ls " << one << " 2>ls; $TOOL mk \""
                                  << one.substr(1, one.size() - 2) << "&deadline=300\" other group 2>mk; cat rest";
    const std::string folder = path("");
    const tRun import =
        runProgram("cd " + folder + " && export TOOL=" LVP_TOOL " && sh script | $TOOL", "import - " + one);
    EXPECT_EQ(import.status, 0) << import.err;
    EXPECT_THAT(bytesOf(path("ls")), HasSubstr("is empty"));
    EXPECT_THAT(bytesOf(path("mk")), HasSubstr("somebody else may have its guard"));
    EXPECT_EQ(epoch(name), "1");
    EXPECT_EQ(done("ls " + one).out, "g\n");
}

// The store is open when a part of the document is taken that is more than the pipe holds.
TEST_F(DatabaseVerbs, WhatIsReadIsOneState) {
    done("import " + document("<root name='r'><group name='g'><double name='d'>1</double></group></root>") + " " + one);
    std::ofstream(path("first")) << "<root name='r'><group name='g'><!--" << std::string(300'000, '.') << "-->";
    std::ofstream(path("rest")) << "<double name='d'>1</double></group></root>";
    std::ofstream(path("script")) << "cat first; $TOOL set " << one << " g.d 7 2>set; cat rest";
    const tRun compared =
        runProgram("cd " + path("") + " && export TOOL=" LVP_TOOL " && sh script | $TOOL", "diff " + one + " -");
    EXPECT_EQ(compared.status, 0) << compared.out << compared.err;
    EXPECT_EQ(bytesOf(path("set")), "") << "who reads stops nobody";
    EXPECT_EQ(done("get " + one + " g.d").out, "7\n");
}

TEST_F(DatabaseVerbs, ItemsGoBetweenFilesAndDatabases) {
    const std::string file = imported("<root name='r'><group name='f'><double name='x'>5</double></group></root>");
    fill(one);
    done("cp " + file + " f g.f --to " + one);
    EXPECT_EQ(done("get " + one + " g.f.x").out, "5\n");
    done("mv " + one + " g.s f.s --to " + file);
    EXPECT_EQ(done("get " + file + " f.s").out, "a\n");
    refused("get " + one + " g.s", 3);
    const std::string two = newStore();
    done("mk " + two + " t group");
    done("cp " + one + " g t.g --to " + two);
    EXPECT_EQ(done("get " + two + " t.g.f.x").out, "5\n");
    // The same store by another location, which would wait for itself.
    done("mv " + two + " t.g t.h --to '" + two.substr(1, two.size() - 2) + "&deadline=1000'");
    EXPECT_EQ(done("ls " + two + " t").out, "h\n");
}

TEST_F(DatabaseVerbs, WholeStoresGoThereAndBackAsTheyAre) {
    const std::string file = path("m.lvp");
    done("import " + materials + " " + file + " --schemas " + schemas);
    done("rm -r " + file + " Carbon.Graphite");  // which leaves offsets without records
    done("cp " + file + " --to " + one);
    done("diff " + file + " " + one + " --hidden --order");
    done("cp " + one + " --to " + path("back.lvp"));
    done("diff " + file + " " + path("back.lvp") + " --hidden --order");
    EXPECT_THAT(refused("cp " + file + " --to " + one, 3).err, HasSubstr("is not empty"));
    const std::string two = newStore();
    done("cp " + one + " --to " + two);
    done("diff " + one + " " + two);
}

TEST_F(DatabaseVerbs, DocumentsGoInAndOut) {
    const std::string file = path("m.lvp");
    done("import " + materials + " " + file + " --schemas " + schemas);
    done("import " + materials + " " + one + " --schemas " + schemas);
    done("diff " + file + " " + one);
    done("diff " + one + " " + file + " --hidden --order");
    done("export " + one + " -o " + path("a.xml"));
    done("export " + file + " -o " + path("b.xml"));
    EXPECT_EQ(bytesOf(path("a.xml")), bytesOf(path("b.xml")));
    EXPECT_EQ(done("tree " + one).out, done("tree " + file).out);
    EXPECT_THAT(refused("import " + materials + " " + one, 3).err, HasSubstr("give a new store to import into"));

    done("set " + one + " Carbon.Graphite.Density 7");
    const tRun differing = refused("diff --json " + file + " " + one, 1);
    EXPECT_THAT(differing.out, HasSubstr("Carbon.Graphite.Density"));
    EXPECT_THAT(differing.out, HasSubstr(nameOfLast()));
}

TEST_F(DatabaseVerbs, SchemasComeFromDatabases) {
    done("import " + schemas + " " + one);
    done("schema Thermal --schemas " + one);
    const std::string two = newStore();
    done("import " + materials + " " + two + " --schemas " + one);
    EXPECT_EQ(done("validate " + two + " Carbon.Graphite Thermal --schemas " + one).out,
              "Carbon.Graphite conforms to Thermal\n");
}

TEST_F(DatabaseVerbs, AStoreIsLookedAtWithoutAFile) {
    fill(one);
    const tRun stat = done("stat " + one);
    EXPECT_THAT(stat.out, StartsWith("database: version 0 of the data\nrecords: "));
    EXPECT_THAT(done("stat --json " + one).out, Not(HasSubstr("\"file\"")));
    EXPECT_THAT(done("check --whole " + one).out, EndsWith("usable; nothing lost\n"));
    EXPECT_THAT(done("check --json " + one).out, Not(HasSubstr("\"file\"")));
    EXPECT_THAT(done("dump " + one + " 0").out, StartsWith("offset 0, root"));
    done("view " + one + " -o " + path("page.html"));
    const std::string page = bytesOf(path("page.html"));
    EXPECT_THAT(page, HasSubstr(nameOfLast()));
    EXPECT_THAT(page, Not(HasSubstr("secret")));
}

TEST_F(DatabaseVerbs, ARepairKeepsTheOldBytesInTheCurrentFolder) {
    const std::string name = nameOfLast();
    done("import " + materials + " " + one + " --schemas " + schemas);  // which leaves records that nothing reaches
    const tRun repaired = runProgram("cd " + path("") + " && " LVP_TOOL, "check --repair --reclaim " + one);
    EXPECT_EQ(repaired.status, 0) << repaired.err;
    EXPECT_THAT(repaired.out, HasSubstr("whose old bytes are in " + name + ".before-repair;"));
    EXPECT_THAT(bytesOf(path(name + ".before-repair")), StartsWith("lvp-data before-repair 1\nerase "));
    EXPECT_EQ(epoch(name), "2");
    EXPECT_THAT(done("check --whole " + one).out, EndsWith("usable; nothing lost\n"));
}

}  // namespace
