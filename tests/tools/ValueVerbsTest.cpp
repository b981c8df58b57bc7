// ls, get, set, mk, rm and unit, as a user runs them.
#include <gmock/gmock.h>

#include <string>

#include "tests/end_to_end/ToolFixture.h"

namespace {

using namespace lumivard::platform::test_support;
using testing::HasSubstr;

constexpr const char* kDocument =
    "<root name='r'><group name='a'><node name='n'><int8 name='x'>5</int8></node>"
    "<table name='t'><double name='length' units='Meter'>2.5 4</double><string name='s'><val>one</val><val>two</val>"
    "</string></table><binary name='far' uri='http://far'/></group></root>";

class ValueVerbs : public Tool {
protected:
    void SetUp() override { store = imported(kDocument); }

    void expectRefusal(const std::string& command, int status, const std::string& words) const {
        const std::string before = run("tree " + store).out;
        const tRun refused = run(command);
        EXPECT_EQ(refused.status, status) << command;
        EXPECT_EQ(refused.err, "lvp-data: " + words + "\n");
        EXPECT_EQ(refused.out, "");
        const tRun after = run("tree " + store);
        EXPECT_EQ(after.out, before) << command << ": " << after.status << " " << after.err;
    }
    std::string get(const std::string& path) const { return run("get " + store + " " + path).out; }
    void expectDone(const std::string& command) const {
        const tRun done = run(command);
        EXPECT_EQ(done.status, 0) << command << ": " << done.err;
        EXPECT_EQ(done.out + done.err, "") << "what is done is not talked of";
    }

