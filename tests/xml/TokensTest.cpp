#include "xml/Tokens.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace {

using lumivard::platform::data::Tokens;
using tPieces = std::vector<std::string_view>;

tPieces pieces(std::string_view text) {
    tPieces all;
    std::string_view token;
    for (Tokens tokens(text); tokens.next(token);) all.push_back(token);
    EXPECT_EQ(all.size(), Tokens::count(text));
    return all;
}

TEST(Tokens, SplitAtRunsOfSpacesTabsAndLineEnds) {
    EXPECT_EQ(pieces("1 2 3"), (tPieces{"1", "2", "3"}));
    EXPECT_EQ(pieces("1 \t\r\n 2\n3"), (tPieces{"1", "2", "3"}));
    EXPECT_EQ(pieces("1"), tPieces{"1"});
}

TEST(Tokens, PassOverSeparatorsAtTheStart) {
    EXPECT_EQ(pieces("  \n1 2"), (tPieces{"1", "2"}));
}

TEST(Tokens, EndWithAnEmptyOneBehindASeparator) {
    EXPECT_EQ(pieces("1 2 "), (tPieces{"1", "2", ""}));
    EXPECT_EQ(pieces("1\n\n\n"), (tPieces{"1", ""}));
}

TEST(Tokens, AreNeverNone) {
    EXPECT_EQ(pieces(""), tPieces{""});
    EXPECT_EQ(pieces(" \t\n\r"), tPieces{""});
}

TEST(Tokens, TakeOtherControlCharactersIn) {
    EXPECT_EQ(pieces("1\v2\f3 \x01 \x1f"), (tPieces{"1\v2\f3", "\x01", "\x1f"}));
    EXPECT_EQ(pieces("\xc2\xa0 \x80\xff"), (tPieces{"\xc2\xa0", "\x80\xff"}));
}

TEST(Tokens, LeaveThePieceAloneAfterTheLastOne) {
    Tokens tokens("a");
    std::string_view token;
    EXPECT_TRUE(tokens.next(token));
    EXPECT_FALSE(tokens.next(token));
    EXPECT_FALSE(tokens.next(token));
    EXPECT_EQ(token, "a");
}

}  // namespace
