#include "tools/base/Text.h"

#include <gtest/gtest.h>

#include <limits>
#include <sstream>

#include "tools/base/JsonWriter.h"

namespace {

using namespace lvp::tool;

std::string quoted(const char* text) {
    std::ostringstream out;
    JsonWriter(out).value(text);
    return out.str();
}

TEST(PrintedText, HasEscapesForWhatTakesHoldOfATerminal) {
    EXPECT_EQ(printable("a\x1b[31m\n\t\r\x7f"), "a\\x1b[31m\\n\\t\\r\\x7f");
    EXPECT_EQ(printable("\xC2\x9B"), "\\x9b") << "a C1 control";
}

TEST(PrintedText, HasEscapesForWhatTurnsItsDirectionOrEndsALine) {
    EXPECT_EQ(printable("\u200e\u200f\u2028\u2029\u202a\u202e\u2066\u2069\u061c"),
              "\\u200e\\u200f\\u2028\\u2029\\u202a\\u202e\\u2066\\u2069\\u061c");
    EXPECT_EQ(printable("\u2030\u2027\u200d\u061b"), "\u2030\u2027\u200d\u061b") << "their neighbours";
}

TEST(PrintedText, IsOtherwiseAsItIs) {
    EXPECT_EQ(printable("Höhe \"x\" \\ 高"), "Höhe \"x\" \\ 高");
}

TEST(ShortenedText, EndsWithAnEllipsisWhereSomethingIsLeftOut) {
    EXPECT_EQ(shortened("Höhe", 4), "Höhe");
    EXPECT_EQ(shortened("Höhen", 4), "Höhe…");
}

TEST(JsonText, HasEscapesForTheSame) {
    EXPECT_EQ(quoted("a\x1b\n\"\\"), "\"a\\u001b\\u000a\\\"\\\\\"");
    EXPECT_EQ(quoted("\u200e\u2028\u202e\u2069\u061c\u2030"), "\"\\u200e\\u2028\\u202e\\u2069\\u061c\u2030\"");
    EXPECT_EQ(quoted("\xff"), "\"\uFFFD\"") << "what is no text";
}

TEST(JsonNumbers, AreTheShortestThatReadBack) {
    std::ostringstream out;
    JsonWriter json(out);
    json.beginArray();
    json.value(0.1);
    json.value(0.1f);
    json.value(-9223372036854775807LL - 1);
    json.value(18446744073709551615ULL);
    json.value(std::numeric_limits<double>::infinity());
    json.endArray();
    EXPECT_EQ(out.str(), "[0.1,0.1,-9223372036854775808,18446744073709551615,\"inf\"]");
}

}  // namespace
