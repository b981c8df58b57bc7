#include <gtest/gtest.h>

#include <filesystem>
#include <limits>
#include <string>
#include <vector>

#include "lumivard/platform/core.h"
#include "lumivard/platform/data.h"
#include "lumivard/platform/stores.h"
#include "tests/end_to_end/ToolFixture.h"
#include "tests/support/StoredRecords.h"

// What the tool puts into a page. How a browser shows it is the affair of tests/view.

namespace {

using namespace lumivard::platform::test_support;
using namespace lumivard::platform::data;
namespace stores = lumivard::platform::stores;

class ToolView : public Tool {
protected:
    /// What the page of a store shows, as JSON.
    std::string dataOf(const std::string& store, const std::string& options = "") const {
        const tRun view = run("view " + store + " -o " + path("page.html") + " " + options);
        EXPECT_EQ(view.status, 0) << view.err;
        EXPECT_EQ(view.out, "");
        return dataIn(bytesOf(path("page.html")));
    }
    static std::string dataIn(const std::string& page) {
        const std::string before = "<script type=\"application/json\" id=\"data\">";
        const std::size_t begin = page.find(before);
        const std::size_t end = page.find("</script>", begin);
        EXPECT_NE(begin, page.npos);
        EXPECT_NE(end, page.npos);
        return page.substr(begin + before.size(), end - begin - before.size());
    }
    /// A member of the outermost object, up to the next.
    static std::string member(const std::string& data, const std::string& name) {
        const std::size_t begin = data.find("\"" + name + "\":");
        EXPECT_NE(begin, data.npos) << name;
        if (begin == data.npos) return {};
        const std::size_t value = begin + name.size() + 3;
        int depth = 0;
        for (std::size_t i = value; i < data.size(); ++i) {
            if (data[i] == '[' || data[i] == '{') ++depth;
            if (data[i] == ']' || data[i] == '}') --depth;
            if (depth < 0 || (depth == 0 && data[i] == ',')) return data.substr(value, i - value);
        }
        return {};
    }
    /// A document of its own, under another name.
    std::string named(const std::string& name, const std::string& text) const {
        std::filesystem::rename(document(text), path(name));
        return path(name);
    }
    /// A store of one group, "g", into which `fill` puts items.
    template <class Fill>
    std::string filled(Fill fill) const {
        const auto store = stores::file(path("filled.lvp"), stores::tMode::kWrite);
        const auto group = structure::IContainerFrontEnd::toplevel(store.get(), L"g");
        fill(*group);
        store->flush();
        return path("filled.lvp");
    }
};

TEST_F(ToolView, WritesItemsInTheOrderOfAWalk) {
    const std::string data = dataOf(imported(
        "<root name='r' version='7'><group name='a'><node name='n'><int8 name='x' units='Meter'>5</int8></node></group>"
        "<table name='t'><bool name='b'>1</bool></table><link name='l' to='a.n'/></root>"));
    EXPECT_EQ(member(data, "store"), "\"store.lvp\"");
    EXPECT_EQ(member(data, "version"), "7");
    EXPECT_EQ(member(data, "level"), "[0,1,2,3,1,2,1]");
    EXPECT_EQ(member(data, "kind"), "[-1,-3,-2,8,-5,7,-4]");
    EXPECT_EQ(member(data, "value"), "[null,null,null,5,null,true,null]");
    EXPECT_EQ(member(data, "strings"), R"(["","r","a","n","x","Meter","t","b","l","a.n"])");
    EXPECT_EQ(member(data, "name"), "[1,2,3,4,6,7,8]");
    EXPECT_EQ(member(data, "unit"), "[0,0,0,5,0,0,0]");
    EXPECT_EQ(member(data, "target"), "[[6,9]]");
    EXPECT_EQ(member(data, "findings"), "[]");
    EXPECT_EQ(member(data, "conformance"), "null");
}

TEST_F(ToolView, HasLocalizedNamesAndTheDefaultsOfTables) {
    const std::string data =
        dataOf(imported("<root name='r'><name locale='de'>W</name><table name='t'><default unit='Meter' type='double'/>"
                        "<name locale='en'>T</name><int8 name='x'><name locale='de'>X</name></int8></table></root>"));
    EXPECT_EQ(member(data, "strings"), R"(["","r","de","t","en","Meter","x"])");
    EXPECT_EQ(member(data, "texts"), R"([[0,2,"W"],[1,4,"T"],[2,2,"X"]])");
    EXPECT_EQ(member(data, "defaults"), "[[1,5,17]]");
}

TEST_F(ToolView, HasWhatStandsAtTheTopInPlaceOfARoot) {
    const std::string given =
        "--schemas " + named("s.xml", "<root name='s'><table name='S'><double name='x'>0</double></table></root>");
    const std::string table = dataOf(
        imported("<table name='t' class='S'><default unit='Meter' type='double'/></table>", "t.lvp", given), given);
    EXPECT_EQ(member(table, "strings"), R"(["","t","S","Meter","x"])");
    EXPECT_EQ(member(table, "kind"), "[-5,17]");
    EXPECT_EQ(member(table, "base"), "[[0,2]]");
    EXPECT_EQ(member(table, "defaults"), "[[0,3,17]]");
    EXPECT_EQ(member(table, "schemas"), "[2]");
    EXPECT_EQ(member(table, "conformance"), "[]") << "it cannot be opened";

    const std::string group =
        dataOf(imported("<group name='g' class='S'><node name='n' class='S'/></group>", "g.lvp", given), given);
    EXPECT_EQ(member(group, "strings"), R"(["","g","S","x","n"])");
    EXPECT_EQ(member(group, "kind"), "[-3,17,-2,17]");
    EXPECT_EQ(member(group, "base"), "[[0,2],[2,2]]");
    EXPECT_EQ(member(group, "conformance"), R"([[2,2,""]])");

    const std::string link = dataOf(imported("<link name='l' to='a.b'/>"));
    EXPECT_EQ(member(link, "strings"), R"(["","l","a.b"])");
    EXPECT_EQ(member(link, "kind"), "[-4]");
    EXPECT_EQ(member(link, "target"), "[[0,2]]");
}

TEST_F(ToolView, EscapesWhatCouldEndTheData) {
    const std::string data = dataOf(imported(
        "<root name='r'><group name='&lt;/script>&lt;!--'><string name='s'>&lt;/script>&amp;&#x2028;&#x2029;&#x202e;"
        "</string></group></root>"));
    EXPECT_NE(data.find(R"("\u003c/script\u003e\u003c!--")"), data.npos) << data;
    EXPECT_EQ(member(data, "value"), R"([null,null,"\u003c/script\u003e\u0026\u2028\u2029\u202e"])");
    EXPECT_EQ(data.find_first_of("<>&"), data.npos);
}

TEST_F(ToolView, KeepsAllDigits) {
    const std::string data = dataOf(filled([](structure::IContainer& group) {
        const std::int64_t integers[] = {9007199254740992, 9007199254740993, std::numeric_limits<std::int64_t>::min()};
        group.create(L"i", metadata::kInt64)->set(integers, 0, 3);
        const std::uint64_t big = std::numeric_limits<std::uint64_t>::max();
        group.create(L"u", metadata::kUInt64)->set(&big, 0, 1);
        const double reals[] = {0.1,
                                1.0 / 3,
                                1e300,
                                -0.0,
                                std::numeric_limits<double>::quiet_NaN(),
                                -std::numeric_limits<double>::infinity()};
        group.create(L"d", metadata::kDouble)->set(reals, 0, 6);
        const float scalar = 0.1F;
        group.create(L"f", metadata::kScalar)->set(&scalar, 0, 1);
        const unsigned char truths[] = {0, 1, 7};
        group.create(L"b", metadata::kBool)->set(truths, 0, 3);
        const signed char small = -5;
        group.create(L"s", metadata::kInt8)->set(&small, 0, 1);
        group.create(L"e", metadata::kDouble);
        group.create(L"x", metadata::kBinary)->set("\x00\xFF", 0, 2);
    }));
    EXPECT_EQ(member(data, "value"),
              R"([null,null,[9007199254740992,"9007199254740993","-9223372036854775808"],"18446744073709551615",)"
              R"([0.1,0.3333333333333333,1e+300,-0,"NaN","-Infinity"],0.1,[false,true,7],-5,null,"00ff"])");
}

TEST_F(ToolView, HasTextsOneByOne) {
    const std::string data = dataOf(filled([](structure::IContainer& group) {
        group.create(L"one", metadata::kString)->set(L"a", 0, 2);
        group.create(L"two", metadata::kString)->set(L"a\0", 0, 3);
        group.create(L"open", metadata::kString)->set(L"a\0b", 0, 3);
        group.create(L"none", metadata::kString);
        const auto odd = static_cast<wchar_t>(0xD800);
        group.create(L"odd", metadata::kString)->set(&odd, 0, 1);
    }));
    EXPECT_EQ(member(data, "value"), "[null,null,\"a\",[\"a\",\"\"],[\"a\",\"b\"],null,\"\xEF\xBF\xBD\"]");
}

TEST_F(ToolView, CutsLongValuesAndSaysSo) {
    const std::string store = filled([](structure::IContainer& group) {
        const std::vector<unsigned char> bytes(10'001);
        group.create(L"b", metadata::kBinary)->set(bytes.data(), 0, 10'001);
        group.create(L"i", metadata::kInt8)->set(bytes.data(), 0, 10'000);
        const std::wstring text(100'002, L'x');
        group.create(L"t", metadata::kString)->set(text.c_str(), 0, 100'003);
    });
    const std::string cut = dataOf(store);
    EXPECT_EQ(member(cut, "limits"), R"({"elements":10000,"characters":100000})");
    EXPECT_EQ(member(cut, "cut"), "[[2,10001],[4,100003]]");
    EXPECT_NE(cut.find('"' + std::string(20'000, '0') + '"'), cut.npos);
    EXPECT_NE(cut.find('"' + std::string(100'000, 'x') + '"'), cut.npos);

    const std::string whole = dataOf(store, "--all");
    EXPECT_EQ(member(whole, "limits"), R"({"elements":0,"characters":0})");
    EXPECT_EQ(member(whole, "cut"), "[]");
    EXPECT_NE(whole.find('"' + std::string(20'002, '0') + '"'), whole.npos);
    EXPECT_NE(whole.find('"' + std::string(100'002, 'x') + '"'), whole.npos);
}

TEST_F(ToolView, CutsNoVectorInTwo) {
    const std::string cut = dataOf(filled([](structure::IContainer& group) {
        std::vector<double> numbers(10'002);
        for (std::size_t i = 0; i < numbers.size(); ++i) numbers[i] = static_cast<double>(i);
        group.create(L"v", metadata::kVec3)->set(numbers.data(), 0, 10'002);
    }));
    EXPECT_EQ(member(cut, "cut"), "[[2,10002]]");
    EXPECT_NE(cut.find(",9997,9998]"), cut.npos);
}

TEST_F(ToolView, HasAllBytesOfALongValueInTheirOrder) {
    std::string bytes(70'000, '\0');
    for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i % 251);
    std::string digits;
    for (const char byte : bytes) {
        digits += "0123456789abcdef"[static_cast<unsigned char>(byte) >> 4];
        digits += "0123456789abcdef"[static_cast<unsigned char>(byte) & 15];
    }
    const std::string data = dataOf(filled([&](structure::IContainer& group) {
                                        group.create(L"b", metadata::kBinary)->set(bytes.data(), 0, 70'000);
                                    }),
                                    "--all");
    EXPECT_TRUE(member(data, "value") == "[null,null,\"" + digits + "\"]");
}

TEST_F(ToolView, LeavesOutTheRoomBehindTheTextsOfAField) {
    const std::string given = "--schemas " + named("s.xml",
                                                   "<root name='s'><table name='S'><string name='t'>1234567</string>"
                                                   "<int8 name='n'>0</int8></table></root>");
    const std::string store =
        imported("<root name='r'><group name='g'><struct name='s' type='S' dim='3'/></group></root>", "s.lvp", given);
    {
        const auto open = stores::file(store, stores::tMode::kWrite);
        const auto structs = structure::IContainerFrontEnd::find(open.get(), L"g")->property(L"s");
        auto* blocks = metadata::IPrimitive::to(structs.get());
        const unsigned int stride = blocks->dimension() / 3;
        ASSERT_TRUE(blocks->set(L"one", 0, 3 * sizeof(wchar_t)));
        ASSERT_TRUE(blocks->set(L"a\0\0b", stride, 4 * sizeof(wchar_t)));
        open->flush();
    }
    EXPECT_EQ(member(dataOf(store, given), "value"), R"([null,null,[["one",0],[["a","","b"],0],["",0]]])");
}

TEST_F(ToolView, ShowsStructsByTheirFieldsWhereTheSchemaIsGiven) {
    const std::string given = " --schemas " + motionSchemas;
    ASSERT_EQ(run("import " + motion + " " + path("m.lvp") + given).status, 0);
    const std::string data = dataOf(path("m.lvp"), given);
    EXPECT_EQ(member(data, "layout"), "[[2,0],[3,1]]");
    EXPECT_EQ(data.find("[[[0,0,0.5],[0,0,0,1],0],[[0.25,0,0.5],[0,0,0.7071068,0.7071068],400],"),
              data.find("\"value\":") + 8 + std::string("[null,null,").size());
    EXPECT_NE(data.find(R"("layouts":[[["position","double"],["rotation","scalar"],["time","int64"]],)"), data.npos);
    EXPECT_EQ(member(dataOf(path("m.lvp")), "layout"), "[]");
}

TEST_F(ToolView, TellsWhatDoesNotConformToTheSchemasThatAreGiven) {
    const std::string old = named("old.xml", "<root name='s'><table name='S'><int8 name='x'>0</int8></table></root>");
    const std::string store = imported("<root name='r'><group name='g'><node name='n' class='S'/></group></root>",
                                       "a.lvp", "--schemas " + old);
    EXPECT_EQ(member(dataOf(store, "--schemas " + old), "conformance"), R"([[2,4,""]])");

    const std::string now = document(
        "<root name='s'><table name='S'><int8 name='x'>0</int8><int8 name='y'>0</int8>"
        "</table></root>");
    const std::string data = dataOf(store, "--schemas " + now);
    EXPECT_EQ(member(data, "conformance"), R"([[2,4,"S: 'y' (int8) is missing"]])");
    EXPECT_EQ(member(data, "schemas"), "[4]");
    EXPECT_EQ(member(data, "base"), "[[2,4]]");
}

TEST_F(ToolView, TellsOnlyOfSchemasThatAreGivenWhetherItemsConform) {
    const std::string s = named("s.xml", "<root name='s'><table name='S'><int8 name='x'>0</int8></table></root>");
    const std::string t = named("t.xml", "<root name='t'><table name='T'><int8 name='y'>0</int8></table></root>");
    const std::string store =
        imported("<root name='r'><node name='n' class='S;T'/></root>", "n.lvp", "--schemas " + s + " --schemas " + t);
    const auto told = [&](const std::string& given) {
        const std::string data = dataOf(store, given);
        return member(data, "schemas") + member(data, "conformance") + member(data, "strings");
    };
    EXPECT_EQ(told("--schemas " + s + " --schemas " + t), R"([6,7][[1,3,""]]["","r","n","S;T","x","y","S","T"])");
    EXPECT_EQ(told("--schemas " + s), R"([6][[1,6,""]]["","r","n","S;T","x","y","S"])");

    const std::string other = named("u.xml", "<root name='t'><table name='T'><int8 name='z'>0</int8></table></root>");
    EXPECT_EQ(told("--schemas " + s + " --schemas " + other),
              R"([7,6][[1,6,"T: 'z' (int8) is missing"]]["","r","n","S;T","x","y","T","S"])");
}

TEST_F(ToolView, TellsWhatNothingReachesAsANumber) {
    const std::string given = " --schemas " + schemas;
    ASSERT_EQ(run("import " + materials + " " + path("m.lvp") + given).status, 0);
    const std::string data = dataOf(path("m.lvp"));
    EXPECT_EQ(member(data, "findings"), "[]");
    EXPECT_EQ(member(data, "severities"), R"({"note":0,"stale":0,"damage":0,"fatal":0})");
    EXPECT_EQ(member(data, "unattached").find(R"({"records":)"), 0U);
    EXPECT_EQ(member(data, "unattached").find(R"({"records":0)"), std::string::npos);
}

/// Notes the record of a value.
struct RecordOf : structure::IVisitor {
    void primitive(const tPrimitive& item) override { offset = item.offset; }
    unsigned int offset = BADOFF;
};

TEST_F(ToolView, TellsTheFindingsOfTheCheckerWithTheirItems) {
    const std::string store = imported(
        "<root name='r'><group name='a'><node name='n'><int8 name='x'>5</int8></node>"
        "</group></root>");
    {
        const auto open = stores::file(store, stores::tMode::kWrite);
        RecordOf value;
        structure::IVisitor::visit(open.get(), L"a.n.x", value);
        stored::putWord(open.get(), value.offset, stored::kRefs, 2);
        stored::putWord(open.get(), stored::word(open.get(), value.offset, stored::kParent), stored::kRefs, 3);
        open->flush();
    }
    const std::string data = dataOf(store);
    EXPECT_EQ(member(data, "severities"), R"({"note":0,"stale":2,"damage":0,"fatal":0})");
    const std::string findings = member(data, "findings");
    EXPECT_NE(findings.find(R"([2,"stale","live.)"), findings.npos) << findings;
    EXPECT_NE(findings.find(R"([3,"stale","live.)"), findings.npos) << findings;
}

TEST_F(ToolView, ShowsATreeOfAnyDepth) {
    std::string text;
    constexpr std::size_t kLevels = 20'000;
    for (std::size_t i = 0; i < kLevels; ++i) text += "<group name='g'>";
    for (std::size_t i = 0; i < kLevels; ++i) text += "</group>";
    const std::string store = imported("<root name='r'>" + text + "</root>");
    ASSERT_EQ(
        runProgram("sh", "-c 'ulimit -s 256 && exec " LVP_TOOL " view " + store + " -o " + path("deep.html") + "'")
            .status,
        0);
    EXPECT_NE(dataIn(bytesOf(path("deep.html"))).find(",19999,20000],\"kind\""), std::string::npos);
}

TEST_F(ToolView, NeverTakesThePlaceOfWhatItIsMadeFrom) {
    const std::string store = imported("<root name='r'/>");
    const std::string before = bytesOf(store);
    const tRun over = run("view " + store + " -o " + store);
    EXPECT_EQ(over.status, 3);
    EXPECT_NE(over.err.find("which it is made from"), std::string::npos) << over.err;
    EXPECT_EQ(bytesOf(store), before);
    std::filesystem::copy_file(schemas, path("schemas.xml"));
    EXPECT_EQ(run("view " + store + " --schemas " + path("schemas.xml") + " -o " + path("schemas.xml")).status, 3);
    EXPECT_EQ(bytesOf(path("schemas.xml")), bytesOf(schemas));
}

TEST_F(ToolView, LeavesTheOldPageWhereItFails) {
    std::filesystem::rename(document("old"), path("page.html"));
    EXPECT_EQ(run("view " + path("nothing.lvp") + " -o " + path("page.html")).status, 3);
    EXPECT_EQ(bytesOf(path("page.html")), "old");
    EXPECT_EQ(run("view " + imported("<root name='r'/>") + " -o " + path("no/folder.html")).status, 3);
    EXPECT_EQ(run("view").status, 2);
}

TEST_F(ToolView, WritesNoPageOfAStoreOfWhichNothingCanBeReached) {
    const std::string store = imported("<root name='r'/>");
    {
        const auto open = stores::file(store, stores::tMode::kWrite);
        stored::putByte(open.get(), 0, 0, 99);
        open->flush();
    }
    const tRun view = run("view " + store + " -o " + path("page.html"));
    EXPECT_EQ(view.status, 4);
    EXPECT_NE(view.err.find("nothing in the store can be reached"), std::string::npos) << view.err;
    EXPECT_FALSE(std::filesystem::exists(path("page.html")));
}

TEST_F(ToolView, WritesToStandardOutputWithoutAName) {
    const std::string store = imported("<root name='r'/>");
    dataOf(store);
    const tRun view = run("view " + store);
    EXPECT_EQ(view.status, 0);
    EXPECT_EQ(view.out, bytesOf(path("page.html")));
    EXPECT_EQ(view.out.find("<!DOCTYPE html>"), 0U);
    EXPECT_EQ(view.out.find("@"), view.out.find("@media"));
}

}  // namespace
