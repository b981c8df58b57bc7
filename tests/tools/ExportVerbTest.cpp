// export, as a user runs it.
#include <gmock/gmock.h>

#include <string>

#include "lumivard/platform/core/io/MemoryWriter.h"
#include "tests/end_to_end/ToolFixture.h"
#include "tools/documents/TerminalWriter.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::core::io::MemoryWriter;
using testing::HasSubstr;

class ExportVerb : public Tool {};

TEST_F(ExportVerb, TellsOfStructsThatGoOutWithoutAValue) {
    const std::string with = " --schemas " + motionSchemas;
    ASSERT_EQ(run("import " + motion + " " + path("a.lvp") + with).status, 0);
    const tRun without = run("export " + path("a.lvp"));
    EXPECT_EQ(without.status, 1);
    EXPECT_THAT(without.err, HasSubstr(" went out without a value: give the --schemas that tell how "));
    EXPECT_THAT(without.out, HasSubstr("</root>"));
    const tRun whole = run("export " + path("a.lvp") + with);
    EXPECT_EQ(whole.status, 0);
    EXPECT_EQ(whole.err, "");
}

TEST_F(ExportVerb, OfAnItemReadsThatAlone) {
    const std::string store =
        imported("<root name='r'><group name='a'><int8 name='x'>5</int8></group><group name='b'/></root>");
    EXPECT_EQ(run("export " + store + " a.x").out,
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<int8 name=\"x\">5</int8>");
    EXPECT_EQ(
        run("export --canonical " + store + " a").out,
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<group name=\"a\">\n  <int8 name=\"x\">5</int8>\n</group>\n");
    EXPECT_EQ(run("export " + store + " a.x.y").status, 3);
}

TEST_F(ExportVerb, OfWhatIsHiddenIsRefused) {
    ASSERT_EQ(run("import " + materials + " " + path("m.lvp") + " --schemas " + schemas).status, 0);
    const tRun refused = run("export " + path("m.lvp") + " Carbon.Graphite.ShearModulus");
    EXPECT_EQ(refused.status, 3);
    EXPECT_THAT(refused.err, HasSubstr(" is hidden, as it came from a schema, and documents leave that out; "));
}

TEST_F(ExportVerb, GoesToStandardOutputForAMinus) {
    const std::string store = imported("<root name='r'/>");
    const std::string out = run("export " + store).out;
    EXPECT_EQ(run("export " + store + " -o -").out, out);
    EXPECT_EQ(run("export " + store + " -o /dev/stdout").out, out);
}

TEST_F(ExportVerb, DoesNotReplaceALockFile) {
    const std::string store = imported("<root name='r'/>");
    EXPECT_EQ(run("export " + store + " -o " + store + "-lock").status, 3);
}

// --- On its way to a terminal

std::string shown(const std::string& text, std::size_t piece, bool terminal = true) {
    MemoryWriter out;
    out.open();
    lvp::tool::TerminalWriter writer(out, terminal);
    for (std::size_t begin = 0; begin < text.size(); begin += piece) {
        const std::string part = text.substr(begin, piece);
        writer.write(part.data(), part.size());
    }
    writer.close();
    return out.bytes();
}

TEST(TerminalWriter, MakesReferencesOfWhatCouldTakeHoldOfATerminal) {
    const std::string text =
        "<a>\n\t\xC2\x9B"
        "31m \x7F \xE2\x80\xAE \xE2\x81\xA6 \xD8\x9C ä € 𝒳 \xE2\x80\x99</a>";
    for (std::size_t piece = 1; piece <= text.size(); ++piece) {
        EXPECT_EQ(shown(text, piece), "<a>\n\t&#155;31m &#127; &#8238; &#8294; &#1564; ä € 𝒳 \xE2\x80\x99</a>")
            << piece;
        EXPECT_EQ(shown(text, piece, false), text) << piece;
    }
    EXPECT_EQ(shown("cut \xE2\x80", 3), "cut \xE2\x80");
}

}  // namespace
