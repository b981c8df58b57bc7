// diff, as a user runs it.
#include <gmock/gmock.h>

#include <fstream>
#include <string>

#include "lumivard/platform/data.h"
#include "lumivard/platform/stores.h"
#include "tests/end_to_end/ToolFixture.h"

namespace {

using namespace lumivard::platform::test_support;
namespace data = lumivard::platform::data;
namespace stores = lumivard::platform::stores;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class DiffVerb : public Tool {
protected:
    /// A document that holds these items in a root "r".
    std::string file(const std::string& name, const std::string& items) const {
        std::ofstream(path(name), std::ios::binary) << "<root name='r'>" << items << "</root>";
        return path(name);
    }

    /// What is told of two documents with these items.
    tRun diff(const std::string& a, const std::string& b, const std::string& options = "") const {
        return run("diff " + file("a.xml", a) + " " + file("b.xml", b) + " " + options);
    }
    void expectDiff(const std::string& a, const std::string& b, const std::string& lines,
                    const std::string& options = "") const {
        const tRun done = diff(a, b, options);
        EXPECT_EQ(done.out, lines);
        EXPECT_EQ(done.err, "");
        EXPECT_EQ(done.status, lines.empty() ? 0 : 1) << done.err;
    }
    static std::string group(const std::string& items, const std::string& attributes = "") {
        return "<group name='g'" + attributes + ">" + items + "</group>";
    }
    static std::string numbers(const std::string& values, const std::string& more = "") {
        return group("<double name='x'" + more + ">" + values + "</double>");
    }
    /// Stores "a.lvp" and "b.lvp" with a primitive g.x, which was set with the tool.
    void setBoth(const std::string& kind, const std::string& a, const std::string& b) const {
        for (const std::string name : {"a", "b"}) {
            std::filesystem::remove(path(name + ".lvp"));
            imported("<root name='r'><group name='g'/></root>", name + ".lvp");
            const tRun made = run("mk " + path(name + ".lvp") + " g.x " + kind + " -- " + (name == "a" ? a : b));
            ASSERT_EQ(made.status, 0) << made.err;
        }
    }
    tRun diffStores(const std::string& options = "") const {
        return run("diff " + path("a.lvp") + " " + path("b.lvp") + " " + options);
    }
};

// --- Each kind of difference

TEST_F(DiffVerb, TellsNothingWhereAllIsEqual) {
    const std::string items =
        "<name locale='de-de'>R</name>" +
        group("<string name='s'>a</string><table name='t'><default unit='Meter' type='double'/></table>");
    expectDiff(items, items, "");
    EXPECT_EQ(diff(items, items, "--order --hidden").out, "");
}

TEST_F(DiffVerb, TellsWhatWasAdded) {
    expectDiff(group(""), group("<double name='Density' units='KilogramPerCubicMeter'>7850</double>"),
               "+ g.Density = 7850 KilogramPerCubicMeter [double]\n");
    expectDiff("", group("<string name='s'>two words</string>"), "+ g [group, 1 item]\n");
    expectDiff(group(""), group("<string name='s'>two words</string>"), "+ g.s = \"two words\" [string]\n");
    expectDiff(group(""), group("<binary name='b' uri='http://far'/>"), "+ g.b = at http://far [binary]\n");
    expectDiff(group(""), group("<node name='n'><node name='m'/><node name='o'/></node>"), "+ g.n [node, 2 items]\n");
    expectDiff(group(""), group("<table name='t'/>"), "+ g.t [table]\n");
    expectDiff(group(""), group("<int8 name='i'/>"), "+ g.i = (none) [int8]\n");
}

TEST_F(DiffVerb, TellsWhatWasRemoved) {
    expectDiff(group("<int8 name='i'>5</int8><node name='n'/>"), group("<node name='n'/>"), "- g.i = 5 [int8]\n");
    expectDiff(group(""), "", "- g [group]\n");
}

TEST_F(DiffVerb, TellsChangedValues) {
    expectDiff(numbers("7850", " units='KilogramPerCubicMeter'"), numbers("7800", " units='KilogramPerCubicMeter'"),
               "~ g.x: 7850 -> 7800 KilogramPerCubicMeter\n");
    expectDiff(numbers("1 2"), numbers("1 2 3"), "~ g.x: 1 2 -> 1 2 3\n");
    expectDiff(numbers("1"), numbers(""), "~ g.x: 1 -> (none)\n");
    expectDiff(group("<string name='s'>a</string>"), group("<string name='s'>b</string>"), "~ g.s: \"a\" -> \"b\"\n");
    expectDiff(group("<bool name='t'>1</bool>"), group("<bool name='t'>0</bool>"), "~ g.t: true -> false\n");
    expectDiff(group("<binary name='b'>AAAA</binary>"), group("<binary name='b'>AAAB</binary>"),
               "~ g.b: AAAA -> AAAB\n");
    expectDiff(group("<int64 name='i'>9007199254740993</int64>"), group("<int64 name='i'>9007199254740992</int64>"),
               "~ g.i: 9007199254740993 -> 9007199254740992\n");
}

TEST_F(DiffVerb, TellsChangedUnitsAndKinds) {
    expectDiff(numbers("1", " units='Meter'"), numbers("1", " units='MilliMeter'"),
               "~ g.x: unit Meter -> MilliMeter\n");
    expectDiff(numbers("1"), numbers("1", " units='Meter'"), "~ g.x: unit (none) -> Meter\n");
    expectDiff(numbers("5"), group("<int32 name='x'>5</int32>"), "~ g.x: kind double -> int32\n");
    expectDiff(numbers("5"), group("<string name='x'>6</string>"), "~ g.x: kind double -> string\n~ g.x: 5 -> \"6\"\n");
    expectDiff("<node name='n'/>", "<group name='n'/>", "~ n: kind node -> group\n");
}

TEST_F(DiffVerb, ComparesNumbersOfDifferentKindsAsNumbers) {
    const auto expect = [&](const std::string& real, const std::string& kind, const std::string& other,
                            const std::string& lines, const std::string& options = "") {
        const std::string item = "<" + kind + " name='x'>" + other + "</" + kind + ">";
        expectDiff(numbers(real), group(item), "~ g.x: kind double -> " + kind + "\n" + lines, options);
    };
    expect("-0", "int32", "0", "");
    expect("100000", "int32", "100000", "");  // as a real number it is written 1e+05
    expect("0.1", "scalar", "0.1", "");
    expect("0.5", "scalar", "0.5000001", "", "--tolerance 1e-6");
    expect("0.5", "scalar", "0.6", "~ g.x: 0.5 -> 0.6\n");
    // The neighbour of a number that is too large for a double is not that number.
    expect("9007199254740992", "int64", "9007199254740993", "~ g.x: 9007199254740992 -> 9007199254740993\n");
}

TEST_F(DiffVerb, TellsAnItemOfAnotherSortAsRemovedAndAdded) {
    expectDiff(group("<int8 name='i'>5</int8>"), group("<table name='i'/>"), "- g.i = 5 [int8]\n+ g.i [table]\n");
}

TEST_F(DiffVerb, TellsChangedTargetsSchemasTypesAndLocales) {
    expectDiff("<link name='l' to='a'/>", "<link name='l' to='b'/>", "~ l: target a -> b\n");
    expectDiff(group("", " class='Thermal'"), group("", " class='Thermal;Mechanical'"),
               "~ g: schemas Thermal -> Thermal;Mechanical\n", "--schemas " + schemas);
    expectDiff(group("<string name='s' locale='de-de'>a</string>"), group("<string name='s' locale='fr-fr'>a</string>"),
               "~ g.s: locale de-de -> fr-fr\n");
    const std::string changed = path("motion.xml");
    std::string text = bytesOf(motion);
    text.replace(text.find("type=\"Gripper\""), 14, "type=\"Pose\"");
    std::ofstream(changed) << text;
    const tRun types = run("diff " + motion + " " + changed + " --path arm.hand --schemas " + motionSchemas);
    EXPECT_THAT(types.out, HasSubstr("~ arm.hand: type Gripper -> Pose\n")) << types.err;
}

TEST_F(DiffVerb, TellsAUriInPlaceOfAValue) {
    expectDiff(numbers("1"), numbers("", " uri='http://far'"), "~ g.x: 1 -> at http://far\n");
    expectDiff(numbers("", " uri='http://far'"), numbers("", " uri='http://near'"),
               "~ g.x: at http://far -> at http://near\n");
}

TEST_F(DiffVerb, TellsTextsByLanguage) {
    const auto named = [](const std::string& names) { return group(names); };
    expectDiff(named("<name locale='de-de'>Stahl</name><name locale='en-us'>Steel</name>"),
               named("<name locale='en-us'>Steel</name><name locale='de-de'>Eisen</name>"),
               "~ g: text de-de \"Stahl\" -> \"Eisen\"\n");
    expectDiff(named("<name locale='a'>x</name><name locale='b'>y</name>"),
               named("<name locale='b'>y</name><name locale='a'>x</name>"), "");
    expectDiff(named(""), named("<name locale='de-de'>Stahl</name>"), "~ g: text de-de (none) -> \"Stahl\"\n");
    expectDiff(named("<name locale='de-de'>Stahl</name>"), named(""), "~ g: text de-de \"Stahl\" -> (none)\n");
    expectDiff(group("<int8 name='i'><name locale='a'>x</name><val>1</val></int8>"),
               group("<int8 name='i'><name locale='a'>y</name><val>1</val></int8>"), "~ g.i: text a \"x\" -> \"y\"\n");
}

TEST_F(DiffVerb, TellsDefaultsOfTablesByGroup) {
    const auto table = [](const std::string& defaults) { return "<table name='t'>" + defaults + "</table>"; };
    const std::string mass = "<default unit='Kilogram' type='double'/>";
    expectDiff(table("<default unit='Meter' type='double'/>" + mass),
               table(mass + "<default unit='MilliMeter' type='scalar'/>"),
               "~ t: default Meter double -> MilliMeter scalar\n");
    expectDiff(table(""), table(mass), "~ t: default (none) -> Kilogram double\n");
}

TEST_F(DiffVerb, TellsTheRoot) {
    std::ofstream(path("a.xml")) << "<root name='r'><name locale='a'>x</name></root>";
    std::ofstream(path("b.xml")) << "<root name='s'><name locale='a'>y</name></root>";
    EXPECT_EQ(run("diff " + path("a.xml") + " " + path("b.xml")).out,
              "~ (root): name \"r\" -> \"s\"\n~ (root): text a \"x\" -> \"y\"\n");
}

TEST_F(DiffVerb, TellsFlagsThatClientsSet) {
    setBoth("int8", "1", "1");
    {
        const auto store = stores::file(path("b.lvp"), stores::tMode::kWrite);
        const auto x = data::structure::IContainerFrontEnd::find(store.get(), L"g")->property(L"x");
        x->on(0x01 | 0x02 | 0x40);  // what came from a schema is no matter of content
    }
    EXPECT_EQ(diffStores().out, "~ g.x: flags (none) -> optional 0x40\n");
}

TEST_F(DiffVerb, TellsWhatHasMoved) {
    const std::string node = "<node name='n'><int8 name='x'>5</int8><int8 name='y'>6</int8></node>";
    const std::string turned = "<node name='n'><int8 name='y'>6</int8><int8 name='x'>5</int8></node>";
    const auto both = [](const std::string& a, const std::string& b) {
        return "<group name='a'>" + a + "</group><group name='b'>" + b + "</group>";
    };
    expectDiff(both(node, ""), both("", node), "> a.n -> b.n [node, 2 items]\n");
    expectDiff(both(node, ""), both("", turned), "> a.n -> b.n [node, 2 items]\n");
    expectDiff(both(node, ""), both("", turned), "- a.n [node, 2 items]\n+ b.n [node, 2 items]\n", "--order");
    expectDiff(both("<int8 name='x'>5</int8>", ""), both("", "<int8 name='x'>5</int8>"), "> a.x -> b.x [int8]\n");
    expectDiff(both("<double name='x'>0 1</double>", ""), both("", "<double name='x'>-0 1</double>"),
               "> a.x -> b.x [double]\n");
    for (const std::string other : {"<int8 name='x'>6</int8>", "<int16 name='x'>5</int16>", "<int8 name='y'>5</int8>",
                                    "<int8 name='x' units='Meter'>5</int8>", "<int8 name='x' uri='5'/>",
                                    "<int8 name='x'><name locale='a'>b</name><val>5</val></int8>"}) {
        const tRun told = diff(both("<int8 name='x'>5</int8>", ""), both("", other));
        EXPECT_THAT(told.out, StartsWith("- a.x = 5 [int8]\n+ b.")) << other;
    }
}

TEST_F(DiffVerb, TellsEachOfManyThatMovedOnce) {
    const std::string same = "<int8 name='x'>5</int8>";
    const auto groups = [](const std::string& a, const std::string& b, const std::string& c, const std::string& d) {
        return "<group name='a'>" + a + "</group><group name='b'>" + b + "</group><group name='c'>" + c +
               "</group><group name='d'>" + d + "</group>";
    };
    expectDiff(groups(same, same, "", ""), groups("", "", same, same), "> a.x -> c.x [int8]\n> b.x -> d.x [int8]\n");
    expectDiff(groups(same, same, "", ""), groups("", "", "", same), "> a.x -> d.x [int8]\n- b.x = 5 [int8]\n");
}

TEST_F(DiffVerb, PairsItemsOfOneNameInTheirOrder) {
    // Such a store comes from damage or a foreign hand: a name is overwritten in its record.
    const auto twice = [&](const std::string& name, const std::string& items) {
        const std::string file = imported("<root name='r'>" + group(items) + "</root>", name);
        const auto store = stores::file(file, stores::tMode::kWrite);
        const std::string y("y\0\0\0\0\0\0\0", 8);
        for (unsigned int offset = 0; offset < store->extent(); ++offset) {
            std::string bytes(store->size(offset), '\0');
            store->read(offset, bytes.data(), 0xFFFFFFFFu);
            const std::size_t at = bytes.find(y);
            if (at == bytes.npos) continue;
            bytes[at] = 'x';
            store->update(offset, bytes.data(), static_cast<unsigned int>(bytes.size()), true);
        }
        store->flush();
    };
    twice("a.lvp", "<int8 name='x'>1</int8><int8 name='y'>2</int8><int8 name='z'>3</int8>");
    twice("b.lvp", "<int8 name='z'>3</int8><int8 name='x'>5</int8><int8 name='y'>2</int8>");
    EXPECT_EQ(diffStores().out, "~ g.x: 1 -> 5\n");
    twice("c.lvp", "<int8 name='z'>3</int8><int8 name='x'>1</int8>");
    EXPECT_EQ(run("diff " + path("a.lvp") + " " + path("c.lvp")).out, "- g.x = 2 [int8]\n");
}

// --- Order

TEST_F(DiffVerb, PassesOverTheOrderUnlessItMatters) {
    const std::string a =
        group("<int8 name='x'>1</int8><int8 name='y'>2</int8><node name='n'/><int8 name='z'>3</int8>");
    const std::string b =
        group("<int8 name='y'>2</int8><int8 name='x'>1</int8><node name='n'/><int8 name='w'>3</int8>");
    expectDiff(a, b, "- g.z = 3 [int8]\n+ g.w = 3 [int8]\n");
    expectDiff(a, b, "~ g: order x, y, n -> y, x, n\n- g.z = 3 [int8]\n+ g.w = 3 [int8]\n", "--order");
}

TEST_F(DiffVerb, TakesNoOrderFromWhatHasMovedAway) {
    const std::string n = "<node name='n'/>";
    const std::string x = "<int8 name='x'>1</int8>";
    const std::string y = "<int8 name='y'>2</int8>";
    expectDiff(group(x + n + y) + "<group name='h'/>", group(x + y) + "<group name='h'>" + n + "</group>",
               "> g.n -> h.n [node]\n", "--order");
}

TEST_F(DiffVerb, TellsByPlacesInAAndThenWhatOnlyBHas) {
    expectDiff("<node name='b'/><node name='a'><int8 name='x'>1</int8><int8 name='y'>1</int8></node>",
               "<node name='z'/><node name='a'><int8 name='w'>2</int8><int8 name='y'>2</int8></node>",
               "- b [node]\n- a.x = 1 [int8]\n~ a.y: 1 -> 2\n+ z [node]\n+ a.w = 2 [int8]\n");
}

// --- Tolerance

TEST_F(DiffVerb, TakesRealsAsEqualThatAreNearInProportion) {
    expectDiff(numbers("1000 -0.001"), numbers("1000.9 -0.0010009"), "", "--tolerance 0.001");
    expectDiff(numbers("1000"), numbers("1002"), "~ g.x: 1000 -> 1002\n", "--tolerance 0.001");
    expectDiff(numbers("0"), numbers("1e-300"), "~ g.x: 0 -> 1e-300\n", "--tolerance 0.5");
    expectDiff(numbers("1"), numbers("-1"), "~ g.x: 1 -> -1\n", "--tolerance 1.9");
    expectDiff(numbers("1"), numbers("-1"), "", "--tolerance 2");
    expectDiff(numbers("1.7e308"), numbers("-1.7e308"), "~ g.x: 1.7e+308 -> -1.7e+308\n", "--tolerance 1.9");
    expectDiff(group("<scalar name='x'>1</scalar>"), group("<scalar name='x'>1.0000001</scalar>"), "",
               "--tolerance 1e-6");
    expectDiff(group("<int32 name='x'>1000000</int32>"), group("<int32 name='x'>1000001</int32>"),
               "~ g.x: 1000000 -> 1000001\n", "--tolerance 0.5");
    EXPECT_EQ(diff("", "", "--tolerance=-1").status, 2);
    EXPECT_EQ(diff("", "", "--tolerance nan").status, 2);
    EXPECT_EQ(diff("", "", "--tolerance x").status, 2);
}

TEST_F(DiffVerb, ComparesRealsAsNumbers) {
    setBoth("double", "0 nan inf", "-0 nan inf");
    EXPECT_EQ(diffStores().out, "");
    setBoth("double", "nan inf inf", "1 -inf 1e308");
    EXPECT_EQ(diffStores("--tolerance 3").out, "~ g.x: nan inf inf -> 1 -inf 1e+308\n");
    EXPECT_THAT(diffStores("--json").out, HasSubstr("\"a\":[\"nan\",\"inf\",\"inf\"],\"b\":[1,\"-inf\",1e+308]"));
}

// --- What is left out

TEST_F(DiffVerb, IgnoresPathsThatMatch) {
    const std::string a = group("<int8 name='x'>1</int8><node name='n'><int8 name='x'>1</int8></node>");
    const std::string b = group("<int8 name='x'>2</int8><node name='n'><int8 name='x'>2</int8></node><int8 name='y'/>");
    expectDiff(a, b, "", "--ignore 'g.?' --ignore 'no such'");
    expectDiff(a, b, "~ g.x: 1 -> 2\n", "--ignore '*.n' --ignore g.y");
    expectDiff(a, b, "+ g.y = (none) [int8]\n", "--ignore '**.x'");
    expectDiff(a, b, "", "--ignore '**'");
    expectDiff(a, b, "~ g.x: 1 -> 2\n~ g.n.x: 1 -> 2\n+ g.y = (none) [int8]\n", "--ignore x --ignore g.n.x.z");
}

TEST_F(DiffVerb, IgnoresTheTextsOfWhatItIgnores) {
    const auto items = [](const std::string& text) {
        return group("<int8 name='x'>1</int8><int8 name='y'><name locale='a'>" + text + "</name></int8>");
    };
    expectDiff(items("one"), items("two"), "", "--ignore g.y");
}

TEST_F(DiffVerb, IgnoresByThePathInAWhateverThatInBIs) {
    const std::string items =
        "<group name='a'><int8 name='x'>1</int8></group><group name='b'><int8 name='x'>2</int8></group>";
    expectDiff(items, items, "~ a.x: 1 -> 2\n", "--path a --to-path b --ignore b.x");
    expectDiff(items, items, "", "--path a --to-path b --ignore a.x");
}

TEST_F(DiffVerb, LeavesHiddenDefaultsOutUnlessTheyAreAskedFor) {
    for (const std::string name : {"a.lvp", "b.lvp"}) {
        imported("<root name='r'><group name='g'/></root>", name);
        ASSERT_EQ(run("mk " + path(name) + " g.h node --class Thermal --schemas " + schemas).status, 0);
    }
    ASSERT_EQ(run("set " + path("b.lvp") + " g.h.ThermalConductivity 5").status, 0);
    EXPECT_EQ(diffStores().out, "+ g.h.ThermalConductivity = 5 [double]\n");
    const std::string hidden = diffStores("--hidden").out;
    EXPECT_THAT(hidden, HasSubstr("~ g.h.ThermalConductivity: flags hidden -> (none)\n"));
    EXPECT_THAT(hidden, HasSubstr("~ g.h.ThermalConductivity: 0 -> 5\n"));
}

// --- What is compared

TEST_F(DiffVerb, ComparesDocumentsAndStores) {
    const std::string store = path("m.lvp");
    const std::string with = " --schemas " + schemas;
    ASSERT_EQ(run("import " + materials + " " + store + with).status, 0);
    const tRun same = run("diff " + store + " " + materials + with);
    EXPECT_EQ(same.out + same.err, "");
    EXPECT_EQ(same.status, 0);
    ASSERT_EQ(run("set " + store + " Carbon.Graphite.Density 7 KilogramPerCubicMeter").status, 0);
    EXPECT_EQ(run("diff " + materials + " " + store + with).out,
              "~ Carbon.Graphite.Density: 1750 -> 7 KilogramPerCubicMeter\n");
}

TEST_F(DiffVerb, ComparesWhatLiesAtAPath) {
    const std::string a =
        "<group name='a'><int8 name='x'>1</int8></group><group name='b'><int8 name='x'>2</int8></group>";
    const std::string b = "<group name='a'><int8 name='x'>3</int8></group><group name='b'/>";
    expectDiff(a, b, "~ a.x: 1 -> 3\n", "--path a");
    expectDiff(a, b, "~ a.x: 1 -> 3\n", "--path a.x");
    expectDiff(a, b, "- a.x = 1 [int8]\n", "--path a --to-path b");
    expectDiff(b, a, "+ b.x = 2 [int8]\n", "--path b");
    expectDiff(a, b, "- a.x = 1 [int8]\n+ b [group]\n", "--path a.x --to-path b");
}

TEST_F(DiffVerb, ComparesTwoItemsOfOneStore) {
    const std::string store = imported(
        "<root name='r'><group name='a'><int8 name='x'>1</int8></group><group name='b'><int8 name='x'>2</int8></group>"
        "</root>");
    EXPECT_EQ(run("diff " + store + " " + store + " --path a --to-path b").out, "~ a.x: 1 -> 2\n");
    EXPECT_EQ(run("diff " + store + " " + store).status, 0);
}

TEST_F(DiffVerb, TakesNoFileAsAStoreThatHoldsNothing) {
    const std::string a = file("a.xml", "<node name='n'/>");
    EXPECT_EQ(run("diff /dev/null " + a).out, "~ (root): name (none) -> \"r\"\n+ n [node]\n");
    EXPECT_EQ(run("diff /dev/null /dev/null").status, 0);
}

// --- Forms

TEST_F(DiffVerb, CutsLongValuesAboutTheFirstDifference) {
    std::string many;
    for (int i = 0; i < 3000; ++i) many += std::to_string(i) + " ";
    const auto replaced = [](std::string text, const std::string& from, const std::string& to) {
        return text.replace(text.find(from), from.size(), to);
    };
    const std::string two = replaced(replaced(many, " 2000 ", " 0 "), " 2500 ", " 0 ");
    expectDiff(numbers(many, " units='Meter'"), numbers(two, " units='Meter'"),
               "~ g.x: … 1998 1999 2000 2001 2002 2003 2004 2005 2006 2007 2008 2009 … -> … 1998 1999 0 2001 2002 2003 "
               "2004 2005 2006 2007 2008 2009 2010 … Meter (first at 2000, 2 of 3000 differ)\n");
    EXPECT_THAT(
        diff(numbers(many), numbers(two), "--json").out,
        HasSubstr("\"first\":2000,\"differing\":2,\"aStart\":1997,\"aCount\":3000,\"a\":[1997,1998,1999,2000,"));
    expectDiff(numbers(many), numbers(many + "7 7"),
               "~ g.x: … 2998 2999 -> … 2998 2999 7 7 (first at 3000, 2 of 3002 differ, 3000 -> 3002 in all)\n");
    const auto text = [](const std::string& words) { return group("<string name='s'>" + words + "</string>"); };
    const std::string umlauts = "ääääääääääääääääääääääääääääääääääääääää";
    expectDiff(text(umlauts + "x" + umlauts), text(umlauts + "ö" + umlauts),
               "~ g.s: \"…ääääääääääääääääääääx" + umlauts.substr(0, 78) + "…\" -> \"…ääääääääääääääääääääö" +
                   umlauts.substr(0, 78) + "…\" (first at character 40)\n");
    std::string texts;
    for (int i = 0; i < 100; ++i) texts += "<val>text " + std::to_string(i) + "</val>";
    expectDiff(text(texts), text(replaced(texts, "text 90", "test 90")),
               "~ g.s: \"text 90\" -> \"test 90\" (first at 90, 1 of 100 differ)\n");
    EXPECT_THAT(diff(numbers(many), group("<string name='x'>0</string>")).out,
                HasSubstr("~ g.x: 1 -> (none) (first at 1, 2999 of 3000 differ, 3000 -> 1 in all)\n"));
    const std::string bytes(400, 'A');
    const auto binary = [](const std::string& base64) { return group("<binary name='b'>" + base64 + "</binary>"); };
    EXPECT_THAT(diff(binary(bytes), binary(bytes.substr(0, 200) + "B" + bytes.substr(201))).out,
                HasSubstr("(first at byte 150, 1 of 300 differ)"));
}

TEST_F(DiffVerb, CountsTheDifferencesInAllOfALongValue) {
    std::string a;
    std::string b;
    for (int i = 0; i < 50'000; ++i) {
        a += std::to_string(i) + " ";
        b += std::to_string(i % 20'000 == 19'999 ? 0 : i) + " ";
    }
    EXPECT_THAT(diff(numbers(a), numbers(b)).out, HasSubstr("(first at 19999, 2 of 50000 differ)\n"));
}

TEST_F(DiffVerb, TellsAsJson) {
    const tRun told = diff(
        "<group name='a'><int8 name='m'>1</int8><name locale='de-de'>A</name><link name='l' to='x'/></group><group "
        "name='b'><double name='x' units='Meter'>1</double></group>",
        "<group name='a'/><group name='b'><double name='x' units='Meter'>2</double><int8 name='m'>1</int8><bool "
        "name='n'>1</bool></group>",
        "--json");
    EXPECT_EQ(told.status, 1);
    EXPECT_EQ(
        told.out,
        "{\"a\":\"" + path("a.xml") + "\",\"b\":\"" + path("b.xml") +
            "\",\"equal\":false,\"differences\":["
            "{\"what\":\"changed\",\"path\":\"a\",\"kind\":\"group\",\"aspect\":\"text\",\"locale\":\"de-de\",\"a\":"
            "\"A\",\"b\":null},"
            "{\"what\":\"moved\",\"path\":\"b.m\",\"from\":\"a.m\",\"kind\":\"int8\"},"
            "{\"what\":\"removed\",\"path\":\"a.l\",\"kind\":\"link\",\"items\":0},"
            "{\"what\":\"changed\",\"path\":\"b.x\",\"kind\":\"double\",\"aspect\":\"value\",\"first\":0,\"differing\""
            ":1,\"unit\":\"Meter\",\"a\":[1],\"b\":[2]},"
            "{\"what\":\"added\",\"path\":\"b.n\",\"kind\":\"bool\",\"b\":[true]}],"
            "\"counts\":{\"added\":1,\"removed\":1,\"changed\":2,\"moved\":1},\"faults\":0}\n");
    EXPECT_THAT(diff("", "", "--json").out, HasSubstr("\"equal\":true,\"differences\":[],"));
}

TEST_F(DiffVerb, TellsOnAPageThatNeedsNothingElse) {
    const std::string a = group("<int8 name='x'>1</int8>");
    const std::string b = group("<int8 name='x'>2</int8>");
    EXPECT_EQ(diff(a, b, "--html -o " + path("page.html")).out, "");
    const std::string page = bytesOf(path("page.html"));
    EXPECT_THAT(page, StartsWith("<!DOCTYPE html>"));
    EXPECT_THAT(page, HasSubstr("<h2>g</h2>"));
    EXPECT_THAT(page, HasSubstr("<td>x</td><td class=\"side a\">1</td><td class=\"side b\">2</td>"));
    EXPECT_THAT(page, HasSubstr("prefers-color-scheme: dark"));
    EXPECT_THAT(page, Not(HasSubstr("http")));
    EXPECT_THAT(page, Not(HasSubstr("<script")));
    EXPECT_EQ(diff(a, b, "--html").out, page);
    EXPECT_THAT(diff(a, a, "--html").out, HasSubstr("<p>No differences.</p>"));
}

TEST_F(DiffVerb, LetsNoTextTakeHoldOfWhatReadsIt) {
    const std::string items =
        "<group name=\"&lt;script>&amp;\xE2\x80\xAE&quot;'\"><string name='s'>&lt;img>&#x85;&#10;</string></group>";
    const std::string text =
        diff(items, "").out + diff(group("<string name='s'>&#10;&#x85;</string>"), group("<string name='s'/>")).out;
    EXPECT_EQ(text, "- <script>&\\u202e\"' [group, 1 item]\n~ g.s: \"\\n\\x85\" -> \"\"\n");
    EXPECT_THAT(diff(items, "", "--json").out, HasSubstr("\"path\":\"<script>&\\u202e\\\"'\""));
    const std::string page = diff(items, items.substr(0, items.find("<string")) + "</group>", "--html").out;
    EXPECT_THAT(page, HasSubstr("<h2>&lt;script&gt;&amp;\\u202e&quot;&#39;</h2>"));
    EXPECT_THAT(page, HasSubstr("&quot;&lt;img&gt;\\x85\\n&quot; [string]"));
    EXPECT_THAT(page, Not(HasSubstr("<script")));
    EXPECT_THAT(page, Not(HasSubstr("<img")));
    const std::string words(100, 'w');
    const auto longText = [&](const std::string& middle) {
        return group("<string name='s'>" + words + "&#x9B;" + middle + words + "</string>");
    };
    EXPECT_THAT(diff(longText("a"), longText("b")).out, HasSubstr("w\\x9bawww"));
}

// --- Statuses

TEST_F(DiffVerb, RefusesWhatMakesNoSense) {
    const std::string a = file("a.xml", "");
    EXPECT_EQ(run("diff " + a).status, 2);
    EXPECT_EQ(run("diff " + a + " " + a + " --to-path x").status, 2);
    EXPECT_EQ(run("diff " + a + " " + a + " --json --html").status, 2);
    EXPECT_EQ(run("diff " + a + " " + a + " -o " + a).status, 3);
    EXPECT_EQ(bytesOf(a), "<root name='r'></root>");
}

TEST_F(DiffVerb, NamesWhatCannotBeOpened) {
    const std::string a = file("a.xml", "<node name='Steel'/>");
    for (const std::string& words : {"no-such " + a, a + " no-such", a + " " + a + " --schemas no-such"}) {
        const tRun failed = run("diff " + words);
        EXPECT_EQ(failed.status, 3) << words;
        EXPECT_THAT(failed.err, HasSubstr("no-such"));
    }
    const tRun missing = run("diff " + a + " " + a + " --path Stel");
    EXPECT_EQ(missing.status, 3);
    EXPECT_THAT(missing.err, HasSubstr("near to it at its top: Steel"));
    EXPECT_EQ(run("diff " + a + " " + a + " -o " + path("none/out")).status, 3);
}

TEST_F(DiffVerb, EndsWithAFailureWhereItCannotWrite) {
    const std::string a = file("a.xml", "<node name='n'/>");
    EXPECT_EQ(run("diff /dev/null " + a + " -o /dev/full").status, 3) << "only files are replaced";
    const std::string intoFull = std::string(LVP_TOOL) + " diff /dev/null " + a + " >/dev/full 2>/dev/null";
    EXPECT_EQ(WEXITSTATUS(std::system(intoFull.c_str())), 4);
}

TEST_F(DiffVerb, DoesNotCallADocumentWithFaultsEqual) {
    const std::string faulty = "<int8 name='top'>1</int8><node name='n'/>";
    const tRun told = diff(faulty, "<node name='n'/>");
    EXPECT_EQ(told.status, 1);
    EXPECT_EQ(told.out, "");
    EXPECT_THAT(told.err, HasSubstr("a.xml:1:"));
    EXPECT_THAT(diff(faulty, "<node name='n'/>", "--json").out, HasSubstr("\"equal\":false,\"differences\":[],"));
}

TEST_F(DiffVerb, ComparesNoDocumentThatBreaksOff) {
    std::ofstream(path("a.xml")) << "<root name='r'><node name='n'>";
    const tRun told = run("diff " + path("a.xml") + " /dev/null");
    EXPECT_EQ(told.status, 3);
    EXPECT_EQ(told.out, "");
    EXPECT_THAT(told.err, HasSubstr("breaks off and cannot be compared"));
}

TEST_F(DiffVerb, GoesOnBehindARecordThatCannotBeRead) {
    const std::string text =
        "<root name='r'><group name='a'><int8 name='x'>1</int8><int8 name='spoilt'>2</int8><int8 name='y'>3</int8>"
        "</group></root>";
    const std::string sound = imported(text, "a.lvp");
    const std::string store = imported(text, "b.lvp");
    ASSERT_EQ(run("set " + store + " a.y 4").status, 0);
    std::string bytes = bytesOf(store);
    const std::string name("s\0\0\0p\0\0\0o\0\0\0i\0\0\0l\0\0\0t\0\0\0", 24);
    for (std::size_t at = 0; (at = bytes.find(name, at)) != bytes.npos;) bytes[at] = 'S';  // in old pages, too
    std::ofstream(store, std::ios::binary) << bytes;
    const tRun told = diffStores();
    EXPECT_EQ(told.status, 1);
    EXPECT_EQ(told.out, "- a.spoilt = 2 [int8]\n~ a.y: 3 -> 4\n");
    EXPECT_THAT(told.err, StartsWith(store + ": in a: record "));
    EXPECT_THAT(told.err, HasSubstr(" cannot be read and is left out: "));
    EXPECT_EQ(std::count(told.err.begin(), told.err.end(), '\n'), 1);
    EXPECT_EQ(run("diff " + store + " " + store).status, 1) << "what is not known is not equal";
}

// --- Much

TEST_F(DiffVerb, FindsThreeChangesInAHundredThousandItems) {
    std::string text;
    for (int i = 0; i < 100'000; ++i) {
        if (i % 1000 == 0) text += (i == 0 ? "" : "</group>") + ("<group name='g" + std::to_string(i / 1000) + "'>");
        const std::string number = std::to_string(i);
        text += "<int32 name='v" + number + "'>" + number + "</int32>";
    }
    text += "</group>";
    const std::string a = imported("<root name='r'>" + text + "</root>", "a.lvp");
    std::filesystem::copy_file(a, path("b.lvp"));
    ASSERT_EQ(run("set " + path("b.lvp") + " g7.v7007 1").status, 0);
    ASSERT_EQ(run("rm " + path("b.lvp") + " g50.v50003").status, 0);
    ASSERT_EQ(run("mk " + path("b.lvp") + " g99.more int8 5").status, 0);
    EXPECT_EQ(diffStores().out, "~ g7.v7007: 7007 -> 1\n- g50.v50003 = 50003 [int32]\n+ g99.more = 5 [int8]\n");
}

TEST_F(DiffVerb, GoesDownToAnyDepthOnASmallStack) {
    std::string begin;
    std::string end;
    for (int i = 0; i < 20'000; ++i) {
        begin += "<group name='d'>";
        end += "</group>";
    }
    const std::string a = file("a.xml", begin + "<int8 name='x'>1</int8>" + end);
    const std::string b = file("b.xml", begin + "<int8 name='x'>2</int8>" + end);
    const tRun told = runProgram("sh -c 'ulimit -s 256; exec " LVP_TOOL " \"$@\"' sh",
                                 "diff " + a + " " + b + " --ignore '**.y' --ignore 'd.**.*.z'");
    EXPECT_EQ(told.status, 1) << told.err;
    EXPECT_EQ(told.out.size(), 2 + 20'000 * 2 + 1 + std::string(": 1 -> 2\n").size());
}

}  // namespace
