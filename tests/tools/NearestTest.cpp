#include "tools/base/Nearest.h"

#include <gmock/gmock.h>

#include "tools/base/ExitStatus.h"
#include "tools/base/Units.h"

namespace {

using namespace lvp::tool;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
namespace units = lumivard::platform::data::units;

TEST(Nearest, TellsNamesThatBecomeTheTextByFewChangesTheNearestFirst) {
    EXPECT_THAT(nearest("Steal", {"Stone", "Steel", "Stee", "Copper"}, 3), ElementsAre("Steel", "Stee"));
}

TEST(Nearest, TellsNamesThatHoldTheText) {
    EXPECT_THAT(nearest("eel", {"Stainless-Steel-1.4301", "Copper"}, 3), ElementsAre("Stainless-Steel-1.4301"));
}

TEST(Nearest, TakesLargeAndSmallLettersForTheSame) {
    EXPECT_THAT(nearest("STEEL", {"steel"}, 3), ElementsAre("steel"));
}

TEST(Nearest, TellsNoMoreThanItIsAskedFor) {
    EXPECT_THAT(nearest("ab", {"ab", "ac", "ad", "ae"}, 2), ElementsAre("ab", "ac"));
    EXPECT_THAT(nearest("", {"a"}, 2), IsEmpty());
    EXPECT_THAT(nearest(std::string(101, 'a'), {std::string(101, 'a')}, 2), IsEmpty()) << "which would take long";
}

TEST(Units, AreFoundByNameInLargeAndSmallLetters) {
    EXPECT_EQ(unitNamed("Meter"), units::kMeter);
    EXPECT_EQ(unitNamed("kilogrampercubicmeter"), units::kKilogramPerCubicMeter);
    EXPECT_EQ(unitName(units::kMeter), "Meter");
    EXPECT_EQ(unitName(units::kNoUnit), "");
    EXPECT_EQ(unitName(static_cast<units::tUnit>(0x7fff1)), "0x0007fff1");
}

TEST(Units, AreAllFoundByTheNamesThatTheyAreWrittenBy) {
    EXPECT_EQ(allUnits().size(), 780u);
    for (const tUnitRow& row : allUnits()) {
        EXPECT_EQ(unitNamed(std::string(row.name)), row.unit) << row.name;
        if (row.first) {
            EXPECT_EQ(unitName(row.unit), row.name);
        }
    }
}

TEST(Units, ThatAreUnknownAreRefusedWithTheNearest) {
    try {
        unitNamed("milimeter");
        FAIL();
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.status(), kWrongUsage);
        EXPECT_THAT(failure.what(), HasSubstr("there is no unit \"milimeter\"; near to it: MilliMeter"));
    }
    EXPECT_THROW(unitNamed("qqqqqqqqqqqq"), Failure);
}

}  // namespace
