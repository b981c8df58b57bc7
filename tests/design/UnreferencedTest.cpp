// Whether something in a subtree is open.
#include <gtest/gtest.h>

#include <memory>

#include "lumivard/platform/store_contract/LoggingStore.h"
#include "tests/support/RecordHelpers.h"
#include "tests/support/StoreFixture.h"
#include "tests/support/TreeHelpers.h"

namespace {

namespace data = lumivard::platform::data;
namespace stored = lumivard::platform::test_support::stored;
namespace tree = lumivard::platform::test_support::tree;
using data::Design::Primitive;
using data::Design::Table;
using data::Metadata::Root;
using data::Structural::Container;
using lumivard::platform::store_contract::LoggingStore;
using lumivard::platform::test_support::StoreTest;

/// A root with "c" in it, "t" in that, "p" in that.
class Unreferenced : public StoreTest {
protected:
    const unsigned int _root = tree::root(store());
    const unsigned int _c = tree::addContainer(store(), _root, L"c");
    const unsigned int _t = tree::addTable(store(), _c, L"t");
    const unsigned int _p = tree::addPrimitive(store(), _t, L"p");
};
LVP_ON_EACH_STORE(Unreferenced);

TEST_P(Unreferenced, IsTrueForTheOnlyObject) {
    EXPECT_TRUE(Root(store(), _root).unreferenced());
    EXPECT_TRUE(Container(store(), _c, false).unreferenced());
    EXPECT_TRUE(Table(store(), _t, false).unreferenced());
    EXPECT_TRUE(Primitive(store(), _p).unreferenced());
}

TEST_P(Unreferenced, IsTrueForANewOne) {
    EXPECT_TRUE(Container(store(), tree::IContainer::kNode, L"new").unreferenced());
    EXPECT_TRUE(Table(store(), L"new").unreferenced());
    EXPECT_TRUE(Primitive(store(), data::metadata::kBool, L"new").unreferenced());
}

TEST_P(Unreferenced, IsFalseForBothOfTwoObjects) {
    const auto both = [](auto&& first, auto&& second) {
        EXPECT_FALSE(first.unreferenced());
        EXPECT_FALSE(second.unreferenced());
    };
    both(Root(store(), _root), Root(store(), _root));
    both(Container(store(), _c, false), Container(store(), _c, true));
    both(Table(store(), _t, false), Table(store(), _t, true));
    both(Primitive(store(), _p), Primitive(store(), _p));
}

TEST_P(Unreferenced, IsFalseForEachOwnerOfAnOpenItem) {
    Root root(store(), _root);
    Container c(store(), _c, false);
    EXPECT_FALSE(root.unreferenced());
    EXPECT_TRUE(c.unreferenced());
    auto p = std::make_unique<Primitive>(store(), _p);
    EXPECT_FALSE(c.unreferenced());
    p.reset();
    EXPECT_TRUE(c.unreferenced());
}

TEST_P(Unreferenced, LooksOnlyAtTheChildrenInTheIndex) {
    const Primitive open(store(), _p);
    EXPECT_FALSE(Container(store(), _c, false).unreferenced());
    EXPECT_TRUE(Container(store(), _c, true).unreferenced()) << "opened lazily";
}

TEST_P(Unreferenced, LooksAtEveryChild) {
    for (const wchar_t* name : {L"q", L"r", L"s"}) {
        const unsigned int offset = tree::addPrimitive(store(), _root, name);
        const Primitive open(store(), offset);
        EXPECT_FALSE(Root(store(), _root).unreferenced()) << name;
    }
    EXPECT_TRUE(Root(store(), _root).unreferenced());
}

TEST_P(Unreferenced, WritesNothing) {
    LoggingStore log(*store());
    Root root(&log, _root);
    log.clearLog();
    root.unreferenced();
    EXPECT_TRUE(log.updates(true).empty());
    EXPECT_TRUE(log.updates(false).empty());
}

TEST_P(Unreferenced, IsFalseForACountThatACrashLeftBehind) {
    stored::putWord(store(), _p, 5, 1);
    EXPECT_FALSE(Root(store(), _root).unreferenced());
    EXPECT_FALSE(Primitive(store(), _p).unreferenced());
}

}  // namespace
