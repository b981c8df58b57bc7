// A name or a path in a set.
#include <gtest/gtest.h>

#include "tests/support/Offsets.h"
#include "tests/support/StoreFixture.h"
#include "tests/support/TreeHelpers.h"

namespace {

namespace data = lumivard::platform::data;
namespace tree = lumivard::platform::test_support::tree;
using data::Metadata::Root;
using data::Structural::Container;
using lumivard::platform::test_support::StoreTest;

using lumivard::platform::test_support::BADOFF;

/// A root with "a" in it, "b" in that, "p" in that.
class Lookup : public StoreTest {
protected:
    const unsigned int _root = tree::root(store());
    const unsigned int _a = tree::addContainer(store(), _root, L"a");
    const unsigned int _b = tree::addContainer(store(), _a, L"b");
    const unsigned int _p = tree::addPrimitive(store(), _b, L"p");
};
LVP_ON_EACH_STORE(Lookup);

TEST_P(Lookup, OfANameIsWhatFindGives) {
    const Root set(store(), _root);
    EXPECT_EQ(set.lookup(L"a"), _a);
    EXPECT_EQ(set.lookup(L"a"), set.find(L"a"));
    EXPECT_EQ(set.lookup(L"b"), BADOFF);
    EXPECT_EQ(set.lookup(L""), BADOFF);
}

TEST_P(Lookup, OfAPathIsWhereItLeads) {
    const Root set(store(), _root);
    EXPECT_EQ(set.lookup(L"a.b"), _b);
    EXPECT_EQ(set.lookup(L"a.b.p"), _p);
    EXPECT_EQ(Container(store(), _a, false).lookup(L"b.p"), _p);
}

TEST_P(Lookup, OfAPathThatLeadsNowhereIsNothing) {
    const Root set(store(), _root);
    for (const wchar_t* path : {L"x.b", L"a.x", L"a.", L".a", L".", L"a.b.p.x.y", L"a.b.x"}) {
        EXPECT_EQ(set.lookup(path), BADOFF) << path;
    }
}

TEST_P(Lookup, EndsOnAPrimitiveWithOnePieceLeft) {
    EXPECT_EQ(Root(store(), _root).lookup(L"a.b.p.x"), _p);
    EXPECT_EQ(Container(store(), _b, false).lookup(L"p.x"), _p);
    EXPECT_EQ(Container(store(), _b, false).lookup(L"p.x.y"), BADOFF);
}

TEST_P(Lookup, DoesNotReachANameWithADotThatFindReaches) {
    const unsigned int dotted = tree::addContainer(store(), _root, L"x.y");
    const Root set(store(), _root);
    EXPECT_EQ(set.find(L"x.y"), dotted);
    EXPECT_EQ(set.lookup(L"x.y"), BADOFF);
}

TEST_P(Lookup, OfNothingIsNothing) {
    EXPECT_EQ(Root(store(), _root).lookup(nullptr), BADOFF);
}

TEST_P(Lookup, GoesByTheIndexForTheFirstPieceAndByTheStoreForTheRest) {
    const Root set(store(), _root);
    const unsigned int late = tree::addContainer(store(), _root, L"late");
    const unsigned int inner = tree::addContainer(store(), late, L"inner");
    const unsigned int below = tree::addContainer(store(), _a, L"late");
    EXPECT_EQ(set.lookup(L"late"), BADOFF);
    EXPECT_EQ(set.lookup(L"late.inner"), BADOFF);
    EXPECT_EQ(set.lookup(L"a.late"), below);
    EXPECT_EQ(Root(store(), _root).lookup(L"late.inner"), inner);
}

TEST_P(Lookup, FindsAnEmptyFirstPiece) {
    const unsigned int empty = tree::addContainer(store(), _root, L"");
    const unsigned int inner = tree::addContainer(store(), empty, L"x");
    const Root set(store(), _root);
    EXPECT_EQ(set.lookup(L""), empty);
    EXPECT_EQ(set.lookup(L".x"), inner);
}

}  // namespace