    std::string store;
};

// --- ls

TEST_F(ValueVerbs, ListNames) {
    EXPECT_EQ(run("ls " + store).out, "a\n");
    EXPECT_EQ(run("ls " + store + " a").out, "n\nt\nfar\n");
    EXPECT_EQ(run("ls " + store + " a.t.length").out, "length\n");
}

TEST_F(ValueVerbs, ListKindsAndValues) {
    EXPECT_EQ(run("ls -l " + store + " a").out, "node    n\ntable   t\nbinary  far = at http://far\n");
    EXPECT_EQ(run("ls --long " + store + " a.t").out, "double  length = 2.5 4 Meter\nstring  s = one | two\n");
}

TEST_F(ValueVerbs, ListWhatIsHiddenWhenTheyAreAsked) {
    run("mk " + store + " a.h node --class Thermal --schemas " + schemas);
    EXPECT_EQ(run("ls " + store + " a.h").out, "");
    EXPECT_THAT(run("ls --hidden " + store + " a.h").out, HasSubstr("ThermalConductivity\n"));
}

TEST_F(ValueVerbs, ListAsJson) {
    EXPECT_EQ(run("ls --json " + store + " a.t").out,
              "{\"store\":\"" + store +
                  "\",\"path\":\"a.t\",\"items\":[{\"name\":\"t\",\"kind\":\"table\",\"items\":[{\"name\":\"length\","
                  "\"kind\":\"double\",\"unit\":\"Meter\",\"values\":[2.5,4]},{\"name\":\"s\",\"kind\":\"string\","
                  "\"values\":[\"one\",\"two\"]}]}]}\n");
    EXPECT_THAT(run("ls --json " + store + " a").out, HasSubstr("{\"name\":\"t\",\"kind\":\"table\"}"));
    EXPECT_THAT(run("ls --json " + store).out, HasSubstr("\"items\":[{\"name\":\"a\",\"kind\":\"group\"}]"));
}

TEST_F(ValueVerbs, TreeAsJsonShowsAllThatThereIs) {
    run("set " + store + " a.t --text de-de=Tafel --text en-us=Board");
    const std::string tree = run("tree --json " + store + " a").out;
    EXPECT_THAT(tree,
                HasSubstr("{\"name\":\"t\",\"kind\":\"table\",\"texts\":[{\"locale\":\"de-de\",\"text\":\"Tafel\"},"
                          "{\"locale\":\"en-us\",\"text\":\"Board\"}],\"items\":["));
    EXPECT_THAT(tree, HasSubstr("{\"name\":\"far\",\"kind\":\"binary\",\"uri\":\"http://far\"}"));
}

// --- get

TEST_F(ValueVerbs, GetAValueWithItsUnit) {
    EXPECT_EQ(get("a.t.length"), "2.5 4 Meter\n");
    EXPECT_EQ(get("a.n.x"), "5\n");
    EXPECT_EQ(get("a.t.s"), "one\ntwo\n");
    EXPECT_EQ(get("a.far"), "http://far\n");
    EXPECT_EQ(run("get --json " + store + " a.n.x").out, "{\"name\":\"x\",\"kind\":\"int8\",\"values\":[5]}\n");
}

TEST_F(ValueVerbs, TellWhereAPathEndsAndWhatIsNear) {
    const std::string nothing = "the store " + store + " holds nothing at the path ";
    expectRefusal("get " + store + " a.t.lenght", 3, nothing + "a.t.lenght; near to it in a.t: length");
    expectRefusal("get " + store + " a.q.r", 3, nothing + "a.q.r: in a there is no q");
    expectRefusal("get " + store + " A", 3, nothing + "A; near to it at its top: a");
    expectRefusal("get " + store + " a.n.x.y", 3, nothing + "a.n.x.y: a.n.x is a value, which holds no items");
    expectRefusal("ls " + store + " b", 3, nothing + "b: at its top there is no b");
}

TEST_F(ValueVerbs, GetNoSets) {
    expectRefusal("get " + store + " a.t", 2,
                  "a.t in the store " + store + " is no value: lvp-data ls lists what it holds, tree shows all of it");
}

// --- set

TEST_F(ValueVerbs, SetAValue) {
    expectDone("set " + store + " a.n.x 7");
    EXPECT_EQ(get("a.n.x"), "7\n");
    expectDone("set " + store + " a.n.x -- -7");
    EXPECT_EQ(get("a.n.x"), "-7\n");
    expectDone("set " + store + " a.t.length 1");
    EXPECT_EQ(get("a.t.length"), "1 Meter\n") << "nothing is left of a longer value";
    expectDone("set " + store + " a.t.s three 'and four' ''");
    EXPECT_EQ(get("a.t.s"), "three\nand four\n\n");
}

TEST_F(ValueVerbs, SetANegativeNumberAsItIsTyped) {
    expectDone("set " + store + " a.n.x -7");
    EXPECT_EQ(get("a.n.x"), "-7\n");
    expectDone("set " + store + " a.t.length -0.5 -2 Meter");
    EXPECT_EQ(get("a.t.length"), "-0.5 -2 Meter\n");
    expectDone("set " + store + " a.t.length -.5 -inf -nan");
    EXPECT_EQ(get("a.t.length"), "-0.5 -inf -nan Meter\n");
}

TEST_F(ValueVerbs, SetTextsAsTheyAreTyped) {
    expectDone("set " + store + " a.t.s '[x,y]' '[]' '{}' '\x01'");
    EXPECT_EQ(get("a.t.s"), "[x,y]\n[]\n{}\n\x01\n");
    expectDone("set " + store + " a.t.s -- -x --json");
    EXPECT_EQ(get("a.t.s"), "-x\n--json\n");
    EXPECT_EQ(run("rm " + store + " '[a.n.x,a.t.s]'").status, 3) << "which is one name";
    EXPECT_EQ(get("a.n.x"), "5\n");
}

TEST_F(ValueVerbs, SetNoUnitWithoutAValue) {
    expectRefusal("set " + store + " a.t.length --unit Meter", 2, "give the value before its unit");
    expectRefusal("set " + store + " a.t.length Meter", 2, "give the value before its unit");
    expectRefusal("set " + store + " a.t.length 5 Meter --unit Inch", 2, "two units are given: Meter and Inch");
    expectRefusal("mk " + store + " a.b bool TRUE", 2, "\"TRUE\" is neither true nor false");
}

TEST_F(ValueVerbs, TakeNoEmptyNames) {
    for (const std::string& command : {"mk " + store + " '' group", "get " + store + " ''", "rm " + store + " ''"}) {
        EXPECT_EQ(run(command).status, 2) << command;
    }
    EXPECT_EQ(run("ls " + store).out, "a\n");
}

TEST_F(ValueVerbs, ShowAsJsonWhatIsHiddenWhenItIsNamed) {
    run("mk " + store + " a.h node --class Thermal --schemas " + schemas);
    EXPECT_THAT(run("tree --json " + store + " a.h.ThermalConductivity").out,
                HasSubstr("\"flags\":[\"inherited\",\"hidden\"]"));
    EXPECT_EQ(run("tree --json " + store + " a.h").out.find("hidden"), std::string::npos);
    EXPECT_THAT(run("tree " + store + " a.h.ThermalConductivity").out, testing::StartsWith("ThermalConductivity"));
}

TEST_F(ValueVerbs, RemoveNothingFromATableAtTheTop) {
    const std::string other =
        imported("<root name='r'><table name='t'><int8 name='x'>1</int8></table></root>", "o.lvp");
    const tRun refused = run("rm " + other + " t.x");
    EXPECT_EQ(refused.status, 3);
    EXPECT_THAT(refused.err, HasSubstr("stands in a table at the top, which nothing can leave"));
}

TEST_F(ValueVerbs, SetWhatGetHasPrinted) {
    expectDone("set " + store + " a.t.length 3 Meter");
    expectDone("set " + store + " a.t.length 4 --unit meter");
    EXPECT_EQ(get("a.t.length"), "4 Meter\n");
}

TEST_F(ValueVerbs, SetNoOtherUnit) {
    expectRefusal("set " + store + " a.t.length 3 Inch", 2,
                  "a.t.length in the store " + store +
                      " is in Meter, and a value keeps the unit that it was made with: rm and mk make it anew");
    expectRefusal("set " + store + " a.n.x 3 Meter", 2,
                  "a.n.x in the store " + store +
                      " has no unit, and a value keeps the unit that it was made with: rm and mk make it anew");
    EXPECT_THAT(run("set " + store + " a.t.length 3 Metre").err, HasSubstr("near to it: Meter"));
}

TEST_F(ValueVerbs, SetAUriInTheValuesPlaceAndAValueInTheUris) {
    expectDone("set " + store + " a.far AAA=");
    EXPECT_EQ(get("a.far"), "AAA=\n");
    expectDone("set " + store + " a.far --uri http://near");
    EXPECT_EQ(get("a.far"), "http://near\n");
}

TEST_F(ValueVerbs, SetWhatAnItemIsCalled) {
    expectDone("set " + store + " a --text de-de=Oben --text fr-fr=Haut");
    expectDone("set " + store + " a.t.s --text de-de=Satz");
    EXPECT_EQ(run("tree " + store + " a.t.s").out, "s = one | two  [string]  de-de \"Satz\"\n");
    EXPECT_THAT(run("tree " + store + " a").out, HasSubstr("a  [group]  de-de \"Oben\"  fr-fr \"Haut\"\n"));
    expectRefusal("set " + store + " a --text nothing", 2,
                  "\"nothing\" is no text: give LOCALE=TEXT, such as de-de=Stahl");
}

TEST_F(ValueVerbs, SetNothingThatIsNotGiven) {
    expectRefusal("set " + store + " a.n.x", 2, "nothing to set: give values, --uri or --text");
    expectRefusal("set " + store + " a.t 5", 2,
                  "a.t in the store " + store + " is no value: only its texts can be set");
    EXPECT_EQ(run("set " + store + " a.q 5").status, 3);
    EXPECT_EQ(run("set " + path("none.lvp") + " a 5").status, 3);
    EXPECT_FALSE(std::filesystem::exists(path("none.lvp")));
}

// --- mk

TEST_F(ValueVerbs, MakeEachKindOfItem) {
    expectDone("mk " + store + " a.g group --text en-us=Group");
    expectDone("mk " + store + " a.g.l link --to a.n");
    expectDone("mk " + store + " a.g.t table");
    expectDone("mk " + store + " a.g.t.inner table");
    expectDone("mk " + store + " a.g.t.v vector3 1 2 3 Meter");
    expectDone("mk " + store + " a.g.d double 2.5 --unit Inch");
    expectDone("mk " + store + " a.g.b bool true");
    expectDone("mk " + store + " a.g.e string");
    EXPECT_EQ(run("tree " + store + " a.g").out,
              "g  [group]  en-us \"Group\"\n├─ l  [link]  to a.n\n├─ t  [table]\n│  ├─ inner  [table]\n│  └─ v = 1 2 3 "
              "Meter  [vector3]\n├─ d = 2.5 Inch  [double]\n├─ b = true  [bool]\n└─ e  [string]\n");
}

TEST_F(ValueVerbs, MakeAStoreWithItsFirstGroup) {
    const std::string fresh = path("fresh.lvp");
    expectDone("mk " + fresh + " model group");
    expectDone("mk " + fresh + " model.part.size double 1 Meter -p");
    EXPECT_EQ(run("tree " + fresh + " model").out,
              "model  [group]\n└─ part  [group]\n   └─ size = 1 Meter  [double]\n");
    EXPECT_EQ(run("mk " + path("other.lvp") + " a.b group").status, 3) << "without -p nothing is made on the way";
    EXPECT_FALSE(std::filesystem::exists(path("other.lvp")));
}

TEST_F(ValueVerbs, MakeWhatASchemaAsksFor) {
    expectDone("mk " + store + " a.m node --class 'Mechanical;Thermal' --schemas " + schemas);
    EXPECT_EQ(run("validate " + store + " a.m Thermal --schemas " + schemas).status, 0);
    EXPECT_EQ(run("mk " + store + " a.o node --class Nonsense --schemas " + schemas).status, 3);
    expectRefusal("mk " + store + " a.o node --class Thermal", 2, "give the --schemas in which Thermal is found");
}

TEST_F(ValueVerbs, MakeNothingThatCannotBe) {
    const std::string there = "in the store " + store + ", a.n is there already";
    expectRefusal("mk " + store + " a.n node", 3, there);
    expectRefusal("mk " + store + " a group", 3, "in the store " + store + ", a is there already");
    expectRefusal("mk " + store + " a.t.g group", 2, "a table holds no group");
    expectRefusal("mk " + store + " a.g group 5", 2, "a group has no value");
    expectRefusal("mk " + store + " a.g int8 300", 2, "\"300\" is out of the range of the kind int8");
    expectRefusal("mk " + store + " a.g int8 --to a", 2, "only a link has --to");
    expectRefusal("mk " + store + " top node", 2,
                  "at the top of a store only a group without schemas can be made: top names no container to stand in");
    expectRefusal("mk " + store + " a.n.x.y int8", 2, "a.n.x in the store " + store + " cannot hold items");
    expectRefusal("mk " + store + " a. int8", 2, "the path a. ends without a name");
    EXPECT_THAT(run("mk " + store + " a.g real 5").err,
                HasSubstr("there is no kind \"real\": it is one of node, group"));
}

// --- rm

TEST_F(ValueVerbs, RemoveItems) {
    expectDone("rm " + store + " a.n.x a.t.s");
    EXPECT_EQ(run("ls " + store + " a.n").out, "");
    expectDone("rm -r " + store + " a.t");
    EXPECT_EQ(run("ls " + store + " a").out, "n\nfar\n");
    expectDone("rm " + store + " a.n");
}

TEST_F(ValueVerbs, RemoveAllItemsOrNone) {
    expectRefusal("rm " + store + " a.n.x a.t", 2,
                  "a.t in the store " + store + " holds other items: -r removes it with all of them");
    EXPECT_EQ(run("rm " + store + " a.n.x a.q").status, 3);
    EXPECT_EQ(get("a.n.x"), "5\n");
    expectRefusal("rm -r " + store + " a", 3,
                  "a in the store " + store + " stands at the top, which nothing can leave");
}

TEST_F(ValueVerbs, RemoveNothingThatCameFromASchema) {
    run("mk " + store + " a.m node --class Thermal --schemas " + schemas);
    expectRefusal("rm " + store + " a.m.ThermalConductivity", 3,
                  "a.m.ThermalConductivity in the store " + store +
                      " came from a schema and stays: only the item that has the schema can go");
}

// --- unit

TEST_F(ValueVerbs, FindUnitsByPartsOfNames) {
    EXPECT_THAT(run("unit kilogrampercubic").out, HasSubstr("KilogramPerCubicMeter"));
    EXPECT_EQ(run("unit").out.empty(), false);
    const std::string lengths = run("unit --group Meter").out;
    EXPECT_THAT(lengths, HasSubstr("MilliMeter"));
    EXPECT_EQ(lengths.find("Newton"), std::string::npos);
    EXPECT_THAT(run("unit --json --group Meter kilometer").out,
                HasSubstr("{\"name\":\"KiloMeter\",\"number\":8201,\"group\":\"Meter\",\"written\":\"KiloMeter\"}"));
    const tRun none = run("unit milimeter");
    EXPECT_EQ(none.status, 1);
    EXPECT_THAT(none.err, HasSubstr("near to it: MilliMeter"));
    EXPECT_EQ(run("unit --group Metre").status, 2);
}

}  // namespace
