// The walk along a dotted path.
#include "schema/Finder.h"

#include <gtest/gtest.h>

#include <string>

#include "lumivard/platform/store_contract/LoggingStore.h"
#include "record/Locale.h"
#include "tests/support/Offsets.h"
#include "tests/support/RecordHelpers.h"
#include "tests/support/StoreFixture.h"
#include "tests/support/TreeHelpers.h"

namespace {

namespace data = lumivard::platform::data;
namespace stored = lumivard::platform::test_support::stored;
namespace tree = lumivard::platform::test_support::tree;
using data::Schema::Finder;
using lumivard::platform::store_contract::LoggingStore;
using lumivard::platform::test_support::makeRecord;
using lumivard::platform::test_support::StoreTest;

using lumivard::platform::test_support::BADOFF;

/// A root with "a" in it, "t" in that, "p" in that; and a primitive "q" beside "a".
class PathFinder : public StoreTest {
protected:
    unsigned int find(unsigned int start, const wchar_t* path) { return Finder(store(), start, path).offset; }

    const unsigned int _root = tree::root(store());
    const unsigned int _a = tree::addContainer(store(), _root, L"a");
    const unsigned int _t = tree::addTable(store(), _a, L"t");
    const unsigned int _p = tree::addPrimitive(store(), _t, L"p");
    const unsigned int _q = tree::addPrimitive(store(), _root, L"q");
};
LVP_ON_EACH_STORE(PathFinder);

TEST_P(PathFinder, FollowsNamesThroughRootsContainersAndTables) {
    EXPECT_EQ(find(_root, L"a"), _a);
    EXPECT_EQ(find(_root, L"q"), _q);
    EXPECT_EQ(find(_root, L"a.t"), _t);
    EXPECT_EQ(find(_root, L"a.t.p"), _p);
}

TEST_P(PathFinder, BeginsWhereItIsTold) {
    EXPECT_EQ(find(_a, L"t.p"), _p);
    EXPECT_EQ(find(_t, L"p"), _p);
    EXPECT_EQ(find(_a, L"a"), BADOFF);
}

TEST_P(PathFinder, EndsAtNothingForAnUnknownName) {
    for (const wchar_t* path : {L"x", L"a.x", L"x.t", L"a.x.p", L"a.t.p.x.y", L"A", L"t", L"p"}) {
        EXPECT_EQ(find(_root, path), BADOFF) << path;
    }
}

TEST_P(PathFinder, StaysOnARecordWithoutChildrenWithOnePieceLeft) {
    EXPECT_EQ(find(_root, L"q.anything"), _q);
    EXPECT_EQ(find(_root, L"a.t.p.x"), _p);
    EXPECT_EQ(find(_root, L"q."), _q);
    EXPECT_EQ(find(_p, L"x"), _p);
}

TEST_P(PathFinder, EndsAtNothingOnARecordWithoutChildrenWithMorePiecesLeft) {
    EXPECT_EQ(find(_root, L"q.x.y"), BADOFF);
    EXPECT_EQ(find(_root, L"q.."), BADOFF);
    EXPECT_EQ(find(_root, L"q.x.y.z"), BADOFF);
    EXPECT_EQ(find(_p, L"x.y"), BADOFF);
}

TEST_P(PathFinder, TreatsAnyOtherKindOfRecordLikeAPrimitive) {
    const unsigned int list = stored::makeList(store());
    const unsigned int locale = data::Record::Locale(store()).offset();
    const unsigned int unknown = makeRecord(store(), "M" + std::string(60, '\0'));
    for (const unsigned int offset : {list, locale, unknown}) {
        EXPECT_EQ(find(offset, L"x"), offset);
        EXPECT_EQ(find(offset, L"x.y"), BADOFF);
    }
}

TEST_P(PathFinder, SearchesForEmptyPieces) {
    EXPECT_EQ(find(_root, L""), BADOFF);
    const unsigned int empty = tree::addContainer(store(), _root, L"");
    EXPECT_EQ(find(_root, L""), empty);
    const unsigned int inner = tree::addContainer(store(), empty, L"");
    EXPECT_EQ(find(_root, L"."), inner);
    EXPECT_EQ(find(_root, L".."), BADOFF);
    const unsigned int b = tree::addContainer(store(), empty, L"b");
    EXPECT_EQ(find(_root, L".b"), b);
    EXPECT_EQ(find(_root, L"b"), BADOFF);
}

TEST_P(PathFinder, KeepsAnEmptyPieceAtTheEnd) {
    EXPECT_EQ(find(_root, L"a."), BADOFF);
    const unsigned int empty = tree::addPrimitive(store(), _a, L"");
    EXPECT_EQ(find(_root, L"a."), empty);
    EXPECT_EQ(find(_root, L"a..x"), empty) << "a primitive, with one piece left";
}

TEST_P(PathFinder, TrimsNothing) {
    const unsigned int spaced = tree::addContainer(store(), _root, L" a ");
    EXPECT_EQ(find(_root, L" a "), spaced);
    EXPECT_EQ(find(_root, L"a .t"), BADOFF);
}

TEST_P(PathFinder, DoesNotReachANameWithADot) {
    tree::addContainer(store(), _root, L"x.y");
    EXPECT_EQ(find(_root, L"x.y"), BADOFF);
}

TEST_P(PathFinder, LeadsNowhereWithoutAPath) {
    EXPECT_EQ(find(_root, nullptr), BADOFF);
    EXPECT_EQ(find(_p, nullptr), BADOFF);
}

TEST_P(PathFinder, LeadsNowhereFromWhatIsNotThere) {
    EXPECT_EQ(find(777, L"a"), BADOFF);
    EXPECT_EQ(find(BADOFF, L"a"), BADOFF);
    EXPECT_EQ(find(BADOFF, L""), BADOFF);
}

TEST_P(PathFinder, TakesTheFirstOfTwoChildrenOfOneName) {
    stored::enlist(store(), _root, tree::container(store(), L"a"));
    EXPECT_EQ(find(_root, L"a"), _a);
}

TEST_P(PathFinder, LeavesNothingOpenAndChangesNothing) {
    LoggingStore log(*store());
    EXPECT_EQ(Finder(&log, _root, L"a.t.p").offset, _p);
    EXPECT_TRUE(log.updates(true).empty());
    for (const unsigned int offset : {_root, _a, _t, _p}) EXPECT_EQ(stored::refs(store(), offset), 0u);
}

}  // namespace
