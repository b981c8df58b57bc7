// The copying of all children of a set.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "record/Offsets.h"
#include "tests/support/Offsets.h"
#include "tests/support/RecordHelpers.h"
#include "tests/support/StoreFixture.h"
#include "tests/support/TreeHelpers.h"

namespace {

namespace data = lumivard::platform::data;
namespace stored = lumivard::platform::test_support::stored;
namespace tree = lumivard::platform::test_support::tree;
using data::Metadata::Root;
using data::Structural::Container;
using lumivard::platform::test_support::StoreTest;

using lumivard::platform::test_support::BADOFF;

class Duplicate : public StoreTest {
protected:
    std::vector<unsigned int> entries(unsigned int list) { return data::Record::Offsets(other(), list).get(); }

    const unsigned int _root = tree::root(store());
    const unsigned int _target = tree::root(other());
};
LVP_ON_EACH_STORE(Duplicate);

TEST_P(Duplicate, OfASetWithoutChildrenIsNothing) {
    const auto before = other()->extent();
    EXPECT_EQ(Root(store(), _root).Set::duplicate(other(), _target), BADOFF);
    EXPECT_EQ(other()->extent(), before);
}

TEST_P(Duplicate, IsANewListOfCopiesBelowAParent) {
    const unsigned int c = tree::addContainer(store(), _root, L"c");
    tree::addPrimitive(store(), c, L"p");
    tree::addTable(store(), _root, L"t");
    const unsigned int list = Root(store(), _root).Set::duplicate(other(), 4242);
    const std::vector<unsigned int> copies = entries(list);
    ASSERT_EQ(copies.size(), 2u);
    for (const unsigned int copy : copies) EXPECT_EQ(stored::word(other(), copy, 1), 4242u);
    const Container copy(other(), copies[0], false);
    EXPECT_STREQ(copy.tag(), L"c");
    ASSERT_NE(copy.find(L"p"), BADOFF);
    EXPECT_EQ(stored::word(other(), copy.find(L"p"), 1), copies[0]);
}

TEST_P(Duplicate, DoesNotAttachTheList) {
    tree::addContainer(store(), _root, L"c");
    Root(store(), _root).Set::duplicate(other(), _target);
    EXPECT_EQ(stored::word(other(), _target, 14), BADOFF);
}

TEST_P(Duplicate, KeepsTheNumberOfAListedRecordThatIsNoChild) {
    const unsigned int foreign = stored::makeList(store());
    stored::enlist(store(), _root, foreign);
    tree::addContainer(store(), _root, L"c");
    stored::enlist(store(), _root, _root);
    const std::vector<unsigned int> copies = entries(Root(store(), _root).Set::duplicate(other(), _target));
    ASSERT_EQ(copies.size(), 3u);
    EXPECT_EQ(copies[0], foreign);
    EXPECT_STREQ(Container(other(), copies[1], false).tag(), L"c");
    EXPECT_EQ(copies[2], _root);
}

TEST_P(Duplicate, GoesByTheStoredListAndNotByTheIndex) {
    tree::addContainer(store(), _root, L"c");
    Root set(store(), _root);
    tree::addContainer(store(), _root, L"d");
    EXPECT_EQ(entries(set.Set::duplicate(other(), _target)).size(), 2u);
}

TEST_P(Duplicate, HoldsNothingOpen) {
    const unsigned int c = tree::addContainer(store(), _root, L"c");
    const Container open(store(), c, false);
    const unsigned int copy = entries(Root(store(), _root).Set::duplicate(other(), _target)).at(0);
    EXPECT_EQ(stored::refs(other(), copy), 0u);
    EXPECT_EQ(stored::refs(store(), c), 1u);
}

}  // namespace
