// Children in a range-for.
#include <string>
#include <vector>

#include "tests/easy/EasyFixture.h"

namespace {

using namespace lumivard::platform::test_support;
using testing::ElementsAre;
using testing::IsEmpty;

template <class Items>
tNames walked(Items items) {
    tNames all;
    for (const auto& item : items) all.push_back(text(item->tag()));
    return all;
}

class EasyWalk : public EasyTest {};
LVP_ON_EACH_STORE(EasyWalk);

TEST_P(EasyWalk, GivesContainersAndPropertiesInTheirOrder) {
    top()->create(IContainer::kGroup, L"a", kNoSchema);
    top()->create(L"p", metadata::kInt32);
    top()->create(IContainer::kLink, L"b", kNoSchema);
    top()->create(L"t", kNoSchema)->create(L"inner", metadata::kInt32, units::kNoUnit);
    EXPECT_THAT(walked(easy::containers(model())), ElementsAre(L"a", L"b"));
    EXPECT_THAT(walked(easy::properties(model())), ElementsAre(L"p", L"t"));
    EXPECT_THAT(walked(easy::properties(asTable(there(L"t")))), ElementsAre(L"inner"));
}

TEST_P(EasyWalk, GivesNothingWhereNothingIs) {
    model().create(L"t", kNoSchema);
    EXPECT_THAT(walked(easy::containers(model())), IsEmpty());
    EXPECT_THAT(walked(easy::properties(asTable(there(L"t")))), IsEmpty());
}

TEST_P(EasyWalk, OutlivesTheObjectThatItCameFrom) {
    top()->create(L"p", metadata::kInt32);
    EXPECT_THAT(walked(easy::properties(*top())), ElementsAre(L"p"));
}

TEST_P(EasyWalk, PassesOverWhatIsGone) {
    for (const wchar_t* name : {L"a", L"b", L"c", L"d"}) top()->create(IContainer::kGroup, name, kNoSchema);
    tNames seen;
    for (const auto& child : easy::containers(model())) {
        seen.push_back(text(child->tag()));
        if (seen.size() == 1) {
            EXPECT_TRUE(top()->destroy(L"b"));
            EXPECT_TRUE(top()->destroy(L"d"));
        }
    }
    EXPECT_THAT(seen, ElementsAre(L"a", L"c"));
}

TEST_P(EasyWalk, PassesOverAFirstOneThatIsGone) {
    for (const wchar_t* name : {L"a", L"b"}) top()->create(name, metadata::kInt32);
    auto range = easy::properties(model());
    EXPECT_TRUE(top()->destroy(L"a"));
    EXPECT_THAT(walked(std::move(range)), ElementsAre(L"b"));
}

TEST_P(EasyWalk, HoldsAnItemOpenForItsTurnAlone) {
    for (const wchar_t* name : {L"a", L"b"}) top()->create(IContainer::kGroup, name, kNoSchema);
    for (const auto& child : easy::containers(model())) {
        EXPECT_FALSE(top()->destroy(child->tag()));
        if (text(child->tag()) == L"b") {
            EXPECT_TRUE(top()->destroy(L"a"));
        }
    }
    EXPECT_TRUE(top()->destroy(L"b"));
}

}  // namespace
